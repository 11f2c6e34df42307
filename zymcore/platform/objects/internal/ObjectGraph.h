#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/platform/objects/NSFetchRequest.h"
#include "zymcore/platform/objects/NSFetchedProperties.h"
#include "zymcore/platform/objects/NSManagedObject.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/platform/objects/NSPersistentStoreCoordinator.h"
#include "zymcore/platform/objects/internal/ChangedObjects.h"
#include "zymcore/platform/objects/internal/SQLiteStore.h"

namespace zym {

/// The place of an attribute or relationship in the sets of `Values`.
[[nodiscard]] constexpr std::uint64_t bit(std::size_t position) noexcept {
  return std::uint64_t{1} << position;
}

/// What an object holds while it isn't a fault.
struct NSManagedObject::Values {
  /// By position; a document stands here only while `heldDocuments` has its bit.
  std::vector<std::optional<PlistValue>> attributes;
  std::vector<NSManagedObject*> toOne;
  /// Absent until it is asked for.
  std::vector<std::optional<std::vector<NSManagedObject*>>> toMany;

  std::uint64_t heldDocuments = 0;
  // What differs from the store.
  std::uint64_t changedAttributes = 0;
  std::uint64_t changedToOne = 0;
  // The attributes whose former value that journal knows.
  std::uint64_t journal = 0;
  std::uint64_t journaledAttributes = 0;
};

/// The objects of a context and all their changes.
///
/// Every change, whoever asks for it, comes down to one of four steps (an attribute, the object at
/// one end of a relationship, a pair, life or death), each of which keeps both ends in agreement,
/// remembers what to save, and writes its reverse into the journal that undo runs backwards.
class ObjectGraph {
 public:
  ObjectGraph(NSManagedObjectContext& context, NSManagedObjectContextConcurrencyType type);
  ~ObjectGraph();
  ObjectGraph(const ObjectGraph&) = delete;
  ObjectGraph& operator=(const ObjectGraph&) = delete;

  void setCoordinator(std::shared_ptr<NSPersistentStoreCoordinator> coordinator);
  [[nodiscard]] const auto& coordinator() const noexcept { return coordinator_; }
  [[nodiscard]] auto type() const noexcept { return type_; }
  [[nodiscard]] const auto& undoManager() const noexcept { return undoManager_; }
  void setUndoManager(std::shared_ptr<NSUndoManager> undoManager);
  /// Calls the block while nobody else is in such a call. Where the context has a connection of its
  /// own, all that the block reads is the store at one moment; its own saves renew that.
  void perform(const std::function<void()>& block);
  [[nodiscard]] const NSEntityDescription& entityNamed(std::string_view name) const;

  // Reading.

  /// The values of the object, read now if it is a fault; null when it is gone from the store.
  [[nodiscard]] NSManagedObject::Values* valuesOf(const NSManagedObject& object);
  [[nodiscard]] std::optional<NSData> document(const NSManagedObject& object,
                                               std::size_t attribute);
  [[nodiscard]] NSManagedObject* toOne(const NSManagedObject& object, std::size_t relationship);
  /// For an object that isn't deleted.
  [[nodiscard]] const std::vector<NSManagedObject*>& toMany(NSManagedObject& object,
                                                            std::size_t relationship);
  [[nodiscard]] NSManagedObject* objectWithID(const NSManagedObjectID& objectID);

  // Changing. Deleted objects don't change.

  [[nodiscard]] NSManagedObject* insert(const NSEntityDescription& entity);
  void remove(NSManagedObject& object);
  void setAttribute(NSManagedObject& object, std::size_t attribute,
                    std::optional<PlistValue> value);
  void setToOne(NSManagedObject& object, std::size_t relationship, NSManagedObject* target);
  void add(NSManagedObject& object, std::size_t relationship, NSManagedObject& other);
  void take(NSManagedObject& object, std::size_t relationship, NSManagedObject& other);

  // Fetching.

  [[nodiscard]] std::vector<NSManagedObject*> fetch(const NSFetchRequest& request);
  [[nodiscard]] NSFetchedProperties fetchProperties(const NSFetchRequest& request,
                                                    const std::vector<KeyName>& keys);
  [[nodiscard]] std::size_t count(const NSFetchRequest& request);

  [[nodiscard]] std::uint64_t changeCount(std::span<const std::string_view> entityNames);

  // Saving.

  [[nodiscard]] bool hasChanges() const noexcept;
  /// Writes everything and answers what is to be posted.
  [[nodiscard]] PlistDictionary save();
  void rollback();
  void merge(const PlistDictionary& savedElsewhere);

 private:
  struct Change;
  struct Journal;
  struct Saving;
  struct RenewedMoment;
  /// A file may have the keys of its rows chosen so that they fall together without it.
  struct KeyHash {
    [[nodiscard]] std::size_t operator()(std::int64_t key) const noexcept;
  };
  using Objects = std::unordered_map<std::int64_t, std::unique_ptr<NSManagedObject>, KeyHash>;
  /// A relationship that is to many at both ends, by the position of its first end.
  using PairsID = std::pair<std::size_t, std::size_t>;
  using Pair = std::pair<NSManagedObject*, NSManagedObject*>;

  [[nodiscard]] const NSRelationshipDescription& relationshipOf(const NSManagedObject& object,
                                                                std::size_t relationship) const {
    return object.entity().relationships()[relationship];
  }
  [[nodiscard]] const NSRelationshipDescription& inverseOf(
      const NSRelationshipDescription& relationship) const {
    return model().entities()[relationship.destination].relationships()[relationship.inverse];
  }
  [[nodiscard]] const NSManagedObjectModel& model() const { return store().model(); }
  [[nodiscard]] SQLiteStore& store() const;
  /// The connection that this context reads by.
  [[nodiscard]] SQLiteDatabase& database() const;

  void beginMoment() noexcept;
  void endMoment() noexcept;
  void onDatabase(void (SQLiteDatabase::*deed)()) noexcept;

  // Objects and rows.
  [[nodiscard]] NSManagedObject& objectFor(const NSEntityDescription& entity, std::int64_t key);
  [[nodiscard]] std::unique_ptr<NSManagedObject> newObject(const NSEntityDescription& entity,
                                                           std::int64_t key);
  static NSManagedObject::Values& emptyValues(NSManagedObject& object);
  void readRow(NSManagedObject& object, const SQLiteStatement& row);
  NSManagedObject& objectFromRow(const NSEntityDescription& entity, const SQLiteStatement& row);
  void noticeOthers();
  void forgetToMany();
  [[nodiscard]] std::optional<NSData> storedDocument(const NSManagedObject& object,
                                                     std::size_t attribute);
  void holdDocument(NSManagedObject& object, std::size_t attribute);
  [[nodiscard]] std::vector<NSManagedObject*> storedToMany(const NSManagedObject& object,
                                                           std::size_t relationship);
  void overlayToMany(NSManagedObject& object, std::size_t relationship,
                     std::vector<NSManagedObject*>& members);
  [[nodiscard]] PairsID pairsID(const NSManagedObject& object, std::size_t relationship) const;

  // The four steps.
  void stepAttribute(NSManagedObject& object, std::size_t attribute,
                     std::optional<PlistValue> value);
  void stepToOne(NSManagedObject& object, std::size_t relationship, NSManagedObject* target);
  void stepPair(NSManagedObject& object, std::size_t relationship, NSManagedObject& other,
                bool together);
  void stepLife(NSManagedObject& object, bool alive);
  void unrelate(NSManagedObject& object, std::size_t relationship,
                std::vector<NSManagedObject*>& doomed);
  void markDirty(NSManagedObject& object);
  template <class Visit>
  void forEachDirty(Visit visit) const {
    for (const ChangedObjects& changed : changed_) {
      for (NSManagedObject* const object : changed.all()) visit(*object);
    }
  }

  // Undo.
  void record(Change change);
  void revert(const Journal& journal);
  [[nodiscard]] bool isAttributeRecorded(NSManagedObject& object, std::size_t attribute);

  // Fetching.
  struct Property;
  [[nodiscard]] std::vector<Property> propertiesNamed(const NSEntityDescription& entity,
                                                      const std::vector<KeyName>& keys) const;
  [[nodiscard]] bool hasDirty(const NSEntityDescription& entity) const noexcept;

  // Saving.
  void assignKeys(Saving& saving) const;
  void insertRow(const Saving& saving, const NSManagedObject& object) const;
  void updateRow(const Saving& saving, const NSManagedObject& object) const;
  void deleteRow(const Saving& saving, const NSManagedObject& object) const;
  void deleteTraces(const Saving& saving, const NSManagedObject& object) const;
  void writeDocuments(const Saving& saving, const NSManagedObject& object) const;
  void writePairs(const Saving& saving) const;
  void finish(const Saving& saving);
  void becomeClean();

  NSManagedObjectContext& context_;
  NSManagedObjectContextConcurrencyType type_;
  std::shared_ptr<NSPersistentStoreCoordinator> coordinator_;
  std::shared_ptr<NSUndoManager> undoManager_;
  std::unique_ptr<SQLiteDatabase> reader_;
  std::recursive_mutex mutex_;
  int performing_ = 0;

  std::vector<Objects> objects_;  // By the position of their entity.
  std::int64_t lastTemporaryKey_ = 0;
  std::int64_t dataVersion_ = 0;
  std::uint64_t savesSeen_ = 0;
  std::vector<ChangedObjects> changed_;      // By the position of their entity.
  std::vector<std::uint64_t> changeCounts_;  // By the position of their entity.
  std::uint64_t changeCountOfAll_;
  /// Pairs that differ from the store: true where they are together now.
  std::map<PairsID, std::map<Pair, bool>> pairs_;

  std::shared_ptr<Journal> journal_;
  std::uint64_t journalAction_ = 0;
  std::uint64_t lastJournal_ = 0;
  std::shared_ptr<ObjectGraph*> self_;  // For undo actions that outlive this.
};

/// What a row has in the column of an attribute of that type.
[[nodiscard]] std::optional<PlistValue> valueInRow(const SQLiteStatement& row, int column,
                                                   NSAttributeType type);

}  // namespace zym
