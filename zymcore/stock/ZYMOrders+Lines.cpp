#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/stock/ZYMOrders.h"
#include "zymcore/stock/internal/LibraryQualities.h"
#include "zymcore/stock/internal/OrderLines.h"
#include "zymcore/store/FirstOf.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMOrderEntity.h"
#include "zymcore/store/entities/ZYMOrderItemEntity.h"

namespace zym {
namespace {

using Lines = std::vector<ZYMOrderItemEntity*>;

// An absent uuid is nobody's, not that of lines without one.
Lines linesWith(KeyName attribute, const std::optional<std::string>& value) {
  if (!value) return {};
  return ZYMOrderItemEntity::objectsMatchingKey_andValue_sortedOnKey(attribute, value, std::nullopt)
      .value_or(Lines());
}

PlistArray recordsOf(const Lines& lines) {
  return dictionaryRepresentationOfEntityArray({lines.begin(), lines.end()});
}

std::optional<std::string> textOf(const std::string* text) {
  return text ? std::optional(*text) : std::nullopt;
}

void touchOrderOf(const ZYMOrderItemEntity& line) {
  if (NSManagedObject* order = line.objectForKey(relationships::order)) {
    static_cast<ZYMOrderEntity*>(order)->setDateLastModified(NSDate::date());
  }
}

void removeLine(ZYMOrderItemEntity& line) {
  touchOrderOf(line);
  if (NSManagedObject* order = line.objectForKey(relationships::order)) {
    order->removeObject_forKey(line, relationships::items);
  }
  mainContext().deleteObject(line);
}

}  // namespace

PlistDictionary insertOrderLine(ZYMOrderEntity& order,
                                const std::optional<std::string>& ingredientUUID,
                                std::string_view ingredientType, const PlistValue* amount) {
  PlistDictionary record{{keys::UUID, uuid()},
                         {keys::DateLastModified, NSDate::date()},
                         {keys::Status, words::OnOrder}};
  copyQualitiesFromLibrary(record, ingredientType, ingredientUUID, "0");
  if (ingredientType == words::Hop) record.set(keys::Form, words::stockForms[0]);
  if (ingredientUUID) record.set(keys::IngredientUUID, *ingredientUUID);
  record.set(keys::IngredientType, ingredientType);
  record.setOrRemove(keys::Amount, amount);

  ZYMOrderItemEntity& line = ZYMOrderItemEntity::insertInContext(mainContext());
  line.updateWithDictionaryRepresentation(record);
  line.setObject_forKey(&order, relationships::order);
  order.addObject_forKey(line, relationships::items);
  return record;
}

PlistArray ZYMOrders::allOrderItemsGroupedByIngredientUUID() const {
  return recordsOf(
      ZYMOrderItemEntity::findAllObjectsSortedOnKey(attributes::ingredientUuid).value_or(Lines()));
}

PlistArray ZYMOrders::allOrderItemsGroupedByOrder() const {
  return recordsOf(
      ZYMOrderItemEntity::findAllObjectsSortedOnKey(relationships::order).value_or(Lines()));
}

std::optional<PlistArray> ZYMOrders::orderItemsForOrderWithUUID(
    const std::optional<std::string>& orderUUID) const {
  const ZYMOrderEntity* order = ZYMOrderEntity::onlyObjectWithUUID(nullptr, orderUUID);
  if (!order) return std::nullopt;
  return dictionaryRepresentationsSortedOnEntityKey_ascending_fromSet(
      attributes::status, false, order->objectsForKey(relationships::items));
}

std::optional<PlistArray> ZYMOrders::orderItemsForIngredientWithUUID(
    const std::optional<std::string>& ingredientUUID) const {
  const Lines lines = linesWith(attributes::ingredientUuid, ingredientUUID);
  return lines.empty() ? std::nullopt : std::optional(recordsOf(lines));
}

std::optional<PlistDictionary>
ZYMOrders::createOrderItemForOrderWithUUID_ingredientUUID_ingredientType(
    const std::optional<std::string>& orderUUID, const std::optional<std::string>& ingredientUUID,
    std::string_view ingredientType) {
  ZYMOrderEntity* order = ZYMOrderEntity::onlyObjectWithUUID(nullptr, orderUUID);
  if (!order) return std::nullopt;
  ZYMUndoGroup group;
  const PlistValue nothing = "0";
  const PlistDictionary record = insertOrderLine(*order, ingredientUUID, ingredientType, &nothing);
  order->setDateLastModified(NSDate::date());
  group.closeAndSave("Add Order Item");
  return duplicate(record);
}

void ZYMOrders::updateOrderItem(const PlistDictionary& item) {
  // Nobody updates a single line: it changes with its order.
  const Lines lines = linesWith(attributes::uuid, textOf(item.string(keys::UUID)));
  if (lines.empty()) (void)firstOf(lines);
}

void ZYMOrders::removeOrderItemWithUUID(const std::optional<std::string>& uuid) {
  ZYMOrderItemEntity* line = ZYMOrderItemEntity::onlyObjectWithUUID(nullptr, uuid);
  if (!line) return;
  ZYMUndoGroup group;
  removeLine(*line);
  group.closeAndSave("Remove Order Item");
}

void ZYMOrders::removeOrderItemsForIngredientWithUUID(
    const std::optional<std::string>& ingredientUUID) {
  for (ZYMOrderItemEntity* line : linesWith(attributes::ingredientUuid, ingredientUUID)) {
    removeLine(*line);
  }
}

std::string ZYMOrders::amountOnOrderForIngredientWithUUID(
    const std::optional<std::string>& ingredientUUID) const {
  if (!ingredientUUID) return "0";
  NSFetchRequest request =
      NSFetchRequest::fetchRequestWithEntityName(ZYMOrderItemEntity::entityName);
  request.setPredicate(NSPredicate::equal(attributes::ingredientUuid, ingredientUUID));
  const auto lines =
      mainContext().propertiesForFetchRequest(request, {attributes::status, attributes::amount});
  if (!lines || lines->size() == 0) return "0";
  double onOrder = 0;
  for (std::size_t row = 0; row < lines->size(); ++row) {
    const std::string* status = lines->string(row, 0);
    const std::string* amount = lines->string(row, 1);
    if (status && *status == words::OnOrder && amount) onOrder += floatValue(*amount);
  }
  return stringWithFormatF(onOrder);
}

void ZYMOrders::markOrderItemsAsDelivered(const PlistArray& items) {
  ZYMUndoGroup group;
  for (const PlistDictionary& item : PlistRows(&items)) {
    auto* line = ZYMOrderItemEntity::onlyObjectWithUUID(nullptr, textOf(item.string(keys::UUID)));
    if (!line) continue;
    line->setValue_forKey(words::Delivered, attributes::status);
    line->setDateLastModified(NSDate::date());
    touchOrderOf(*line);
  }
  group.closeAndSave("Mark Orders");
}

}  // namespace zym
