#include <span>

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/library/internal/StoredRecipeRepair.h"
#include "zymcore/library/recipes/ZYMRecipes.h"

namespace zym {
namespace {

// Each of these answers whether it wrote anything.

bool makeWholeNumberText(PlistDictionary& tree, KeyName key) {
  if (tree.string(key)) return false;
  tree.set(key, std::to_string(tree.integerValue(key)));
  return true;
}

bool makeNumberText(PlistDictionary& tree, KeyName key) {
  if (tree.string(key)) return false;
  tree.setNumber(key, tree.floatValue(key));
  return true;
}

bool setIfAbsent(PlistDictionary& recipe, KeyName key, const PlistValue& value) {
  if (recipe.contains(key)) return false;
  recipe.set(key, value);
  return true;
}

bool setUUIDOf(const PlistDictionary* record, PlistDictionary& recipe, KeyName key) {
  const PlistValue* uuid = record ? record->find(keys::UUID) : nullptr;
  if (!uuid) return false;
  recipe.set(key, *uuid);
  return true;
}

bool setUUIDOfFirstWater(PlistDictionary& recipe, KeyName key) {
  const PlistArray waters = ZYMWaters::sharedInstance().allItems();
  return setUUIDOf(waters.empty() ? nullptr : waters.begin()->dictionary(), recipe, key);
}

bool nameStyleByUUID(PlistDictionary& recipe) {
  if (recipe.contains(keys::StyleUUID)) return false;
  const std::string* name = recipe.string(keys::Style);
  std::optional<PlistDictionary> style;
  if (name) {
    style = ZYMStyles::sharedInstance().styleWithName_inGuidelines(
        *name, recipe.integerValue(keys::StyleGuidelinesSource));
  }
  if (!style) style = ZYMStyles::noChosenStyle();
  return setUUIDOf(&*style, recipe, keys::StyleUUID);
}

bool nameTargetWaterByUUID(PlistDictionary& recipe) {
  if (recipe.contains(keys::TargetWaterProfileUsedUUID)) return false;
  const std::string* name = recipe.string(keys::WaterProfileUsed);
  const std::optional<PlistDictionary> water =
      name ? ZYMWaters::sharedInstance().waterWithName(*name) : std::nullopt;
  return water ? setUUIDOf(&*water, recipe, keys::TargetWaterProfileUsedUUID)
               : setUUIDOfFirstWater(recipe, keys::TargetWaterProfileUsedUUID);
}

bool nameBaseWaterByUUID(PlistDictionary& recipe) {
  return !recipe.contains(keys::BaseWaterProfileUsedUUID) &&
         setUUIDOfFirstWater(recipe, keys::BaseWaterProfileUsedUUID);
}

// Once a recipe had one yeast, by name.
bool makeYeastAddition(PlistDictionary& recipe) {
  if (recipe.contains(keys::YeastIngredients)) return false;
  PlistArray additions;
  const std::string* name = recipe.string(keys::Yeast);
  ZYMYeasts& yeasts = ZYMYeasts::sharedInstance();
  const std::optional<PlistDictionary> yeast = name ? yeasts.yeastForName(*name) : std::nullopt;
  if (yeast && yeast->stringValue(keys::UUID) != yeasts.noChosenYeast().stringValue(keys::UUID)) {
    PlistDictionary addition{{keys::YeastAmountType, words::CommercialPack}, {keys::UsageNote, ""}};
    for (const KeyName key : {keys::Name, keys::Attenuation, keys::UUID}) {
      addition.setOrRemove(key, yeast->find(key));
    }
    addition.setOrRemove(keys::Amount, recipe.find(keys::YeastAmount));
    additions.append(std::move(addition));
  }
  recipe.set(keys::YeastIngredients, std::move(additions));
  return true;
}

bool upgradeProfile(PlistDictionary& recipe) {
  PlistDictionary* profile = recipe.editDictionary(keys::Profile);
  if (!profile) return false;
  const bool durationChanged = makeWholeNumberText(*profile, keys::BoilDuration);
  return makeNumberText(*profile, keys::ExtractEfficiency) || durationChanged;
}

// Additions from before stock was tracked take on the state of their batch.
bool markAdditions(PlistDictionary& recipe, bool inventoryAdjusted) {
  bool changed = false;
  for (const KeyName key : keys::additions) {
    for (PlistDictionary& addition : recipe.editRows(key)) {
      changed |= setIfAbsent(addition, keys::IngredientDeducted, inventoryAdjusted ? "1" : "0");
    }
  }
  return changed;
}

}  // namespace

void repairStoredRecipe(PlistDictionary& recipe) {
  for (const KeyName key : std::span(keys::additions).first<3>()) {  // all but yeasts
    if (PlistArray* additions = recipe.editArray(key)) ZYMRecipes::removeDescriptionsIn(*additions);
  }
  ZYMRecipes::checkSaltWeightsExistInRecipe(recipe);
}

bool ZYMRecipes::ensureRecipeLatestVersion(PlistDictionary& recipe) {
  return ensureRecipeLatestVersion_inventoryAdjusted(recipe, false);
}

bool ZYMRecipes::ensureRecipeLatestVersion_inventoryAdjusted(PlistDictionary& recipe,
                                                             bool inventoryAdjusted) {
  bool changed = makeWholeNumberText(recipe, keys::BoilDuration);
  changed |= makeNumberText(recipe, keys::MashEfficiency);
  changed |= setIfAbsent(recipe, keys::SteepTemperature, "80");
  changed |= setIfAbsent(recipe, keys::SteepDuration, "0");
  changed |= setIfAbsent(recipe, keys::StyleGuidelinesSource, 0);
  changed |= nameStyleByUUID(recipe);
  changed |= setIfAbsent(recipe, keys::WortFermentability, words::Medium);
  changed |= nameTargetWaterByUUID(recipe);
  changed |= nameBaseWaterByUUID(recipe);
  changed |= makeYeastAddition(recipe);
  changed |= upgradeProfile(recipe);
  changed |= markAdditions(recipe, inventoryAdjusted);
  return !changed;
}

bool ZYMRecipes::ensureBatchLatestVersion(PlistDictionary& batch) {
  if (setIfAbsent(batch, keys::TastingNotes, "")) return true;
  const bool inventoryAdjusted = batch.boolValue(keys::AdjustedInventory);
  PlistDictionary* recipe = batch.editDictionary(keys::ModifiedRecipe);
  return !recipe || ensureRecipeLatestVersion_inventoryAdjusted(*recipe, inventoryAdjusted);
}

void ZYMRecipes::checkSaltWeightsExistInRecipe(PlistDictionary& recipe) {
  // One weight stands for all six.
  if (recipe.contains(keys::MgSO4InGrammes)) return;
  const float ratio = recipe.floatValue(keys::VolumeToFermenter) /
                      recipe.floatValue(keys::FinalWortVolume) /
                      recipe.floatValue(keys::VolumeAtPitching);
  for (const keys::SaltKeys& salt : keys::salts) {
    recipe.setNumber(salt.weight, double{recipe.floatValue(salt.concentration)} / double{ratio});
  }
}

void ZYMRecipes::removeDescriptionsIn(PlistArray& ingredients) {
  for (PlistDictionary& ingredient : PlistEditableRows(&ingredients)) {
    ingredient.remove(keys::Description);
  }
}

}  // namespace zym
