#include "zymcore/interchange/native/ZYMWortmeisterWMRFile.h"

#include <algorithm>

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/interchange/internal/SetIfAbsent.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

constexpr std::string_view version = "3";
constexpr std::int64_t versionWithoutBlanks = 3;
constexpr std::int64_t versionWithoutFirstStep = 2;

constexpr KeyName marks[] = {keys::Attenuation, keys::Notes, keys::CaCl2};

void updateScheduleOf(PlistDictionary& recipe) {
  PlistDictionary* schedule = recipe.editDictionary(keys::MashSchedule);
  if (schedule) ZYMWortmeisterWMRFile::updateSchedule(*schedule);
}

// The volumes of gas came with the uuid of the style; before that there was its name.
void findStyle(PlistDictionary& recipe) {
  if (recipe.contains(keys::CarbonationVolumes)) return;
  const std::int64_t guidelines =
      recipe.contains(keys::StyleGuidelinesSource)
          ? std::clamp<std::int64_t>(recipe.integerValue(keys::StyleGuidelinesSource), 0, 1)
          : ZYMStyles::userPreferredStyleGuidelines();
  const std::optional<PlistDictionary> style =
      ZYMStyles::sharedInstance().styleWithNameMostSimilarToString_inGuidelines(
          recipe.stringValue(keys::Style), guidelines);
  if (!style) return;
  recipe.setOrRemove(keys::StyleUUID, style->find(keys::UUID));
  recipe.set(keys::StyleGuidelinesSource, guidelines);
  recipe.setOrRemove(keys::CarbonationVolumes, style->find(keys::CarbonationVolumes));
}

// What the batch was brewed from had a name of its own once.
void divideRecipes(PlistDictionary& batch, const PlistDictionary& parent) {
  if (PlistDictionary* brewed = batch.editDictionary(keys::RecipeAtCreation)) {
    updateScheduleOf(*brewed);
  } else {
    batch.set(keys::RecipeAtCreation, parent);
  }
  PlistDictionary brewed = *batch.dictionary(keys::RecipeAtCreation);
  setIfAbsent(brewed, keys::YeastAmount, "1");
  if (const PlistValue* volumes = parent.find(keys::CarbonationVolumes)) {
    setIfAbsent(brewed, keys::CarbonationVolumes, *volumes);
  }
  batch.remove(keys::RecipeAtCreation);
  setIfAbsent(batch, keys::ModifiedRecipe, brewed);
}

void upgradeBatch(PlistDictionary& batch, std::size_t number, const PlistDictionary& parent) {
  if (!batch.contains(keys::BatchTitle)) {
    batch.set(keys::BatchTitle,
              stringWithFormat("Batch %ld of %@",
                               {std::to_string(number), parent.stringValue(keys::RecipeTitle)}));
  }
  divideRecipes(batch, parent);
  for (const KeyName key : {keys::ModifiedRecipe, keys::OriginalRecipe}) {
    PlistDictionary* recipe = batch.editDictionary(key);
    if (recipe) ZYMWortmeisterWMRFile::checkVolumesForRecipe(*recipe);
  }
  ZYMWortmeisterWMRFile::createActualsBlockForExistingBatch(batch);
  ZYMWortmeisterWMRFile::checkAllKeysExistInBatch_ofParentRecipe(batch, parent);
  if (PlistDictionary* original = batch.editDictionary(keys::OriginalRecipe)) {
    ZYMBeerCalculations::recalculateBeerRecipe(*original);
  }
  ZYMBeerCalculations::recalculateBatch(batch);
  batch.set(keys::DateLastModified, NSDate::date());
}

void upgradeBatches(PlistDictionary& recipe) {
  PlistDictionary parent = duplicate(recipe);
  parent.remove(keys::Batches);
  std::size_t number = 0;
  for (PlistDictionary& batch : recipe.editRows(keys::Batches)) {
    upgradeBatch(batch, ++number, parent);
  }
}

}  // namespace

std::optional<PlistDictionary> ZYMWortmeisterWMRFile::parseFileData(const NSData& data,
                                                                    NSError* error) {
  std::optional<PlistValue> list =
      NSPropertyListSerialization::propertyListWithData(data.view(), error);
  if (!list) return std::nullopt;
  PlistDictionary* recipe = list->editDictionary();
  if (recipe) correctForSerialization(*recipe);
  if (!recipe || !std::ranges::all_of(marks, [&](KeyName key) { return recipe->contains(key); })) {
    fail(error, NSCocoaErrorDomain, NSFileReadCorruptFileError, "a property list, but no recipe");
    return std::nullopt;
  }
  removeAllSpacesInKeysInRecipe(*recipe);
  updateScheduleOf(*recipe);
  findStyle(*recipe);
  recipe->set(keys::DateLastModified, NSDate::date());
  checkVolumesForRecipe(*recipe);
  ZYMRecipes::ensureRecipeLatestVersion(*recipe);
  ZYMBeerCalculations::recalculateBeerRecipe(*recipe);
  upgradeBatches(*recipe);
  setIfAbsent(*recipe, keys::YeastAmount, "1");
  return std::move(*recipe);
}

std::optional<NSData> ZYMWortmeisterWMRFile::dataForItem(const PlistDictionary& /*item*/) {
  return std::nullopt;
}

std::optional<NSData> ZYMWortmeisterWMRFile::dataForRecipe(const PlistDictionary& /*recipe*/) {
  return std::nullopt;
}

void ZYMWortmeisterWMRFile::checkVolumesForRecipe(PlistDictionary& recipe) {
  const auto copyIfAbsent = [&](KeyName key, KeyName from) {
    if (!recipe.contains(key)) recipe.setOrRemove(key, recipe.find(from));
  };
  const bool isWortLarger =
      recipe.doubleValue(keys::FinalWortVolume) > recipe.doubleValue(keys::FinalBatchVolume);
  copyIfAbsent(keys::VolumeAtPitching, keys::FinalBatchVolume);
  copyIfAbsent(keys::VolumeToFermenter,
               isWortLarger ? keys::FinalBatchVolume : keys::FinalWortVolume);
  if (recipe.contains(keys::VolumeWaterAdded)) return;
  recipe.setNumber(keys::VolumeWaterAdded,
                   std::max(0.0, recipe.doubleValue(keys::VolumeAtPitching) -
                                     recipe.doubleValue(keys::VolumeToFermenter)));
}

void ZYMWortmeisterWMRFile::removeAllSpacesInKeysInRecipe(PlistDictionary& recipe) {
  removeSpacesInKeys(recipe);
  updateScheduleOf(recipe);
}

void ZYMWortmeisterWMRFile::updateSchedule(PlistDictionary& schedule) {
  const std::int64_t given =
      schedule.contains(keys::Version) ? schedule.integerValue(keys::Version) : 1;
  if (given < versionWithoutBlanks) {
    removeSpacesInKeys(schedule);
    setIfAbsent(schedule, keys::DateLastModified, NSDate::date());
    PlistArray* steps = schedule.editArray(keys::Steps);
    if (given < versionWithoutFirstStep && steps && !steps->empty()) steps->remove(0);
  }
  schedule.set(keys::Version, version);
}

}  // namespace zym
