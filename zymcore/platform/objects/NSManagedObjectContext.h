#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "zymcore/platform/events/NSNotification.h"
#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/platform/objects/NSFetchRequest.h"
#include "zymcore/platform/objects/NSFetchedProperties.h"
#include "zymcore/platform/objects/NSManagedObject.h"
#include "zymcore/platform/objects/NSPersistentStoreCoordinator.h"
#include "zymcore/platform/values/NSError.h"

namespace zym {

enum NSManagedObjectContextConcurrencyType {
  /// For one background task at a time; reads on a connection of its own.
  NSPrivateQueueConcurrencyType = 1,
  NSMainQueueConcurrencyType = 2,
};

/// Posted after a save that wrote something, with the context as object. The user info holds under
/// the keys below the texts (`NSManagedObjectID::URIRepresentation`) of the objects concerned.
inline constexpr const char* NSManagedObjectContextDidSaveNotification =
    "NSManagedObjectContextDidSaveNotification";
inline constexpr KeyName NSInsertedObjectsKey{"inserted"};
inline constexpr KeyName NSUpdatedObjectsKey{"updated"};
inline constexpr KeyName NSDeletedObjectsKey{"deleted"};

/// A scratch pad on the store: objects are fetched into it, changed in it, and saved together.
///
/// Fetches see what is changed here and not saved yet. Every change is registered with the undo
/// manager, and undo restores values, relationships, insertions and deletions exactly; an object
/// whose deletion is undone is the same object with the same identity. Saving leaves the undo
/// stack alone.
///
/// An object that another context or process saved or deleted since it was read makes a save fail
/// with `NSManagedObjectMergeError`, so that nobody's change is lost unseen.
///
/// A context of the main queue and all its objects belong to the main thread, one of a private
/// queue to whoever is inside its `performBlockAndWait`.
class NSManagedObjectContext {
 public:
  explicit NSManagedObjectContext(NSManagedObjectContextConcurrencyType type);
  ~NSManagedObjectContext();
  NSManagedObjectContext(const NSManagedObjectContext&) = delete;
  NSManagedObjectContext& operator=(const NSManagedObjectContext&) = delete;

  /// Once, before anything else. The coordinator must have its store.
  void setPersistentStoreCoordinator(std::shared_ptr<NSPersistentStoreCoordinator> coordinator);
  [[nodiscard]] const std::shared_ptr<NSPersistentStoreCoordinator>& persistentStoreCoordinator()
      const noexcept;
  [[nodiscard]] NSManagedObjectContextConcurrencyType concurrencyType() const noexcept;

  /// Calls the block where the context may be used: on the main thread, waiting for it, or for a
  /// private queue right here once everybody else is out. All that the block reads is the store at
  /// one moment, until something is saved. What it throws is thrown here.
  void performBlockAndWait(const std::function<void()>& block);

  /// A main-queue context has one from the start, a private-queue context none. Null for none.
  [[nodiscard]] NSUndoManager* undoManager() const noexcept;
  void setUndoManager(std::shared_ptr<NSUndoManager> undoManager);

  /// A new object. Throws `NSInvalidArgumentException` for an entity that the model lacks.
  [[nodiscard]] NSManagedObject* insertNewObjectForEntityForName(std::string_view entityName);
  /// Deletes the object now, by the delete rules of its relationships. Deleting a deleted one
  /// changes nothing.
  void deleteObject(NSManagedObject& object);

  /// The objects found. Absent, with an error, when the store can't be read. Throws
  /// `NSInvalidArgumentException` for an entity or key that the model lacks.
  [[nodiscard]] std::optional<std::vector<NSManagedObject*>> executeFetchRequest(
      const NSFetchRequest& request, NSError* error = nullptr);
  /// Only those properties of the records found, without making objects of them: attributes, and
  /// for a relationship to many how many objects it holds.
  [[nodiscard]] std::optional<NSFetchedProperties> propertiesForFetchRequest(
      const NSFetchRequest& request, const std::vector<KeyName>& keys, NSError* error = nullptr);
  [[nodiscard]] std::optional<std::size_t> countForFetchRequest(const NSFetchRequest& request,
                                                                NSError* error = nullptr);
  /// The object with that identity, or null when there is none.
  [[nodiscard]] NSManagedObject* objectWithID(const NSManagedObjectID& objectID);

  /// A number that is another one, in no other context either, after any object of these entities
  /// may have been inserted, changed or deleted, here, by an undo or by another process; 0 when the
  /// store can't be read. For what is kept of objects from one call to the next.
  [[nodiscard]] std::uint64_t changeCountForEntitiesNamed(std::span<const std::string_view> names);

  [[nodiscard]] bool hasChanges() const noexcept;
  /// Writes all changes in one transaction and posts `NSManagedObjectContextDidSaveNotification`.
  /// Without changes it does nothing. Answers whether it worked; if not, the store is as it was and
  /// the changes are still here.
  bool save(NSError* error = nullptr);
  /// Returns to the last saved state and removes all actions of the undo manager. Objects that were
  /// never saved are deleted.
  void rollback();

  /// Takes in what another context of the same store saved: objects that have changes here keep
  /// them, all others show the new state when they are next read.
  void mergeChangesFromContextDidSaveNotification(const NSNotification& notification);

 private:
  friend class NSManagedObject;
  friend class ObjectGraph;
  std::unique_ptr<class ObjectGraph> graph_;
};

}  // namespace zym
