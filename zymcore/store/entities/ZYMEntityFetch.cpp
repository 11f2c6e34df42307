#include "zymcore/store/entities/ZYMEntityFetch.h"

#include "zymcore/platform/objects/NSFetchRequest.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

ZYMEntityFetch::Objects ZYMEntityFetch::findAllObjectsInContext_predicate_sortDescriptor(
    std::string_view entity, NSManagedObjectContext* context,
    const std::optional<NSPredicate>& predicate,
    const std::optional<NSSortDescriptor>& sortDescriptor) {
  if (!context) context = ZYMCoreDataModel::sharedInstance().mainObjectContext();
  if (!context) return std::nullopt;
  NSFetchRequest request = NSFetchRequest::fetchRequestWithEntityName(entity);
  if (predicate) request.setPredicate(predicate);
  if (sortDescriptor) request.setSortDescriptors({*sortDescriptor});

  Objects objects;
  context->performBlockAndWait([&] { objects = context->executeFetchRequest(request); });
  return objects;
}

ZYMEntityFetch::Objects ZYMEntityFetch::objectsInContext_matchingKey_andValue_sortedOnKey(
    std::string_view entity, NSManagedObjectContext* context, KeyName key,
    const std::optional<PlistValue>& value, const std::optional<KeyName>& sortKey) {
  std::optional<NSSortDescriptor> order;
  if (sortKey) order.emplace(*sortKey, true);
  return findAllObjectsInContext_predicate_sortDescriptor(entity, context,
                                                          NSPredicate::equal(key, value), order);
}

NSManagedObject* ZYMEntityFetch::onlyObjectWithUUID(std::string_view entity,
                                                    NSManagedObjectContext* context,
                                                    std::optional<std::string_view> uuid) {
  if (!uuid) return nullptr;
  const Objects objects = objectsInContext_matchingKey_andValue_sortedOnKey(
      entity, context, attributes::uuid, *uuid, std::nullopt);
  return objects && objects->size() == 1 ? objects->front() : nullptr;
}

PlistArray dictionaryRepresentationOfEntityArray(const std::vector<NSManagedObject*>& objects) {
  std::vector<PlistValue> records;
  records.reserve(objects.size());
  for (NSManagedObject* object : objects) {
    auto* recorded = dynamic_cast<ZYMRecordEntity*>(object);
    if (!recorded) continue;
    if (std::optional<PlistDictionary> record = recorded->dictionaryRepresentation()) {
      records.emplace_back(std::move(*record));
    }
  }
  return PlistArray(std::move(records));
}

PlistArray dictionaryRepresentationsSortedOnEntityKey_ascending_fromSet(
    KeyName key, bool ascending, const std::vector<NSManagedObject*>& objects) {
  std::vector<NSManagedObject*> sorted = objects;
  NSSortDescriptor::sort(sorted, {NSSortDescriptor(key, ascending)});
  return dictionaryRepresentationOfEntityArray(sorted);
}

PlistArray dictionaryRepresentationsSortedOnIndexKeyFromSet(
    const std::vector<NSManagedObject*>& objects) {
  return dictionaryRepresentationsSortedOnEntityKey_ascending_fromSet(attributes::index, true,
                                                                      objects);
}

}  // namespace zym
