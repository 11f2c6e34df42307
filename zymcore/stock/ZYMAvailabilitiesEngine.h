#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "zymcore/platform/values/PlistValue.h"
#include "zymcore/stock/SharedBatch.h"
#include "zymcore/stock/ZYMAvailabilitiesAdvisory.h"

namespace zym {

/// Decides which lots each addition of the open batch takes, and how much of each, and writes the
/// stock down when the batch is brewed.
///
/// What an addition takes stands in its "Batches": a copy of each lot of the item with its uuid, in
/// the item's order, with the "Amount" that it gives. Without the key there is too little in stock.
/// What expires first goes first. The blend of the lots shows in the recipe: a fermentable gets
/// their mean "Extract" and "Color"; a hop that gives more than a fifth of the bitterness keeps its
/// alpha mass by another "Amount", any other hop keeps its weight at another "Alpha"; where one
/// form of hops is short the other is taken, and the brewer told. An addition that was taken out of
/// stock already ("IngredientDeducted") is never touched again.
///
/// A working inventory is a dictionary of items by uuid, read from the stock as it is needed, from
/// which additions take one after the other; it is never stored as such. Nothing here fails. Main
/// thread.
class ZYMAvailabilitiesEngine {
 public:
  using Advisories = std::vector<ZYMAvailabilitiesAdvisory>;

  // What is answered for an addition.
  static constexpr std::int64_t notInStock = 0;
  static constexpr std::int64_t inStock = 2;
  static constexpr std::int64_t deducted = 3;

  [[nodiscard]] static ZYMAvailabilitiesEngine& sharedInstance();
  ZYMAvailabilitiesEngine(const ZYMAvailabilitiesEngine&) = delete;
  ZYMAvailabilitiesEngine& operator=(const ZYMAvailabilitiesEngine&) = delete;

  /// The open batch, which is changed in place. Without one nothing happens.
  [[nodiscard]] const SharedBatch& batch() const noexcept { return batch_; }
  void setBatch(SharedBatch batch);
  /// What the last recalculation has to say.
  [[nodiscard]] const Advisories& messages() const noexcept { return messages_; }
  /// By the key of the recipe's additions, a boolean for each that isn't deducted yet, in order.
  [[nodiscard]] const PlistDictionary& availabilities() const noexcept { return availabilities_; }

  /// Takes for all additions what the stock has now, and works out what that costs. True when there
  /// is something to tell and `advisories` is given to take it.
  bool recalculateAvailabilitiesWithAdvisories(Advisories* advisories);
  /// `deducted` for any addition of a batch that was brewed; else whether that of the position
  /// among those not deducted yet is in stock.
  [[nodiscard]] std::int64_t availabilityOfIngredientInRecipeAtIndex_ofArrayForKey(
      std::size_t index, KeyName key) const;

  // After an edit. With `forceRefresh` what was taken earlier is taken anew; without it only where
  // the lots have changed or any of them has less than the addition wants. Each answers whether
  // anything did. Additions before the start index take from the stock, but keep their figures.

  /// All but yeasts.
  void autoAdjustAllIngredientsInRecipeForcingRefresh(bool forceRefresh);
  bool autoAdjustAllIngredientsInArray_inventoryContents_forcingRefresh(PlistArray& ingredients,
                                                                        PlistDictionary& inventory,
                                                                        bool forceRefresh);
  /// An ingredient, if given, is the only one that is looked at.
  bool autoAdjustAllInstancesOfIngredient_fromStartIndex_inArray_inventoryContents_forcingRefresh(
      const PlistDictionary* ingredient, std::size_t startIndex, PlistArray& ingredients,
      PlistDictionary& inventory, bool forceRefresh);
  bool autoAdjustIngredientBatchesForIngredient_withInventoryEntry_forceUpdate(
      PlistDictionary& ingredient, const PlistDictionary* item, bool forceUpdate);

  // The steps.

  /// Takes for one addition of the batch from the lots of the item.
  void createNewBatchesKeyForIngredient_withInventoryEntry(PlistDictionary& ingredient,
                                                           const PlistDictionary& item);
  /// Checks what was taken earlier against the lots as they are, and takes what is missing. It
  /// works on a copy: the inventory only gains the items of the additions.
  void validateInventoryBatchesInRecipeWithIngredientKey_inventory(KeyName key,
                                                                   PlistDictionary& inventory);
  void setAvailabilitiesForRecipeIngredientKey_inventory(KeyName key, PlistDictionary& inventory);
  static void addIngredientsInArray_toWorkingCopyOfInventory(const PlistArray& ingredients,
                                                             PlistDictionary& inventory);
  void setAvailabilitiesAndWriteInventory(bool write);

  // Brewing.

  void markAllIngredientsAsDeducted();
  /// Takes all out of stock and stores the batch, as one change of the store.
  void adjustInventoryForBatchAndSave();

  // Advisories, as one alert.

  static void presentAdvisories(const Advisories& advisories);
  /// At once, or with the next turn of the loop.
  static void presentAdvisories_immediately(const Advisories& advisories, bool immediately);

 private:
  ZYMAvailabilitiesEngine() = default;

  [[nodiscard]] PlistDictionary* recipe() const;
  void recalculateRecipe() const;
  void allotHop(PlistDictionary& hop, const PlistDictionary& item);
  void allotHopByAlphaMass(PlistDictionary& hop, const PlistDictionary& item);
  void allotHopByWeight(PlistDictionary& hop, const PlistDictionary& item);
  void changeForm(PlistDictionary& hop, bool toPellets, const PlistDictionary& item,
                  std::string_view message);

  SharedBatch batch_;
  Advisories messages_;
  PlistDictionary availabilities_;
};

}  // namespace zym
