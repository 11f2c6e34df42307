#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/store/ZYMCachingModel.h"

namespace zym {

/// The orders that the brewer places with suppliers. An order holds lines, one an ingredient, each
/// "OnOrder" or "Delivered". What is delivered comes into stock by
/// `ZYMInventory::addOrderToInventory`; nothing here changes the stock. Main thread.
class ZYMOrders final : public ZYMCachingModel {
 public:
  [[nodiscard]] static ZYMOrders& sharedInstance();

  [[nodiscard]] std::string_view entityClass() const override;
  void prepareNewItem(PlistDictionary& item) override;

  // Orders.

  [[nodiscard]] PlistArray allOrders() { return allItems(); }
  [[nodiscard]] std::vector<ZYMSummary> summariesForAllOrders() { return summariesforAllItems(); }
  /// By name, with the number of lines as children. An order without a name gets "" first.
  [[nodiscard]] std::vector<ZYMSummary> summariesforAllItems();
  [[nodiscard]] std::optional<PlistDictionary> orderWithUUID(std::string_view uuid) {
    return itemWithUUID(uuid);
  }
  void updateOrder(PlistDictionary& order) { updateItem(order); }
  void removeOrderWithUUID(const std::optional<std::string>& uuid) { removeItemWithUUID(uuid); }

  /// Absent when there are none.
  [[nodiscard]] std::optional<PlistArray> allOrdersForSupplierWithUUID(
      const std::optional<std::string>& supplierUUID) const;
  /// A new order without lines. Absent without the supplier.
  std::optional<PlistDictionary> createOrderForSupplierWithUUID(
      const std::optional<std::string>& supplierUUID);
  /// A new order of all the ingredients, each a record with "UUID", "IngredientType" and "Amount".
  /// Qualities come from the library, hops are "Whole". Absent without the supplier.
  std::optional<PlistDictionary> createOrderForSupplierWithUUID_withIngredients(
      const std::optional<std::string>& supplierUUID, const PlistArray& ingredients);
  /// Part of a removal that names itself as an undo step and saves; this does neither.
  void removeOrdersForSupplierUUID(const std::optional<std::string>& supplierUUID);

  // Lines of orders.

  /// All, flat, so that those of one ingredient, or of one order, stand together.
  [[nodiscard]] PlistArray allOrderItemsGroupedByIngredientUUID() const;
  [[nodiscard]] PlistArray allOrderItemsGroupedByOrder() const;
  /// What is on order first. Absent without the order.
  [[nodiscard]] std::optional<PlistArray> orderItemsForOrderWithUUID(
      const std::optional<std::string>& orderUUID) const;
  /// Absent when there are none.
  [[nodiscard]] std::optional<PlistArray> orderItemsForIngredientWithUUID(
      const std::optional<std::string>& ingredientUUID) const;
  /// A new line of nothing. Absent without the order.
  std::optional<PlistDictionary> createOrderItemForOrderWithUUID_ingredientUUID_ingredientType(
      const std::optional<std::string>& orderUUID, const std::optional<std::string>& ingredientUUID,
      std::string_view ingredientType);
  /// Changes nothing: a line that there is stays as it is, and a record of none throws
  /// `NSRangeException`. Lines change by `updateOrder` with the whole order.
  void updateOrderItem(const PlistDictionary& item);
  void removeOrderItemWithUUID(const std::optional<std::string>& uuid);
  /// Part of a removal that names itself as an undo step and saves; this does neither.
  void removeOrderItemsForIngredientWithUUID(const std::optional<std::string>& ingredientUUID);

  /// What is on order, with six decimals, also when it is nothing because all was delivered; "0"
  /// for an ingredient that no line has.
  [[nodiscard]] std::string amountOnOrderForIngredientWithUUID(
      const std::optional<std::string>& ingredientUUID) const;
  /// Marks those lines that there are.
  void markOrderItemsAsDelivered(const PlistArray& items);

 private:
  ZYMOrders();
};

}  // namespace zym
