#include "zymcore/interchange/operations/ItemForExport.h"

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/interchange/internal/SetIfAbsent.h"
#include "zymcore/library/recipes/StoredDocuments.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/values/PlistValue.h"
#include "zymcore/store/entities/ZYMDocumentEntity.h"

namespace zym {
namespace {

// Schedules of the library don't say that they are of the present shape, and a file that doesn't is
// taken for an old one.
void stampSchedule(PlistDictionary* recipe) {
  PlistDictionary* schedule = recipe ? recipe->editDictionary(keys::MashSchedule) : nullptr;
  if (schedule) setIfAbsent(*schedule, keys::Version, "3");
}

PlistDictionary withImages(PlistDictionary document, std::string_view uuid) {
  PlistArray images = ZYMRecipes::sharedInstance().orderedImageDataForItemWithUUID(uuid);
  if (!images.empty()) document.set(keys::Images, std::move(images));
  return document;
}

// One that no longer counts as a batch goes along as it is.
std::optional<PlistDictionary> batchToExport(std::string_view uuid) {
  std::optional<PlistDictionary> batch = ZYMRecipes::sharedInstance().batchWithUUID(uuid);
  ZYMDocumentEntity* stored = batch ? nullptr : storedBatches.objectWithUUID(uuid);
  if (stored) batch = stored->dictionaryRepresentation();
  if (!batch) return std::nullopt;
  stampSchedule(batch->editDictionary(keys::ModifiedRecipe));
  stampSchedule(batch->editDictionary(keys::OriginalRecipe));
  return withImages(std::move(*batch), uuid);
}

}  // namespace

std::optional<PlistDictionary> itemForExportWithUUID(std::string_view uuid) {
  const ZYMRecipes& recipes = ZYMRecipes::sharedInstance();
  std::optional<PlistDictionary> recipe = recipes.recipeForUUID(uuid);
  if (!recipe) return batchToExport(uuid);
  stampSchedule(&*recipe);
  const auto rows = recipes.batchSummariesForRecipeWithUUID(uuid);
  PlistArray batches;
  for (const ZYMSummary& row : rows.value_or(std::vector<ZYMSummary>())) {
    std::optional<PlistDictionary> batch = batchToExport(row.uuid.value_or(""));
    if (batch) batches.append(std::move(*batch));
  }
  if (!batches.empty()) recipe->set(keys::Batches, std::move(batches));
  return withImages(std::move(*recipe), uuid);
}

}  // namespace zym
