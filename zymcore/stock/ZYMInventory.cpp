#include "zymcore/stock/ZYMInventory.h"

#include <unordered_map>

#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMOtherIngredients.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/stock/internal/InventoryLots.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMLibraryRegistry.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/SummaryRows.h"
#include "zymcore/store/entities/ZYMInventoryBatchEntity.h"
#include "zymcore/store/entities/ZYMInventoryEntity.h"

namespace zym {
namespace {

constexpr double hardlyAny = 0.01;

ZYMCachingModel* libraryForType(std::string_view type) {
  if (type == words::Fermentable) return &ZYMFermentables::sharedInstance();
  if (type == words::Hop) return &ZYMHops::sharedInstance();
  if (type == words::Yeast) return &ZYMYeasts::sharedInstance();
  // The name of the additions of a recipe, not that of the type.
  if (type == keys::OtherIngredients.text()) return &ZYMOtherIngredients::sharedInstance();
  return nullptr;
}

PlistValue nameOf(const ZYMSummary& ingredient, std::string_view type) {
  ZYMCachingModel* library = libraryForType(type);
  if (library && ingredient.uuid) {
    const std::optional<PlistDictionary> record = library->itemWithUUID(*ingredient.uuid);
    const PlistValue* name = record ? record->find(library->nameKeyInRecords()) : nullptr;
    if (name) return *name;
  }
  return ingredient.name;
}

PlistDictionary newItem(const ZYMSummary& ingredient, std::string_view type) {
  PlistDictionary item{{keys::UUID, uuid()}, {keys::DateLastModified, NSDate::date()}};
  item.set(keys::Ingredient, nameOf(ingredient, type));
  item.set(keys::AmountInStock, "0.0");
  item.set(keys::IngredientType, type);
  item.set(keys::Batches, PlistArray());
  if (ingredient.uuid) item.set(keys::UUID, *ingredient.uuid);
  item.set(keys::Version, "5");
  return item;
}

/// All names of a library at once: a look-up for each item would read a record for each.
using Names = std::unordered_map<std::string, std::string>;
Names namesByUUID(std::string_view type) {
  Names names;
  const ZYMCachingModel* library =
      ZYMLibraryRegistry::sharedInstance().libraryOfIngredientType(type);
  if (!library) return names;
  for (const ZYMSummary& row : summariesForFetchRequest(
           NSFetchRequest::fetchRequestWithEntityName(library->entityClass()), {}, nullptr)) {
    if (!row.uuid) continue;
    const auto [name, isFirst] = names.emplace(*row.uuid, row.name);
    if (!isFirst) name->second.clear();  // A uuid that several have is nobody's.
  }
  return names;
}

NSFetchRequest itemsOfType(std::string_view type) {
  NSFetchRequest request =
      NSFetchRequest::fetchRequestWithEntityName(ZYMInventoryEntity::entityName);
  request.setPredicate(NSPredicate::equal(attributes::ingredientType, type));
  request.setSortDescriptors({NSSortDescriptor(attributes::name, true)});
  return request;
}

}  // namespace

double amountUnder(const NSManagedObject& object, KeyName attribute) {
  const std::string* amount = object.stringForKey(attribute);
  return amount ? doubleValue(*amount) : 0;
}

ZYMInventory& ZYMInventory::sharedInstance() {
  static auto* instance = new ZYMInventory();
  return *instance;
}

ZYMInventory::ZYMInventory() : ZYMCachingModel(keys::Ingredient) {}

std::string_view ZYMInventory::entityClass() const {
  return ZYMInventoryEntity::entityName;
}

PlistDictionary ZYMInventory::createItem() {
  throw NSException(NSInternalInconsistencyException,
                    "DO NOT USE createItem for ZYMInventory use createItemForIngredient: instead!");
}

PlistDictionary ZYMInventory::createItemForIngredient(const ZYMSummary& ingredient) {
  return createItemForIngredient_ofType(ingredient, words::Fermentable);
}

PlistDictionary ZYMInventory::createItemForIngredient_ofType(const ZYMSummary& ingredient,
                                                             std::string_view type) {
  PlistDictionary item = newItem(ingredient, type);
  insertItem(item, "Add Item");
  return item;
}

PlistDictionary ZYMInventory::createItemForIngredientWithoutUndo_ofType(
    const ZYMSummary& ingredient, std::string_view type) {
  PlistDictionary item = newItem(ingredient, type);
  ZYMInventoryEntity::insertInContext(mainContext()).updateWithDictionaryRepresentation(item);
  return item;
}

std::optional<PlistDictionary> ZYMInventory::duplicateItemWithUUID(std::string_view /*uuid*/) {
  return std::nullopt;
}

void ZYMInventory::removeItemsWithNoBatches() {
  bool removed = false;
  for (ZYMInventoryBatchEntity* lot : ZYMInventoryBatchEntity::findAllObjects().value_or(
           std::vector<ZYMInventoryBatchEntity*>())) {
    if (!(amountUnder(*lot, attributes::amountInStock) < hardlyAny)) continue;
    lot->setObject_forKey(nullptr, relationships::item);
    mainContext().deleteObject(*lot);
    removed = true;
  }
  for (ZYMInventoryEntity* item :
       ZYMInventoryEntity::findAllObjects().value_or(std::vector<ZYMInventoryEntity*>())) {
    const std::vector<NSManagedObject*> lots = item->objectsForKey(relationships::batches);
    double inStock = 0;
    for (const NSManagedObject* lot : lots) {
      inStock += amountUnder(*lot, attributes::amountInStock);
    }
    item->setValue_forKey(stringWithDecimals(inStock, 2), attributes::amountInStock);
    if (lots.empty() && amountUnder(*item, attributes::amountInStock) < hardlyAny &&
        amountUnder(*item, attributes::amountOnOrder) < hardlyAny) {
      mainContext().deleteObject(*item);
      removed = true;
    }
  }
  if (removed) ZYMCoreDataModel::sharedInstance().save();
}

std::vector<ZYMSummary> ZYMInventory::summariesforAllItemsOfIngredientType(
    std::string_view type) const {
  return summariesForFetchRequest(itemsOfType(type), relationships::batches, nullptr);
}

PlistArray ZYMInventory::allItemsOfIngredientType(std::string_view type) const {
  const Names names = namesByUUID(type);
  PlistArray items;
  for (NSManagedObject* object :
       mainContext().executeFetchRequest(itemsOfType(type)).value_or(Objects())) {
    const std::string* uuid = object->stringForKey(attributes::uuid);
    const auto name = uuid ? names.find(*uuid) : names.end();
    items.append(static_cast<ZYMRecordEntity*>(object)->dictionaryRepresentationKnowing(
        {{keys::Ingredient, name == names.end() ? "" : name->second}}));
  }
  return items;
}

}  // namespace zym
