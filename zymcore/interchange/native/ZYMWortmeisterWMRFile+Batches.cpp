#include <algorithm>

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/interchange/internal/SetIfAbsent.h"
#include "zymcore/interchange/native/ZYMWortmeisterWMRFile.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/text/NSString.h"

namespace zym {
namespace {

/// A measurement that stood in the batch itself, with the value of one that was never made.
struct Measurement {
  KeyName key;
  KeyName before;
  const char* otherwise;
};
constexpr const char* noGravity = "1.000";
constexpr const char* noTemperature = "15.0";
constexpr Measurement measurements[] = {
    {keys::PreBoilHydroReading, keys::PreBoilHydroReading, noGravity},
    {keys::OGHydroReading, keys::OGHydroReading, noGravity},
    {keys::FGHydroReading, keys::FGHydroReading, noGravity},
    {keys::PreBoilGrav, KeyName("MeasuredPreBoil Grav"), noGravity},
    {keys::OG, KeyName("MeasuredOG"), noGravity},
    {keys::FG, KeyName("MeasuredFG"), noGravity},
    {keys::PreBoilTemp, keys::PreBoilTemp, noTemperature},
    {keys::OGTemp, keys::OGTemp, noTemperature},
    {keys::FGTemp, keys::FGTemp, noTemperature},
    {keys::HydrometerCalibratedAt, keys::HydrometerCalibratedAt, noTemperature},
};
// What was worked out of them.
constexpr Measurement results[] = {
    {keys::ApparentAttenuation, keys::ApparentAttenuation, "0.0"},
    {keys::RealAttenuation, keys::RealAttenuation, "0.0"},
    {keys::ActualMashEfficiency, KeyName("Actual Mash Efficiency"), "0.0"},
};
constexpr Measurement strengths[] = {{keys::ABV, keys::ABV, "0.0"}, {keys::ABW, keys::ABW, "0.0"}};
constexpr KeyName otherResults[] = {keys::Color, keys::IBU};

constexpr KeyName plannedVolumes[] = {keys::FermentationTemperature, keys::PreBoilWortVolume,
                                      keys::FinalWortVolume,         keys::VolumeToFermenter,
                                      keys::VolumeWaterAdded,        keys::VolumeAtPitching,
                                      keys::FinalBatchVolume};
constexpr KeyName datesInOrder[] = {keys::DateBrewed, keys::DateRacked, keys::DatePackaged,
                                    keys::DateReady};
constexpr KeyName notes[] = {keys::BatchNotes, keys::BoilNotes, keys::FermentationNotes,
                             keys::PackagingNotes};

// The blanks in a key may have been taken out before.
std::string withoutBlanks(KeyName key) {
  std::string text(key.text());
  std::erase(text, ' ');
  return text;
}

const PlistValue* findBefore(const PlistDictionary& batch, KeyName before) {
  const PlistValue* value = batch.find(before);
  return value ? value : batch.find(KeyName(withoutBlanks(before)));
}

void orderDates(PlistDictionary& batch) {
  std::optional<NSDate> before;
  for (const KeyName key : datesInOrder) {
    const NSDate* own = batch.date(key);
    NSDate date = own ? *own : NSDate::date();
    if (before) date = std::max(date, *before);
    if (!own || *own != date) batch.set(key, date);
    before = date;
  }
}

void completeActuals(PlistDictionary& batch, const PlistDictionary& recipe) {
  PlistDictionary actuals;
  if (const PlistDictionary* own = batch.dictionary(keys::Actuals)) actuals = *own;
  for (const KeyName key : plannedVolumes) {
    if (const PlistValue* value = recipe.find(key)) setIfAbsent(actuals, key, *value);
  }
  for (const Measurement& each : measurements) setIfAbsent(actuals, each.key, each.otherwise);
  for (const Measurement& each : results) setIfAbsent(actuals, each.key, each.otherwise);
  for (const Measurement& each : strengths) setIfAbsent(actuals, each.key, each.otherwise);
  for (const KeyName key : otherResults) setIfAbsent(actuals, key, "0.0");
  batch.set(keys::Actuals, std::move(actuals));
}

std::string titleIn(const PlistDictionary& recipe) {
  const PlistArray* batches = recipe.array(keys::Batches);
  if (!batches) return "";
  return stringWithFormat("Batch %ld of %@",
                          {std::to_string(batches->size()), recipe.stringValue(keys::RecipeTitle)});
}

}  // namespace

void ZYMWortmeisterWMRFile::createActualsBlockForExistingBatch(PlistDictionary& batch) {
  if (batch.contains(keys::Actuals)) return;
  const PlistDictionary* own = batch.dictionary(keys::ModifiedRecipe);
  const PlistDictionary recipe = own ? *own : PlistDictionary();
  PlistDictionary actuals;
  for (const KeyName key : plannedVolumes) actuals.setOrRemove(key, recipe.find(key));

  const bool wasMeasured = batch.contains(keys::PreBoilHydroReading);
  for (const Measurement& each : measurements) {
    if (wasMeasured) {
      actuals.setOrRemove(each.key, findBefore(batch, each.before));
    } else {
      actuals.set(each.key, each.otherwise);
    }
  }
  for (const Measurement& each : results) {
    const PlistValue* before = findBefore(batch, each.before);
    actuals.set(each.key, before ? *before : PlistValue(each.otherwise));
  }
  const bool hasStrength = batch.contains(keys::ABV);
  for (const Measurement& each : strengths) {
    if (hasStrength) {
      actuals.setOrRemove(each.key, batch.find(each.before));
    } else {
      actuals.set(each.key, each.otherwise);
    }
  }
  actuals.setOrRemove(keys::Color, recipe.find(keys::ExpectedColor));
  actuals.setOrRemove(keys::IBU, recipe.find(keys::ExpectedIBU));

  for (const Measurement& each : measurements) {
    batch.remove(each.before);
    batch.remove(KeyName(withoutBlanks(each.before)));
  }
  for (const KeyName key :
       {keys::ApparentAttenuation, keys::RealAttenuation, keys::ExpectedColor, keys::ExpectedIBU}) {
    batch.remove(key);
  }
  batch.set(keys::Actuals, std::move(actuals));
}

PlistDictionary& ZYMWortmeisterWMRFile::checkAllKeysExistInBatch_ofParentRecipe(
    PlistDictionary& batch, const PlistDictionary& recipe) {
  setIfAbsent(batch, keys::DateLastModified, NSDate::date());
  setIfAbsent(batch, keys::BatchTitle, titleIn(recipe));
  setIfAbsent(batch, keys::UUID, uuid());
  const std::optional<std::string> sparge =
      NSUserDefaults::standardUserDefaults().stringForKey(keys::PreferredSpargeMethod);
  if (sparge) setIfAbsent(batch, keys::SpargeMethod, *sparge);

  PlistDictionary alone = duplicate(recipe);
  alone.remove(keys::Batches);
  setIfAbsent(batch, keys::ModifiedRecipe, alone);
  setIfAbsent(batch, keys::OriginalRecipe, alone);
  orderDates(batch);
  completeActuals(batch, recipe);
  for (const KeyName key : notes) setIfAbsent(batch, key, "");

  const PlistDictionary profile = ZYMProfiles::sharedInstance().defaultProfile();
  for (const KeyName key : {keys::WaterGrainRatio, keys::MTThermalMass}) {
    if (const PlistValue* value = profile.find(key)) setIfAbsent(batch, key, *value);
  }
  setIfAbsent(batch, keys::RoomTemperature, "15.0");
  setIfAbsent(batch, keys::AdjustedInventory, "0");
  ZYMBeerCalculations::recalculateBatch(batch);
  return batch;
}

}  // namespace zym
