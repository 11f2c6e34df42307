#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/internal/ProfileValues.h"
#include "zymcore/library/internal/StoredRecipeRepair.h"
#include "zymcore/library/recipes/StoredDocuments.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSOperation.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMGroupEntity.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

struct Initial {
  KeyName key;
  std::string_view value;
};
constexpr Initial initialTexts[] = {
    {keys::ExpectedPreBoilGravity, "1.000"},
    {keys::ExpectedOriginalGravity, "1.000"},
    {keys::ExpectedFinalGravity, "1.000"},
    {keys::ExpectedABV, "0.0"},
    {keys::ExpectedABW, "0.0"},
    {keys::ExpectedColor, "0.0"},
    {keys::ExpectedIBU, "0.0"},
    {keys::Attenuation, "0.0"},
    {keys::ApparentAttenuation, "0.0"},
    {keys::MgSO4, "0.0"},
    {keys::CaCO3, "0.0"},
    {keys::CaSO4, "0.0"},
    {keys::NaCl, "0.0"},
    {keys::CaCl2, "0.0"},
    {keys::NaHCO3, "0.0"},
    {keys::MgSO4InGrammes, "0.0"},
    {keys::CaCO3InGrammes, "0.0"},
    {keys::CaSO4InGrammes, "0.0"},
    {keys::NaClInGrammes, "0.0"},
    {keys::CaCl2InGrammes, "0.0"},
    {keys::NaHCO3InGrammes, "0.0"},
    {keys::MashpH, "5.2"},
    {keys::Acid, words::Unadjusted},
    {keys::FermentationTemperature, "18.0"},
    {keys::Carbonation, words::Nothing},
    {keys::CarbonationVolumes, "0.0"},
    {keys::Conditioning, words::LageredFor4Weeks},
    {keys::Notes, ""},
    {keys::SteepTemperature, "80"},
    {keys::SteepDuration, "0"},
};

PlistDictionary scheduleOf(const PlistDictionary& profile) {
  const std::optional<PlistDictionary> preferred = ZYMMashSchedules::sharedInstance().itemWithUUID(
      profile.stringValue(keys::PreferredMashSchedule));
  return preferred.value_or(
      PlistDictionary{{keys::ScheduleName, ""}, {keys::UUID, ""}, {keys::Steps, PlistArray()}});
}

// Read without `summariesforAllItems`, which gives nameless waters a name.
void setFirstWater(PlistDictionary& recipe) {
  const std::vector<ZYMSummary> waters = ZYMWaters::sharedInstance().rowsOfAllItems();
  if (waters.empty()) {
    recipe.set(keys::WaterProfileUsed, words::NoWaterProfileChosen);
    return;
  }
  if (waters.front().uuid) {
    recipe.set(keys::TargetWaterProfileUsedUUID, *waters.front().uuid);
    recipe.set(keys::BaseWaterProfileUsedUUID, *waters.front().uuid);
  }
  recipe.set(keys::WaterProfileUsed, waters.front().name);
}

/// The document of an object as that of another one, with "-copy" after its title.
PlistDictionary copyOf(ZYMDocumentEntity& object, KeyName titleKey) {
  PlistDictionary copy = object.dictionaryRepresentation().value_or(PlistDictionary());
  copy.set(keys::UUID, uuid());
  copy.set(titleKey, stringWithFormat(Localized_String("%@-copy"), {copy.stringValue(titleKey)}));
  copy.set(keys::DateLastModified, NSDate::date());
  return copy;
}

}  // namespace

ZYMRecipes& ZYMRecipes::sharedInstance() {
  static ZYMRecipes instance;
  return instance;
}

ZYMRecipes::~ZYMRecipes() {
  if (importOp_) importOp_->cancel();
}

PlistDictionary ZYMRecipes::emptyRecipe() const {
  const PlistDictionary profile = ZYMProfiles::sharedInstance().defaultProfile();
  PlistDictionary recipe{{keys::UUID, uuid()},
                         {keys::RecipeTitle, Localized_String("New Recipe")},
                         {keys::DateLastModified, NSDate::date()},
                         {keys::StyleUUID, ZYMStyles::noChosenStyle().stringValue(keys::UUID)},
                         {keys::StyleGuidelinesSource, ZYMStyles::userPreferredStyleGuidelines()},
                         {keys::Profile, duplicate(profile)},
                         {keys::MashSchedule, scheduleOf(profile)}};
  for (const ProfileValue& value : profileValues) {
    copyValue(profile, value.inProfile, recipe, value.inRecipe);
  }
  for (const Initial& initial : initialTexts) recipe.set(initial.key, initial.value);
  for (const KeyName key : keys::additions) recipe.set(key, PlistArray());
  setFirstWater(recipe);
  return recipe;
}

PlistDictionary ZYMRecipes::createRecipe() {
  PlistDictionary recipe = emptyRecipe();
  checkSaltWeightsExistInRecipe(recipe);
  ensureRecipeLatestVersion(recipe);
  correctForSerialization(recipe);
  ZYMUndoGroup group;
  storedRecipes.insert(recipe);
  group.closeAndSave("Create Recipe");
  return recipe;
}

PlistDictionary ZYMRecipes::createRecipeAndAddToGroupWithUUID(UUID groupUUID) {
  ZYMUndoGroup group;
  PlistDictionary recipe = emptyRecipe();
  StoredDocuments::joinGroup(storedRecipes.insert(recipe), groupUUID);
  group.closeAndSave("Create Recipe");
  return recipe;
}

std::optional<PlistDictionary> ZYMRecipes::duplicateItemWithUUID_addToGroupWithUUID(
    UUID uuid, UUID groupUUID) {
  ZYMDocumentEntity* recipe = storedRecipes.objectWithUUID(uuid);
  ZYMDocumentEntity* batch = recipe ? nullptr : storedBatches.objectWithUUID(uuid);
  if (!recipe && !batch) return std::nullopt;

  // A document that can't be read throws here, before there is an undo step.
  PlistDictionary copy =
      recipe ? copyOf(*recipe, storedRecipes.titleKey) : copyOf(*batch, storedBatches.titleKey);
  ZYMUndoGroup group;
  if (recipe) {
    StoredDocuments::joinGroup(storedRecipes.insert(copy), groupUUID);
  } else {
    copy.remove(keys::AdjustedInventory);
    if (PlistDictionary* brewed = copy.editDictionary(keys::ModifiedRecipe)) {
      removeInventoryInfoInRecipe(*brewed);
    }
    storedBatches.insert(copy).setObject_forKey(batch->objectForKey(relationships::recipe),
                                                relationships::recipe);
  }
  group.closeAndSave("Duplicate Item");
  return copy;
}

void ZYMRecipes::updateRecipe(PlistDictionary& recipe) {
  updateRecipe_preservingDLM(recipe, false);
}

void ZYMRecipes::updateRecipe_preservingDLM(PlistDictionary& recipe, bool preservingDLM) {
  storedRecipes.update(recipe, preservingDLM);
}

void ZYMRecipes::removeRecipeWithUUID(UUID uuid) {
  ZYMRecipeEntity* recipe = ZYMRecipeEntity::onlyObjectWithUUID(nullptr, uuid);
  if (!recipe) return;
  ZYMUndoGroup undo;
  for (NSManagedObject* object : recipe->objectsForKey(relationships::groups)) {
    auto& group = static_cast<ZYMGroupEntity&>(*object);
    group.removeRecipesObject(*recipe);
    group.setDateLastModified(NSDate::date());
  }
  mainContext().deleteObject(*recipe);
  undo.closeAndSave("Remove Recipe");
}

std::optional<PlistDictionary> ZYMRecipes::recipeForUUID(UUID uuid) const {
  ZYMRecipeEntity* object = ZYMRecipeEntity::onlyObjectWithUUID(nullptr, uuid);
  std::optional<PlistDictionary> recipe =
      object ? object->dictionaryRepresentation() : std::nullopt;
  if (!recipe) return std::nullopt;
  repairStoredRecipe(*recipe);
  correctForSerialization(*recipe);
  ensureRecipeLatestVersion(*recipe);
  return recipe;
}

void ZYMRecipes::removeInventoryInfoInRecipe(PlistDictionary& recipe) {
  for (const KeyName key : keys::additions) {
    if (PlistArray* ingredients = recipe.editArray(key)) {
      removeAdjustedFlagFromIngredients(*ingredients);
    }
  }
}

void ZYMRecipes::removeAdjustedFlagFromIngredients(PlistArray& ingredients) {
  for (PlistDictionary& ingredient : PlistEditableRows(&ingredients)) {
    ingredient.remove(keys::IngredientDeducted);
    ingredient.remove(keys::Batches);
  }
}

}  // namespace zym
