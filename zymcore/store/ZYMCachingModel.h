#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "zymcore/documents/ZYMSummary.h"
#include "zymcore/platform/values/PlistValue.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

class NSManagedObjectContext;
class ZYMCachingModelDataStoreImportOperation;

/// Base of every library of flat records. It hides the store and keeps nothing itself but which
/// records there are by name, until one changes: each call goes to the main context, and
/// each record that comes out is the caller's own. Nothing here reports a failure; what isn't found
/// is absent or left alone. Lists are in the store's order of names: by code point, so "Zatec"
/// stands before "abbey". Main thread.
class ZYMCachingModel {
 public:
  /// An element of a list of things to remove: a record or a uuid, or a row of a list.
  using ItemReference = std::variant<PlistValue, ZYMSummary>;

  virtual ~ZYMCachingModel();
  ZYMCachingModel(const ZYMCachingModel&) = delete;
  ZYMCachingModel& operator=(const ZYMCachingModel&) = delete;

  /// The key under which a record holds the name that is shown.
  [[nodiscard]] KeyName nameKeyInRecords() const noexcept { return nameKeyInRecords_; }

  /// The entity of the records. Every library says which; the base throws.
  [[nodiscard]] virtual std::string_view entityClass() const;
  /// Puts the defaults of the library into a record that has its UUID and date. The base throws.
  virtual void prepareNewItem(PlistDictionary& item);

  /// The record; absent unless exactly one object has the uuid.
  [[nodiscard]] virtual std::optional<PlistDictionary> itemWithUUID(std::string_view uuid);
  [[nodiscard]] std::optional<PlistDictionary> itemWithUUID_withContext(
      std::string_view uuid, NSManagedObjectContext& context);

  /// Makes, stores and answers a new record.
  virtual PlistDictionary createItem();
  /// The same as a copy of another one, with "-copy" after its name.
  virtual std::optional<PlistDictionary> duplicateItemWithUUID(std::string_view uuid);

  /// Stores a record that differs from what is stored under its "UUID", and moves its
  /// "DateLastModified" to the present time, in `item` as well. Keys that are missing are read as
  /// such. An equal record changes nothing.
  void updateItem(PlistDictionary& item);

  void removeItemWithUUID(const std::optional<std::string>& uuid);
  /// Removes all that are found, in one undo step. Their order items are looked for under the uuid
  /// of the first element of the list, where that is a row of a list, and under none otherwise; the
  /// orders of suppliers stay.
  void removeItems(const std::vector<ItemReference>& items);

  /// All rows by name. An object without a name gets "", which the next save stores.
  [[nodiscard]] std::vector<ZYMSummary> summariesforAllItems();
  /// The same rows, and nothing written.
  [[nodiscard]] std::vector<ZYMSummary> rowsOfAllItems() const;
  /// All records by name.
  [[nodiscard]] PlistArray allItems();
  /// The first record by name, with a name; an empty library first makes one.
  PlistDictionary firstIngredient();

  /// The position of the text most similar to `text` (`similarityWithString`), the first of equals,
  /// but for one that is the same to the letter. -1 when no text has a score, `NSNotFound` without
  /// an array. With a key, elements are records and their texts are under it.
  [[nodiscard]] static std::int64_t indexOfMostSimilarObjectToString_inArray_forKey(
      std::string_view text, const PlistArray* array, const std::optional<KeyName>& key);
  /// The record with the name most similar to the text, among those that have all the given values,
  /// or among all where none has. However poor the match, there is one; throws `NSRangeException`
  /// when no name has a score, as in an empty library.
  [[nodiscard]] PlistDictionary ingredientWithNameMostSimilarToString_matchingKeysAndValues(
      std::string_view text, const PlistDictionary* keysAndValues);

  /// The same for each of several texts among all records; the library is read but once.
  [[nodiscard]] std::vector<PlistDictionary> ingredientsWithNamesMostSimilarToStrings(
      const std::vector<std::string>& texts);

  /// Stores all records that have a "UUID", new or in place of what is there, each with the present
  /// time as its date; saves once. No undo step.
  void addItemsFromArray(const PlistArray& items);
  /// The same for the values of a dictionary.
  void addItemsFromDictionary(const PlistDictionary& items);
  /// An operation that does nearly the same and that the caller runs. Defined with it, above this
  /// room.
  [[nodiscard]] std::shared_ptr<ZYMCachingModelDataStoreImportOperation>
  importOperationForDictionary(const PlistDictionary& records) const;

 protected:
  explicit ZYMCachingModel(KeyName nameKeyInRecords);

  using Objects = std::vector<NSManagedObject*>;
  [[nodiscard]] Objects objectsSortedOnName() const;
  [[nodiscard]] ZYMRecordEntity* onlyObjectWithUUID(std::optional<std::string_view> uuid) const;
  /// `duplicateItemWithUUID`, with a last change to the copy before it is stored.
  std::optional<PlistDictionary> duplicate_changing(
      std::string_view uuid, const std::function<void(PlistDictionary&)>& change);
  /// Stores a record as a new object, as one undo step of that name, and saves.
  void insertItem(PlistDictionary& item, std::string_view actionName);

 private:
  [[nodiscard]] bool isIngredient() const;
  [[nodiscard]] ZYMRecordEntity& insertObject() const;
  [[nodiscard]] std::map<std::string, std::vector<ZYMRecordEntity*>> objectsByUUID() const;

  struct Sorted;
  [[nodiscard]] Sorted& sorted() const;

  KeyName nameKeyInRecords_;
  mutable std::unique_ptr<Sorted> sorted_;
};

}  // namespace zym
