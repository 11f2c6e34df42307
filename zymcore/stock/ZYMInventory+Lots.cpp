#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/stock/ZYMInventory.h"
#include "zymcore/stock/internal/InventoryLots.h"
#include "zymcore/stock/internal/LibraryQualities.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMInventoryBatchEntity.h"
#include "zymcore/store/entities/ZYMInventoryEntity.h"

namespace zym {
namespace {

constexpr double secondsToKeep = 31536000;  // 365 days

ZYMInventoryEntity* itemWith(std::string_view uuid) {
  return ZYMInventoryEntity::onlyObjectWithUUID(nullptr, uuid);
}

PlistDictionary newLot(std::string name) {
  return {{keys::BatchName, std::move(name)},
          {keys::UUID, uuid()},
          {keys::DeliveredOn, NSDate::date()},
          {keys::ExpiresOn, NSDate::dateWithTimeIntervalSinceNow(secondsToKeep)}};
}

/// A new lot comes before all others of its item.
ZYMInventoryBatchEntity& insertLot(PlistDictionary& record, ZYMInventoryEntity& item) {
  ZYMInventoryBatchEntity& lot = ZYMInventoryBatchEntity::insertInContext(mainContext());
  lot.updateWithDictionaryRepresentation(record);
  for (NSManagedObject* other : item.objectsForKey(relationships::batches)) {
    const PlistValue* index = other->valueForKey(attributes::index);
    other->setValue_forKey((index ? index->integerValue() : 0) + 1, attributes::index);
  }
  lot.setValue_forKey(0, attributes::index);
  item.addBatchesObject(lot);
  return lot;
}

}  // namespace

std::optional<PlistDictionary> ZYMInventory::addBatchToItemWithUUID(std::string_view itemUUID) {
  ZYMInventoryEntity* item = itemWith(itemUUID);
  if (!item) return std::nullopt;
  ZYMUndoGroup group;
  const std::string* type = item->stringForKey(attributes::ingredientType);
  PlistDictionary lot = newLot(Localized_String("New Batch"));
  lot.set(keys::AmountInStock, "0.0");
  if (type) {
    lot.set(keys::IngredientType, *type);
    copyQualitiesFromLibrary(lot, *type, std::string(itemUUID), "0.0");
    if (*type == words::Hop) lot.set(keys::Form, words::Whole);
  }
  insertLot(lot, *item);
  item->setDateLastModified(NSDate::date());
  group.closeAndSave("Add Batch");
  return duplicate(lot);
}

std::optional<PlistArray> ZYMInventory::allBatchesForItemWithUUID(std::string_view itemUUID) const {
  const ZYMInventoryEntity* item = itemWith(itemUUID);
  if (!item) return std::nullopt;
  return dictionaryRepresentationsSortedOnEntityKey_ascending_fromSet(
      attributes::expiresOn, false, item->objectsForKey(relationships::batches));
}

void ZYMInventory::updateBatches_inItemWithUUID(const PlistArray& batches,
                                                std::string_view itemUUID) {
  ZYMInventoryEntity* item = itemWith(itemUUID);
  if (!item) return;
  PlistDictionary record = item->dictionaryRepresentation().value_or(PlistDictionary());
  const PlistArray* stored = record.array(keys::Batches);
  if (stored && *stored == batches) return;
  record.set(keys::Batches, duplicate(batches));
  ZYMUndoGroup group;
  item->updateWithDictionaryRepresentation(record);
  item->setDateLastModified(NSDate::date());
  group.closeAndSave("Edit Batch");
}

std::optional<PlistDictionary> ZYMInventory::addOrderItem_orderName_toItemWithUUID(
    const PlistDictionary& orderItem, std::string_view orderName, std::string_view itemUUID) {
  ZYMInventoryEntity* item = itemWith(itemUUID);
  if (!item) return std::nullopt;
  PlistDictionary lot = newLot(stringWithFormat(Localized_String("New Batch: %@"), {orderName}));
  lot.setOrRemove(keys::AmountInStock, orderItem.find(keys::Amount));
  lot.setOrRemove(keys::Cost, orderItem.find(keys::Cost));
  lot.setOrRemove(keys::IngredientType, orderItem.find(keys::IngredientType));
  copyQualitiesFromOrderItem(lot, orderItem);
  const ZYMInventoryBatchEntity& object = insertLot(lot, *item);
  const float inStock = static_cast<float>(amountUnder(*item, attributes::amountInStock)) +
                        static_cast<float>(amountUnder(object, attributes::amountInStock));
  item->setValue_forKey(stringWithFormatF(inStock), attributes::amountInStock);
  item->setDateLastModified(NSDate::date());
  return duplicate(lot);
}

void ZYMInventory::addOrderToInventory(const PlistDictionary& order) {
  for (const PlistDictionary& line : order.rows(keys::OrderItems)) {
    const std::string* uuid = line.string(keys::IngredientUUID);
    std::optional<PlistDictionary> item = uuid ? itemWithUUID(*uuid) : std::nullopt;
    if (!item) {
      const ZYMSummary ingredient{std::string(line.stringValue(keys::Name)),
                                  uuid ? std::optional(*uuid) : std::nullopt, 0};
      item = createItemForIngredientWithoutUndo_ofType(ingredient,
                                                       line.stringValue(keys::IngredientType));
    }
    (void)addOrderItem_orderName_toItemWithUUID(line, order.stringValue(keys::Name),
                                                item->stringValue(keys::UUID));
  }
  ZYMCoreDataModel::sharedInstance().save();
}

}  // namespace zym
