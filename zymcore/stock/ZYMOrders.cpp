#include "zymcore/stock/ZYMOrders.h"

#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/stock/internal/OrderLines.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/SummaryRows.h"
#include "zymcore/store/entities/ZYMOrderEntity.h"
#include "zymcore/store/entities/ZYMSupplierEntity.h"

namespace zym {
namespace {

// An absent uuid is nobody's, not that of orders without a supplier.
std::vector<ZYMOrderEntity*> ordersOfSupplier(const std::optional<std::string>& supplierUUID) {
  if (!supplierUUID) return {};
  return ZYMOrderEntity::objectsMatchingKey_andValue_sortedOnKey(attributes::supplierUuid,
                                                                 supplierUUID, std::nullopt)
      .value_or(std::vector<ZYMOrderEntity*>());
}

/// A new order in the store, and its record.
struct NewOrder {
  ZYMOrderEntity& object;
  PlistDictionary record;
};

NewOrder insertOrder(const ZYMSupplierEntity& supplier) {
  const NSDate now = NSDate::date();
  PlistDictionary record{{keys::Name, Localized_String("New Order")},
                         {keys::UUID, uuid()},
                         {keys::DateLastModified, now},
                         {keys::OrderDate, now},
                         {keys::Notes, ""}};
  if (const std::optional<std::string> uuid = supplier.uuid()) {
    record.set(keys::SupplierUUID, *uuid);
  }
  ZYMOrderEntity& order = ZYMOrderEntity::insertInContext(mainContext());
  order.updateWithDictionaryRepresentation(record);
  return {order, record};
}

}  // namespace

ZYMOrders& ZYMOrders::sharedInstance() {
  static auto* instance = new ZYMOrders();
  return *instance;
}

ZYMOrders::ZYMOrders() : ZYMCachingModel(keys::Name) {}

std::string_view ZYMOrders::entityClass() const {
  return ZYMOrderEntity::entityName;
}

void ZYMOrders::prepareNewItem(PlistDictionary& item) {
  item.set(keys::Name, Localized_String("New Order"));
  item.set(keys::OrderDate, NSDate::date());
  item.set(keys::Notes, "");
  item.set(keys::SupplierUUID, "");
}

std::vector<ZYMSummary> ZYMOrders::summariesforAllItems() {
  std::vector<ZYMSummary> rows;
  for (NSManagedObject* object : objectsSortedOnName()) {
    auto& order = static_cast<ZYMOrderEntity&>(*object);
    if (!order.name()) order.setName("");
    rows.push_back(summaryOf(
        order, static_cast<std::int64_t>(order.objectsForKey(relationships::items).size())));
  }
  return rows;
}

std::optional<PlistArray> ZYMOrders::allOrdersForSupplierWithUUID(
    const std::optional<std::string>& supplierUUID) const {
  const std::vector<ZYMOrderEntity*> orders = ordersOfSupplier(supplierUUID);
  if (orders.empty()) return std::nullopt;
  return dictionaryRepresentationOfEntityArray({orders.begin(), orders.end()});
}

std::optional<PlistDictionary> ZYMOrders::createOrderForSupplierWithUUID(
    const std::optional<std::string>& supplierUUID) {
  const auto* supplier = ZYMSupplierEntity::onlyObjectWithUUID(nullptr, supplierUUID);
  if (!supplier) return std::nullopt;
  ZYMUndoGroup group;
  const NewOrder order = insertOrder(*supplier);
  group.closeAndSave("Add Order");
  return duplicate(order.record);
}

std::optional<PlistDictionary> ZYMOrders::createOrderForSupplierWithUUID_withIngredients(
    const std::optional<std::string>& supplierUUID, const PlistArray& ingredients) {
  const auto* supplier = ZYMSupplierEntity::onlyObjectWithUUID(nullptr, supplierUUID);
  if (!supplier) return std::nullopt;
  ZYMUndoGroup group;
  ZYMOrderEntity& order = insertOrder(*supplier).object;
  for (const PlistDictionary& ingredient : PlistRows(&ingredients)) {
    const std::string* uuid = ingredient.string(keys::UUID);
    const PlistValue* amount = ingredient.find(keys::Amount);
    (void)insertOrderLine(order, uuid ? std::optional(*uuid) : std::nullopt,
                          ingredient.stringValue(keys::IngredientType), amount);
  }
  order.setDateLastModified(NSDate::date());
  group.closeAndSave("Create Order");
  return order.dictionaryRepresentation();
}

void ZYMOrders::removeOrdersForSupplierUUID(const std::optional<std::string>& supplierUUID) {
  for (ZYMOrderEntity* order : ordersOfSupplier(supplierUUID)) mainContext().deleteObject(*order);
}

}  // namespace zym
