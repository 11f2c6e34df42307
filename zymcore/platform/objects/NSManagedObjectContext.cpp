#include "zymcore/platform/objects/NSManagedObjectContext.h"

#include <utility>

#include "zymcore/platform/events/NSNotificationCenter.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/objects/internal/ObjectGraph.h"
#include "zymcore/platform/values/NSException.h"

namespace zym {
namespace {

/// What the work answers, or absent, with the error, when the store fails.
template <class Work>
auto orAbsent(NSError* error, Work work) -> std::optional<decltype(work())> {
  try {
    return work();
  } catch (const StoreFailure& failure) {
    if (error) *error = failure.error;
    return std::nullopt;
  }
}

}  // namespace

NSManagedObjectContext::NSManagedObjectContext(NSManagedObjectContextConcurrencyType type)
    : graph_(std::make_unique<ObjectGraph>(*this, type)) {}

NSManagedObjectContext::~NSManagedObjectContext() = default;

void NSManagedObjectContext::setPersistentStoreCoordinator(
    std::shared_ptr<NSPersistentStoreCoordinator> coordinator) {
  graph_->setCoordinator(std::move(coordinator));
}

const std::shared_ptr<NSPersistentStoreCoordinator>&
NSManagedObjectContext::persistentStoreCoordinator() const noexcept {
  return graph_->coordinator();
}

NSManagedObjectContextConcurrencyType NSManagedObjectContext::concurrencyType() const noexcept {
  return graph_->type();
}

void NSManagedObjectContext::performBlockAndWait(const std::function<void()>& block) {
  const auto perform = [&] { graph_->perform(block); };
  if (concurrencyType() == NSMainQueueConcurrencyType) {
    NSRunLoop::mainRunLoop().performOnMainThreadAndWait(perform);
  } else {
    perform();
  }
}

NSUndoManager* NSManagedObjectContext::undoManager() const noexcept {
  return graph_->undoManager().get();
}

void NSManagedObjectContext::setUndoManager(std::shared_ptr<NSUndoManager> undoManager) {
  graph_->setUndoManager(std::move(undoManager));
}

NSManagedObject* NSManagedObjectContext::insertNewObjectForEntityForName(
    std::string_view entityName) {
  return graph_->insert(graph_->entityNamed(entityName));
}

void NSManagedObjectContext::deleteObject(NSManagedObject& object) {
  try {
    graph_->remove(object);
  } catch (const StoreFailure& failure) {
    throw NSException(NSObjectInaccessibleException, object.objectID().URIRepresentation() +
                                                         " can't be read. " +
                                                         failure.error.localizedDescription);
  }
}

std::optional<std::vector<NSManagedObject*>> NSManagedObjectContext::executeFetchRequest(
    const NSFetchRequest& request, NSError* error) {
  return orAbsent(error, [&] { return graph_->fetch(request); });
}

std::optional<NSFetchedProperties> NSManagedObjectContext::propertiesForFetchRequest(
    const NSFetchRequest& request, const std::vector<KeyName>& keys, NSError* error) {
  return orAbsent(error, [&] { return graph_->fetchProperties(request, keys); });
}

std::optional<std::size_t> NSManagedObjectContext::countForFetchRequest(
    const NSFetchRequest& request, NSError* error) {
  return orAbsent(error, [&] { return graph_->count(request); });
}

std::uint64_t NSManagedObjectContext::changeCountForEntitiesNamed(
    std::span<const std::string_view> names) {
  // A store that can't be read may have changed.
  return orAbsent(nullptr, [&] { return graph_->changeCount(names); }).value_or(0);
}

NSManagedObject* NSManagedObjectContext::objectWithID(const NSManagedObjectID& objectID) {
  return orAbsent(nullptr, [&] { return graph_->objectWithID(objectID); }).value_or(nullptr);
}

bool NSManagedObjectContext::hasChanges() const noexcept {
  return graph_->hasChanges();
}

bool NSManagedObjectContext::save(NSError* error) {
  if (!hasChanges()) return true;
  const auto saved = orAbsent(error, [&] { return graph_->save(); });
  if (!saved) return false;
  NSNotificationCenter::defaultCenter().postNotificationName_object_userInfo(
      NSManagedObjectContextDidSaveNotification, this, *saved);
  return true;
}

void NSManagedObjectContext::rollback() {
  graph_->rollback();
}

void NSManagedObjectContext::mergeChangesFromContextDidSaveNotification(
    const NSNotification& notification) {
  graph_->merge(notification.userInfo);
}

}  // namespace zym
