#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/internal/StoredRecipeRepair.h"
#include "zymcore/library/recipes/StoredDocuments.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

constexpr KeyName planned[] = {keys::PreBoilWortVolume,      keys::FinalWortVolume,
                               keys::VolumeToFermenter,      keys::VolumeWaterAdded,
                               keys::VolumeAtPitching,       keys::FinalBatchVolume,
                               keys::FermentationTemperature};
constexpr KeyName gravities[] = {keys::PreBoilHydroReading,
                                 keys::OGHydroReading,
                                 keys::FGHydroReading,
                                 keys::PreBoilGrav,
                                 keys::OG,
                                 keys::FG};
constexpr KeyName sampleTemperatures[] = {keys::PreBoilTemp, keys::OGTemp, keys::FGTemp,
                                          keys::HydrometerCalibratedAt};
constexpr KeyName dates[] = {keys::DateLastModified, keys::DateBrewed, keys::DateRacked,
                             keys::DatePackaged, keys::DateReady};
constexpr KeyName notes[] = {keys::BatchNotes, keys::BoilNotes, keys::FermentationNotes,
                             keys::PackagingNotes, keys::TastingNotes};
constexpr KeyName recipes[] = {keys::OriginalRecipe, keys::ModifiedRecipe, keys::RecipeAtCreation};

PlistDictionary actualsOf(const PlistDictionary& recipe) {
  PlistDictionary actuals;
  for (const KeyName key : planned) actuals.setOrRemove(key, recipe.find(key));
  for (const KeyName key : gravities) actuals.set(key, "1.000");
  const float calibration =
      NSUserDefaults::standardUserDefaults().floatForKey(keys::HydrometerCalibrationTemp);
  for (const KeyName key : sampleTemperatures) actuals.setNumber(key, calibration);
  return actuals;
}

std::string titleOfNextBatch(const ZYMRecipeEntity& recipe) {
  const std::size_t number = recipe.objectsForKey(relationships::batches).size() + 1;
  return stringWithFormat(Localized_String("Batch %ld of %@"),
                          {std::to_string(number), recipe.name().value_or("")});
}

}  // namespace

std::optional<PlistDictionary> ZYMRecipes::emptyBatchForRecipeWithUUID(UUID recipeUUID) const {
  ZYMRecipeEntity* object = ZYMRecipeEntity::onlyObjectWithUUID(nullptr, recipeUUID);
  const std::optional<PlistDictionary> recipe =
      object ? object->dictionaryRepresentation() : std::nullopt;
  if (!recipe) return std::nullopt;

  PlistDictionary batch{{keys::UUID, uuid()},
                        {keys::BatchTitle, titleOfNextBatch(*object)},
                        {keys::ModifiedRecipe, duplicate(*recipe)},
                        {keys::OriginalRecipe, duplicate(*recipe)},
                        {keys::Actuals, actualsOf(*recipe)},
                        {keys::RoomTemperature, "15.0"},
                        {keys::AdjustedInventory, "0"}};
  for (const KeyName key : dates) batch.set(key, NSDate::date());
  for (const KeyName key : notes) batch.set(key, "");
  const PlistDictionary profile = ZYMProfiles::sharedInstance().defaultProfile();
  batch.setOrRemove(keys::WaterGrainRatio, profile.find(keys::WaterGrainRatio));
  batch.setOrRemove(keys::MTThermalMass, profile.find(keys::MTThermalMass));
  batch.setOrRemove(keys::SpargeMethod, profile.find(keys::PreferredSpargeMethod));
  correctForSerialization(batch);
  ZYMBeerCalculations::recalculateBatch(batch);
  return batch;
}

std::optional<PlistDictionary> ZYMRecipes::addBatchToRecipeWithUUID(UUID recipeUUID) {
  std::optional<PlistDictionary> batch = emptyBatchForRecipeWithUUID(recipeUUID);
  if (batch) restoreBatch_toRecipeWithUUID(*batch, recipeUUID);
  return batch;
}

void ZYMRecipes::restoreBatch_toRecipeWithUUID(PlistDictionary& batch, UUID recipeUUID) {
  if (!recipeUUID) return;
  ZYMRecipeEntity* recipe = ZYMRecipeEntity::onlyObjectWithUUID(nullptr, recipeUUID);
  if (!recipe) {
    // The change begins before the recipe is looked for, and without one never ends.
    mainContext().undoManager()->beginUndoGrouping();
    return;
  }
  ZYMUndoGroup group;
  const std::string* uuid = batch.string(keys::UUID);
  ZYMDocumentEntity* object = uuid ? storedBatches.objectWithUUID(*uuid) : nullptr;
  if (object) {
    object->updateWithDictionaryRepresentation(batch);
  } else {
    object = &storedBatches.insert(batch);
  }
  object->setObject_forKey(recipe, relationships::recipe);
  group.closeAndSave("Add Batch");
}

std::optional<PlistDictionary> ZYMRecipes::batchWithUUID(UUID uuid) const {
  ZYMRecipeBatchEntity* object = ZYMRecipeBatchEntity::onlyObjectWithUUID(nullptr, uuid);
  std::optional<PlistDictionary> batch = object ? object->dictionaryRepresentation() : std::nullopt;
  if (!batch || !batch->contains(keys::Actuals)) return std::nullopt;
  for (const KeyName key : recipes) {
    if (PlistDictionary* recipe = batch->editDictionary(key)) repairStoredRecipe(*recipe);
  }
  correctForSerialization(*batch);
  ensureBatchLatestVersion(*batch);
  return batch;
}

void ZYMRecipes::updateBatch(PlistDictionary& batch) {
  updateBatch_preservingDLM(batch, false);
}

void ZYMRecipes::updateBatch_preservingDLM(PlistDictionary& batch, bool preservingDLM) {
  storedBatches.update(batch, preservingDLM);
}

void ZYMRecipes::removeBatchWithUUID(UUID uuid) {
  ZYMRecipeBatchEntity* batch = ZYMRecipeBatchEntity::onlyObjectWithUUID(nullptr, uuid);
  if (!batch) return;
  ZYMUndoGroup group;
  // Its recipe loses it by that.
  batch->managedObjectContext().deleteObject(*batch);
  group.closeAndSave("Delete Batch");
}

std::optional<std::string> ZYMRecipes::parentRecipeUUIDForBatchWithUUID(UUID uuid) const {
  const ZYMRecipeBatchEntity* batch = ZYMRecipeBatchEntity::onlyObjectWithUUID(nullptr, uuid);
  const NSManagedObject* recipe = batch ? batch->objectForKey(relationships::recipe) : nullptr;
  return recipe ? static_cast<const ZYMRecipeEntity*>(recipe)->uuid() : std::nullopt;
}

PlistDictionary ZYMRecipes::promoteBatchWithUUID_addToGroupWithUUID(UUID uuid, UUID groupUUID) {
  ZYMRecipeBatchEntity* object = ZYMRecipeBatchEntity::onlyObjectWithUUID(nullptr, uuid);
  if (!object) {
    throw NSException(NSInvalidArgumentException,
                      "there is no batch " + std::string(uuid.value_or("(null)")));
  }
  PlistDictionary batch = object->dictionaryRepresentation().value_or(PlistDictionary());
  ZYMUndoGroup group;
  const PlistDictionary* brewed = batch.dictionary(keys::ModifiedRecipe);
  PlistDictionary recipe = brewed ? duplicate(*brewed) : PlistDictionary();

  batch.set(keys::UUID, zym::uuid());
  batch.set(keys::DateLastModified, NSDate::date());
  object->updateWithDictionaryRepresentation(batch);

  removeInventoryInfoInRecipe(recipe);
  recipe.set(keys::UUID, zym::uuid());
  recipe.set(keys::DateLastModified, NSDate::date());
  recipe.set(keys::RecipeTitle, stringWithFormat(Localized_String("Promoted from %@"),
                                                 {batch.stringValue(keys::BatchTitle)}));
  ZYMDocumentEntity& promoted = storedRecipes.insert(recipe);
  object->setObject_forKey(&promoted, relationships::recipe);
  StoredDocuments::joinGroup(promoted, groupUUID);
  group.closeAndSave("Promote Batch");
  return recipe;
}

}  // namespace zym
