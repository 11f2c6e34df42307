#include <algorithm>

#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/stock/ZYMAvailabilitiesEngine.h"
#include "zymcore/stock/ZYMInventory.h"
#include "zymcore/stock/internal/Lots.h"

namespace zym {
namespace {

/// Brings the amounts in stock of an earlier allotment up to date. Answers whether any lot has less
/// than the whole addition wants, whatever it was to give of it.
bool refreshFindingShortage(PlistDictionary& ingredient, const PlistArray& inStock) {
  const double wanted = ingredient.doubleValue(keys::Amount);
  bool isShort = false;
  PlistArray& taken = *ingredient.editArray(keys::Batches);
  for (std::size_t i = 0; i < inStock.size(); ++i) {
    PlistDictionary* part = taken.edit(i).editDictionary();
    const PlistDictionary* lot = inStock.find(i)->dictionary();
    if (!part || !lot) continue;
    part->setOrRemove(keys::AmountInStock, lot->find(keys::AmountInStock));
    if (wanted > lot->doubleValue(keys::AmountInStock)) isShort = true;
  }
  return isShort;
}

/// Gives an addition that was walked over back what it was before.
void restore(PlistDictionary& ingredient, const PlistDictionary& before) {
  ingredient.setOrRemove(keys::Amount, before.find(keys::Amount));
  for (const KeyName key : {keys::Alpha, keys::Extract, keys::Color}) {
    if (const PlistValue* value = before.find(key)) ingredient.set(key, *value);
  }
  const PlistArray* given = before.array(keys::Batches);
  PlistArray* taken = ingredient.editArray(keys::Batches);
  if (!given || !taken) return;
  for (std::size_t i = 0; i < std::min(given->size(), taken->size()); ++i) {
    const PlistDictionary* old = given->find(i)->dictionary();
    PlistDictionary* lot = taken->edit(i).editDictionary();
    if (old && lot) lot->setOrRemove(keys::Amount, old->find(keys::Amount));
  }
}

}  // namespace

void ZYMAvailabilitiesEngine::addIngredientsInArray_toWorkingCopyOfInventory(
    const PlistArray& ingredients, PlistDictionary& inventory) {
  for (const PlistDictionary& ingredient : PlistRows(&ingredients)) {
    const std::string* uuid = ingredient.string(keys::UUID);
    if (!uuid || lots::isDeducted(ingredient) || inventory.contains(KeyName(*uuid))) continue;
    if (auto item = ZYMInventory::sharedInstance().itemWithUUID(*uuid)) {
      inventory.set(KeyName(*uuid), std::move(*item));
    }
  }
}

bool ZYMAvailabilitiesEngine::
    autoAdjustIngredientBatchesForIngredient_withInventoryEntry_forceUpdate(
        PlistDictionary& ingredient, const PlistDictionary* item, bool forceUpdate) {
  if (lots::isDeducted(ingredient)) return false;
  const PlistArray* inStock = item ? item->array(keys::Batches) : nullptr;
  if (!inStock || inStock->empty()) return ingredient.remove(keys::Batches);
  const PlistArray* taken = ingredient.array(keys::Batches);
  if (!forceUpdate && taken && lots::areSame(*taken, *inStock) &&
      !refreshFindingShortage(ingredient, *inStock)) {
    return false;
  }
  createNewBatchesKeyForIngredient_withInventoryEntry(ingredient, *item);
  return true;
}

bool ZYMAvailabilitiesEngine::
    autoAdjustAllInstancesOfIngredient_fromStartIndex_inArray_inventoryContents_forcingRefresh(
        const PlistDictionary* ingredient, std::size_t startIndex, PlistArray& ingredients,
        PlistDictionary& inventory, bool forceRefresh) {
  const std::string wanted(ingredient ? ingredient->stringValue(keys::UUID) : "");
  addIngredientsInArray_toWorkingCopyOfInventory(ingredients, inventory);
  if (ingredients.size() <= startIndex) return false;
  // The elements stay where they are; the array itself may move when the recipe that holds it is
  // recalculated and gains a figure.
  std::vector<PlistValue>& elements = ingredients.editAll();
  bool changed = false;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    PlistDictionary* element = elements[i].editDictionary();
    if (!element || lots::isDeducted(*element)) continue;
    if (ingredient && element->stringValue(keys::UUID) != wanted) continue;
    const PlistDictionary before = duplicate(*element);
    const bool adjusted = autoAdjustIngredientBatchesForIngredient_withInventoryEntry_forceUpdate(
        *element, lots::itemOf(*element, inventory), forceRefresh);
    if (i < startIndex) {
      restore(*element, before);
    } else {
      changed = changed || adjusted;
    }
    const PlistArray* taken = element->array(keys::Batches);
    PlistDictionary* item = lots::editItemOf(*element, inventory);
    if (!taken || !item) continue;
    item->setNumber(keys::AmountInStock,
                    item->doubleValue(keys::AmountInStock) - element->doubleValue(keys::Amount));
    lots::take(*item, *taken, lots::Least::none);
  }
  return changed;
}

bool ZYMAvailabilitiesEngine::autoAdjustAllIngredientsInArray_inventoryContents_forcingRefresh(
    PlistArray& ingredients, PlistDictionary& inventory, bool forceRefresh) {
  return autoAdjustAllInstancesOfIngredient_fromStartIndex_inArray_inventoryContents_forcingRefresh(
      nullptr, 0, ingredients, inventory, forceRefresh);
}

void ZYMAvailabilitiesEngine::autoAdjustAllIngredientsInRecipeForcingRefresh(bool forceRefresh) {
  PlistDictionary* brewed = recipe();
  if (!brewed) return;
  PlistDictionary inventory;
  // A yeast's packs are counted only when the batch is.
  for (const KeyName key :
       {keys::FermentableIngredients, keys::HopIngredients, keys::OtherIngredients}) {
    if (PlistArray* ingredients = brewed->editArray(key)) {
      (void)autoAdjustAllIngredientsInArray_inventoryContents_forcingRefresh(
          *ingredients, inventory, forceRefresh);
    }
  }
}

}  // namespace zym
