#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/stock/ZYMAvailabilitiesEngine.h"
#include "zymcore/stock/internal/Lots.h"

namespace zym {
namespace {

/// Less than this is short: what was allotted within the tolerance counts as in stock.
constexpr double tolerated = -0.5;

/// Forgets an earlier allotment where the lots are others by now; where they are the same, their
/// costs are brought up to date.
void checkAllotment(PlistDictionary& ingredient, const PlistArray& inStock) {
  if (!ingredient.contains(keys::Batches)) return;
  PlistArray* taken = ingredient.editArray(keys::Batches);
  if (!taken || !lots::areSame(*taken, inStock)) {
    ingredient.remove(keys::Batches);
    return;
  }
  for (std::size_t i = 0; i < inStock.size(); ++i) {
    PlistDictionary* part = taken->edit(i).editDictionary();
    const PlistDictionary* lot = inStock.find(i)->dictionary();
    if (part && lot) part->setOrRemove(keys::Cost, lot->find(keys::Cost));
  }
}

bool isAvailable(const PlistDictionary& ingredient, KeyName key, PlistDictionary& inventory) {
  // Only bought packs of yeast are in stock; anything else the brewer has by other means.
  if (key.text() == keys::YeastIngredients.text() &&
      ingredient.stringValue(keys::YeastAmountType) != words::CommercialPack) {
    return true;
  }
  PlistDictionary* item = lots::editItemOf(ingredient, inventory);
  if (!item) return false;
  item->set(keys::DateLastModified, NSDate::date());
  item->set(keys::AmountInStock,
            item->doubleValue(keys::AmountInStock) - ingredient.doubleValue(keys::Amount));
  const PlistArray* taken = ingredient.array(keys::Batches);
  if (!taken) return false;
  lots::take(*item, *taken, lots::Least::zero);
  return !(item->doubleValue(keys::AmountInStock) < tolerated);
}

}  // namespace

void ZYMAvailabilitiesEngine::validateInventoryBatchesInRecipeWithIngredientKey_inventory(
    KeyName key, PlistDictionary& inventory) {
  PlistDictionary* brewed = recipe();
  PlistArray* ingredients = brewed ? brewed->editArray(key) : nullptr;
  if (!ingredients) return;
  addIngredientsInArray_toWorkingCopyOfInventory(*ingredients, inventory);
  PlistDictionary copy = duplicate(inventory);
  for (PlistDictionary& ingredient : PlistEditableRows(ingredients)) {
    if (lots::isDeducted(ingredient)) continue;
    const PlistDictionary* item = lots::itemOf(ingredient, copy);
    const PlistArray* inStock = item ? item->array(keys::Batches) : nullptr;
    checkAllotment(ingredient, inStock ? *inStock : PlistArray());
    if (const PlistArray* taken = ingredient.array(keys::Batches)) {
      if (PlistDictionary* left = lots::editItemOf(ingredient, copy)) {
        lots::take(*left, *taken, lots::Least::zero);
      }
    } else {
      (void)autoAdjustIngredientBatchesForIngredient_withInventoryEntry_forceUpdate(ingredient,
                                                                                    item, true);
    }
  }
}

void ZYMAvailabilitiesEngine::setAvailabilitiesForRecipeIngredientKey_inventory(
    KeyName key, PlistDictionary& inventory) {
  validateInventoryBatchesInRecipeWithIngredientKey_inventory(key, inventory);
  PlistArray states;
  if (const PlistDictionary* brewed = recipe()) {
    for (const PlistDictionary& ingredient : brewed->rows(key)) {
      if (lots::isDeducted(ingredient)) continue;
      states.append(isAvailable(ingredient, key, inventory));
    }
  }
  availabilities_.set(key, std::move(states));
}

}  // namespace zym
