#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/store/ZYMCachingModel.h"

namespace zym {

/// The stock: an item for each ingredient that the brewer has, under the uuid that the ingredient
/// has in its library, and in it the lots as they were bought, each with its own amount, cost, age
/// and quality. The lots of a record stand in the order of "ExpiresOn", the last expires first; it
/// is from the end that a brew takes them. An item's "AmountInStock" is always the sum of its lots.
/// An unknown uuid is no failure. Main thread.
class ZYMInventory final : public ZYMCachingModel {
 public:
  [[nodiscard]] static ZYMInventory& sharedInstance();

  [[nodiscard]] std::string_view entityClass() const override;

  /// Throws `NSInternalInconsistencyException`: an item stands for an ingredient.
  PlistDictionary createItem() override;
  /// Of type "Fermentable".
  PlistDictionary createItemForIngredient(const ZYMSummary& ingredient);
  /// A new item without lots for an ingredient of a library. "OtherIngredients" is the one name by
  /// which other ingredients are looked up here; for "Other", the type that items have, the name is
  /// that of the row.
  PlistDictionary createItemForIngredient_ofType(const ZYMSummary& ingredient,
                                                 std::string_view type);
  /// The same without an undo step and without a save.
  PlistDictionary createItemForIngredientWithoutUndo_ofType(const ZYMSummary& ingredient,
                                                            std::string_view type);
  /// Always absent: there are no two items of one ingredient.
  std::optional<PlistDictionary> duplicateItemWithUUID(std::string_view uuid) override;

  /// A new lot of nothing, delivered now, for a year, with the qualities that the library has.
  std::optional<PlistDictionary> addBatchToItemWithUUID(std::string_view itemUUID);
  [[nodiscard]] std::optional<PlistArray> allBatchesForItemWithUUID(
      std::string_view itemUUID) const;
  /// Puts the lots in place of those that the item has, where they differ in any way. Their order
  /// is taken as it comes.
  void updateBatches_inItemWithUUID(const PlistArray& batches, std::string_view itemUUID);
  /// Removes all lots of less than 0.01, and the items that then have neither lots nor stock. No
  /// undo step.
  void removeItemsWithNoBatches();

  // By name, as stored. The children of a row are the lots.
  [[nodiscard]] std::vector<ZYMSummary> summariesforAllItemsOfIngredientType(
      std::string_view type) const;
  [[nodiscard]] PlistArray allItemsOfIngredientType(std::string_view type) const;

  /// A new lot of what the line of an order says. Neither an undo step nor a save.
  std::optional<PlistDictionary> addOrderItem_orderName_toItemWithUUID(
      const PlistDictionary& orderItem, std::string_view orderName, std::string_view itemUUID);
  /// Takes all lines of the order into stock, whatever their status, with items for ingredients
  /// that have none; saves once. No undo step of its own.
  void addOrderToInventory(const PlistDictionary& order);

 private:
  ZYMInventory();
};

}  // namespace zym
