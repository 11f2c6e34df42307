#include <string>
#include <vector>

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/stock/ZYMAvailabilitiesEngine.h"
#include "zymcore/stock/ZYMInventory.h"
#include "zymcore/stock/ZYMOrders.h"
#include "zymcore/stock/internal/Lots.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMOneChange.h"

namespace zym {
namespace {

/// Less than this is nothing.
constexpr double hardlyAny = 0.001;

void removeEmptyLots(PlistDictionary& item) {
  PlistArray* inStock = item.editArray(keys::Batches);
  if (!inStock) return;
  std::erase_if(inStock->editAll(), [](const PlistValue& value) {
    const PlistDictionary* lot = value.dictionary();
    return lot && lot->doubleValue(keys::AmountInStock) < hardlyAny;
  });
}

// An item of which nothing is left, and of which nothing will come, keeps its empty lots.
void store(PlistDictionary item, const std::string& uuid) {
  if (item.doubleValue(keys::AmountInStock) < 0.0) item.set(keys::AmountInStock, "0.0");
  const double onOrder =
      doubleValue(ZYMOrders::sharedInstance().amountOnOrderForIngredientWithUUID(uuid));
  if (!(item.doubleValue(keys::AmountInStock) < hardlyAny && onOrder < hardlyAny)) {
    removeEmptyLots(item);
  }
  ZYMInventory::sharedInstance().updateItem(item);
}

}  // namespace

void ZYMAvailabilitiesEngine::setAvailabilitiesAndWriteInventory(bool write) {
  PlistDictionary inventory;
  availabilities_.clear();
  for (const KeyName key : keys::additions) {
    setAvailabilitiesForRecipeIngredientKey_inventory(key, inventory);
  }
  if (!write) return;
  for (const PlistEntry& entry : inventory) {
    if (const PlistDictionary* item = entry.value.dictionary()) {
      store(*item, std::string(entry.key.text()));
    }
  }
}

void ZYMAvailabilitiesEngine::markAllIngredientsAsDeducted() {
  PlistDictionary* brewed = recipe();
  if (!brewed) return;
  for (const KeyName key : keys::additions) {
    for (PlistDictionary& ingredient : brewed->editRows(key)) {
      ingredient.set(keys::IngredientDeducted, "1");
    }
  }
}

void ZYMAvailabilitiesEngine::adjustInventoryForBatchAndSave() {
  if (!batch_) return;
  ZYMOneChange change;
  // Many small reads, so of one moment.
  mainContext().performBlockAndWait([this] {
    setAvailabilitiesAndWriteInventory(true);
    markAllIngredientsAsDeducted();
    batch_->set(keys::AdjustedInventory, "1");
    ZYMRecipes::sharedInstance().updateBatch(*batch_);
  });
  change.save();
}

}  // namespace zym
