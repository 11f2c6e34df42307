#include "zymcore/store/ZYMCachingModel.h"

#include <algorithm>
#include <iterator>

#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/SimilarNames.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSNotFound.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMLibraryRegistry.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/SummaryRows.h"
#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMSupplierEntity.h"

namespace zym {
namespace {

[[noreturn]] void mustBeOverridden(const char* operation) {
  throw NSException(NSInternalInconsistencyException,
                    std::string(operation) + " MUST be overridden");
}

std::optional<std::string> uuidOf(const ZYMCachingModel::ItemReference& item) {
  if (const auto* summary = std::get_if<ZYMSummary>(&item)) return summary->uuid;
  const PlistValue& value = std::get<PlistValue>(item);
  const PlistDictionary* record = value.dictionary();
  const std::string* uuid = record ? record->string(keys::UUID) : value.string();
  return uuid ? std::optional(*uuid) : std::nullopt;
}

PlistDictionary recordOf(NSManagedObject& object) {
  return static_cast<ZYMRecordEntity&>(object).dictionaryRepresentation().value_or(
      PlistDictionary());
}

/// Whether the record of the object has those values.
bool holdsAll(ZYMRecordEntity& object, const PlistDictionary& keysAndValues) {
  return std::all_of(keysAndValues.begin(), keysAndValues.end(), [&](const PlistEntry& entry) {
    const auto value = object.valueInRecord(KeyName(entry.key.text()));
    if (value) return *value == entry.value;
    const PlistDictionary record = recordOf(object);  // its children stand in no field
    const PlistValue* child = record.find(entry.key);
    return child && *child == entry.value;
  });
}

/// The names that the records of the objects show.
SimilarNames namesOf(const std::vector<NSManagedObject*>& objects, KeyName nameKey) {
  std::vector<std::string> names;
  names.reserve(objects.size());
  for (NSManagedObject* object : objects) {
    const auto name = static_cast<ZYMRecordEntity*>(object)->valueInRecord(nameKey);
    names.push_back(name && name->string() ? *name->string() : "");
  }
  return SimilarNames(std::move(names));
}

std::string_view textOf(const PlistValue& element, const std::optional<KeyName>& key) {
  const PlistDictionary* record = element.dictionary();
  if (key) return record ? record->stringValue(*key) : std::string_view();
  return element.string() ? std::string_view(*element.string()) : std::string_view();
}

}  // namespace

std::string_view ZYMCachingModel::entityClass() const {
  mustBeOverridden("entityClass");
}

void ZYMCachingModel::prepareNewItem(PlistDictionary& /*item*/) {
  mustBeOverridden("prepareNewItem");
}

bool ZYMCachingModel::isIngredient() const {
  return ZYMLibraryRegistry::sharedInstance().isIngredient(entityClass());
}

/// The records by name, as they are until one of them changes, and their names where these were
/// asked for.
struct ZYMCachingModel::Sorted {
  Objects objects;
  std::uint64_t changeCount = 0;
  std::optional<SimilarNames> names;
  /// Those that have some values; the last few that were asked for.
  std::vector<Sorted> having;
  PlistDictionary values;  // which all of these have

  [[nodiscard]] const SimilarNames& namesUnder(KeyName nameKey) {
    if (!names) names = namesOf(objects, nameKey);
    return *names;
  }
  /// Only the record that is found is made.
  [[nodiscard]] PlistDictionary mostSimilarTo(std::string_view text, KeyName nameKey) {
    const std::int64_t index = namesUnder(nameKey).indexOfMostSimilarTo(text);
    if (index < 0) {
      throw NSException(NSRangeException,
                        "index -1 beyond bounds for array of " + std::to_string(objects.size()));
    }
    return recordOf(*objects[static_cast<std::size_t>(index)]);
  }
  [[nodiscard]] Sorted& thoseHaving(const PlistDictionary& keysAndValues) {
    for (Sorted& known : having) {
      if (known.values == keysAndValues) return known;
    }
    Sorted found;
    found.values = keysAndValues;
    std::ranges::copy_if(objects, std::back_inserter(found.objects), [&](NSManagedObject* object) {
      return holdsAll(static_cast<ZYMRecordEntity&>(*object), keysAndValues);
    });
    constexpr std::size_t mostKept = 16;
    if (having.size() == mostKept) having.clear();
    return having.emplace_back(std::move(found));
  }
};

ZYMCachingModel::ZYMCachingModel(KeyName nameKeyInRecords) : nameKeyInRecords_(nameKeyInRecords) {}

ZYMCachingModel::~ZYMCachingModel() = default;

ZYMCachingModel::Sorted& ZYMCachingModel::sorted() const {
  // What is no library itself shows the names of those that are.
  std::vector<std::string_view> entities{entityClass()};
  const ZYMLibraryRegistry& registry = ZYMLibraryRegistry::sharedInstance();
  if (!registry.libraryOfEntity(entityClass())) {
    for (const auto& library : registry.libraries()) entities.push_back(library.entity);
  }
  const std::uint64_t count = mainContext().changeCountForEntitiesNamed(entities);
  if (!sorted_ || sorted_->changeCount == 0 || sorted_->changeCount != count) {
    sorted_ = std::make_unique<Sorted>();
    auto found = ZYMEntityFetch::findAllObjectsInContext_predicate_sortDescriptor(
        entityClass(), nullptr, std::nullopt, NSSortDescriptor(attributes::name, true));
    // The count from before: what another process saves meanwhile is found the next time. What
    // could not be read is no empty library, and is not kept.
    sorted_->changeCount = found ? count : 0;
    sorted_->objects = std::move(found).value_or(Objects());
  }
  return *sorted_;
}

ZYMCachingModel::Objects ZYMCachingModel::objectsSortedOnName() const {
  return sorted().objects;
}

ZYMRecordEntity* ZYMCachingModel::onlyObjectWithUUID(std::optional<std::string_view> uuid) const {
  return static_cast<ZYMRecordEntity*>(
      ZYMEntityFetch::onlyObjectWithUUID(entityClass(), nullptr, uuid));
}

ZYMRecordEntity& ZYMCachingModel::insertObject() const {
  return static_cast<ZYMRecordEntity&>(
      *mainContext().insertNewObjectForEntityForName(entityClass()));
}

void ZYMCachingModel::insertItem(PlistDictionary& item, std::string_view actionName) {
  ZYMUndoGroup group;
  insertObject().updateWithDictionaryRepresentation(item);
  group.closeAndSave(actionName);
}

std::optional<PlistDictionary> ZYMCachingModel::itemWithUUID(std::string_view uuid) {
  return itemWithUUID_withContext(uuid, mainContext());
}

std::optional<PlistDictionary> ZYMCachingModel::itemWithUUID_withContext(
    std::string_view uuid, NSManagedObjectContext& context) {
  NSManagedObject* object = ZYMEntityFetch::onlyObjectWithUUID(entityClass(), &context, uuid);
  return object ? static_cast<ZYMRecordEntity*>(object)->dictionaryRepresentation() : std::nullopt;
}

PlistDictionary ZYMCachingModel::createItem() {
  PlistDictionary item{{keys::UUID, uuid()}, {keys::DateLastModified, NSDate::date()}};
  prepareNewItem(item);
  insertItem(item, "Add Item");
  return item;
}

std::optional<PlistDictionary> ZYMCachingModel::duplicateItemWithUUID(std::string_view uuid) {
  return duplicate_changing(uuid, [](PlistDictionary&) {});
}

std::optional<PlistDictionary> ZYMCachingModel::duplicate_changing(
    std::string_view uuid, const std::function<void(PlistDictionary&)>& change) {
  ZYMRecordEntity* object = onlyObjectWithUUID(uuid);
  if (!object) return std::nullopt;
  PlistDictionary copy = duplicate(object->dictionaryRepresentation().value_or(PlistDictionary()));
  copy.set(keys::UUID, zym::uuid());
  copy.set(nameKeyInRecords_,
           std::string(copy.stringValue(nameKeyInRecords_)) + "-" + Localized_String("copy"));
  copy.set(keys::DateLastModified, NSDate::date());
  change(copy);
  insertItem(copy, "Duplicate Item");
  return copy;
}

void ZYMCachingModel::updateItem(PlistDictionary& item) {
  const std::string* uuid = item.string(keys::UUID);
  ZYMRecordEntity* object = uuid ? onlyObjectWithUUID(*uuid) : nullptr;
  if (!object || object->dictionaryRepresentation() == item) return;
  ZYMUndoGroup group;
  item.set(keys::DateLastModified, NSDate::date());
  object->updateWithDictionaryRepresentation(item);
  group.closeAndSave("Edit Item");
}

void ZYMCachingModel::removeItemWithUUID(const std::optional<std::string>& uuid) {
  ZYMRecordEntity* object = onlyObjectWithUUID(uuid);
  if (!object) return;
  ZYMUndoGroup group;
  const ZYMLibraryRegistry& registry = ZYMLibraryRegistry::sharedInstance();
  if (isIngredient()) registry.removeOrderItemsForIngredientWithUUID(uuid);
  if (entityClass() == ZYMSupplierEntity::entityName) registry.removeOrdersForSupplierUUID(uuid);
  mainContext().deleteObject(*object);
  group.closeAndSave("Delete Item");
}

void ZYMCachingModel::removeItems(const std::vector<ItemReference>& items) {
  const auto* firstRow = items.empty() ? nullptr : std::get_if<ZYMSummary>(&items.front());
  const std::optional<std::string> uuidForOrders = firstRow ? firstRow->uuid : std::nullopt;

  ZYMUndoGroup group;
  for (const ItemReference& item : items) {
    ZYMRecordEntity* object = onlyObjectWithUUID(uuidOf(item));
    if (!object) continue;
    if (isIngredient()) {
      ZYMLibraryRegistry::sharedInstance().removeOrderItemsForIngredientWithUUID(uuidForOrders);
    }
    mainContext().deleteObject(*object);
  }
  group.closeAndSave("Delete Items");
}

std::vector<ZYMSummary> ZYMCachingModel::summariesforAllItems() {
  const Objects objects = objectsSortedOnName();
  for (NSManagedObject* object : objects) {
    auto* item = static_cast<ZYMEntity*>(object);
    if (!item->name()) item->setName("");
  }
  return summariesOf(objects);
}

std::vector<ZYMSummary> ZYMCachingModel::rowsOfAllItems() const {
  return summariesOf(objectsSortedOnName());
}

PlistArray ZYMCachingModel::allItems() {
  return dictionaryRepresentationOfEntityArray(objectsSortedOnName());
}

PlistDictionary ZYMCachingModel::firstIngredient() {
  const PlistArray items = allItems();
  PlistDictionary first = items.empty() ? createItem() : *items.find(0)->dictionary();
  if (!first.contains(nameKeyInRecords_)) first.set(nameKeyInRecords_, "");
  return first;
}

std::int64_t ZYMCachingModel::indexOfMostSimilarObjectToString_inArray_forKey(
    std::string_view text, const PlistArray* array, const std::optional<KeyName>& key) {
  if (!array) return NSNotFound;
  std::vector<std::string> names;
  names.reserve(array->size());
  for (const PlistValue& element : *array) names.emplace_back(textOf(element, key));
  return SimilarNames(std::move(names)).indexOfMostSimilarTo(text);
}

PlistDictionary ZYMCachingModel::ingredientWithNameMostSimilarToString_matchingKeysAndValues(
    std::string_view text, const PlistDictionary* keysAndValues) {
  Sorted& all = sorted();
  Sorted& matching = keysAndValues ? all.thoseHaving(*keysAndValues) : all;
  return (matching.objects.empty() ? all : matching).mostSimilarTo(text, nameKeyInRecords_);
}

std::vector<PlistDictionary> ZYMCachingModel::ingredientsWithNamesMostSimilarToStrings(
    const std::vector<std::string>& texts) {
  std::vector<PlistDictionary> records;
  if (texts.empty()) return records;
  Sorted& all = sorted();
  for (const std::string& text : texts) {
    records.push_back(all.mostSimilarTo(text, nameKeyInRecords_));
  }
  return records;
}

std::map<std::string, std::vector<ZYMRecordEntity*>> ZYMCachingModel::objectsByUUID() const {
  std::map<std::string, std::vector<ZYMRecordEntity*>> result;
  for (NSManagedObject* object : ZYMEntityFetch::findAllObjectsInContext_predicate_sortDescriptor(
                                     entityClass(), nullptr, std::nullopt, std::nullopt)
                                     .value_or(Objects())) {
    const std::string* uuid = object->stringForKey(attributes::uuid);
    if (uuid) result[*uuid].push_back(static_cast<ZYMRecordEntity*>(object));
  }
  return result;
}

void ZYMCachingModel::addItemsFromArray(const PlistArray& items) {
  // Once for all: a look-up for each would go through all that was added before it.
  auto objects = objectsByUUID();
  bool added = false;
  for (const PlistDictionary& item : PlistRows(&items)) {
    const std::string* uuid = item.string(keys::UUID);
    if (!uuid) continue;
    std::vector<ZYMRecordEntity*>& known = objects[*uuid];
    if (known.size() > 1) continue;
    if (known.empty()) known.push_back(&insertObject());
    PlistDictionary copy = item;
    copy.set(keys::DateLastModified, NSDate::date());
    known.front()->updateWithDictionaryRepresentation(copy);
    added = true;
  }
  if (added) ZYMCoreDataModel::sharedInstance().save();
}

void ZYMCachingModel::addItemsFromDictionary(const PlistDictionary& items) {
  std::vector<PlistValue> records;
  records.reserve(items.size());
  for (const PlistEntry& entry : items) records.push_back(entry.value);
  addItemsFromArray(PlistArray(std::move(records)));
}

}  // namespace zym
