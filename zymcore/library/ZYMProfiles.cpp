#include "zymcore/library/ZYMProfiles.h"

#include <algorithm>

#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/internal/ProfileValues.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NSNotFound.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/store/FirstOf.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMProfileEntity.h"

namespace zym {
namespace {

constexpr ZYMFlatLibrary::Default defaults[] = {
    {keys::Version, "2"},
    {keys::ProfileName, "New Profile", true},
    {keys::PreBoilVolume, "24000"},
    {keys::PostBoilVolume, "22000"},
    {keys::VolumeToFermenter, "20000"},
    {keys::VolumeWaterAdded, "0"},
    {keys::VolumeAtPitching, "20000"},
    {keys::FinishedBatchVolume, "19000"},
    {keys::PreferredRecipeType, words::FullMash},
    {keys::PreferredSpargeMethod, words::FlySparge},
    {keys::MTThermalMass, "1000"},
    {keys::WaterGrainRatio, "2"},
    {keys::ExtractEfficiency, "75"},
    {keys::BoilDuration, "90"},
};

constexpr KeyName comparedVolumes[] = {keys::PreBoilVolume,     keys::PostBoilVolume,
                                       keys::VolumeToFermenter, keys::VolumeWaterAdded,
                                       keys::VolumeAtPitching,  keys::FinishedBatchVolume};

std::string firstSchedule() {
  const std::vector<ZYMSummary> rows = ZYMMashSchedules::sharedInstance().rowsOfAllItems();
  return rows.empty() ? "" : rows.front().uuid.value_or("");
}

void setDefaults(PlistDictionary& profile, const std::string& water) {
  profile.set(keys::PreferredMashSchedule, firstSchedule());
  profile.set(keys::PreferredBaseWaterUUID, water);
  profile.set(keys::PreferredTargetWaterUUID, water);
}

void makeDefault(std::string_view uuid) {
  NSUserDefaults::standardUserDefaults().setObject_forKey(uuid, keys::UUIDForDefaultProfile);
}

}  // namespace

ZYMProfiles& ZYMProfiles::sharedInstance() {
  static auto* instance = new ZYMProfiles();
  return *instance;
}

ZYMProfiles::ZYMProfiles()
    : ZYMFlatLibrary(ZYMProfileEntity::entityName, keys::ProfileName, defaults) {}

void ZYMProfiles::prepareNewItem(PlistDictionary& item) {
  ZYMFlatLibrary::prepareNewItem(item);
  const std::vector<ZYMSummary> waters = ZYMWaters::sharedInstance().summariesforAllItems();
  setDefaults(item, waters.empty() ? "" : waters.front().uuid.value_or(""));
}

PlistDictionary ZYMProfiles::tempProfile() {
  PlistDictionary profile{{keys::UUID, uuid()}, {keys::DateLastModified, NSDate::date()}};
  sharedInstance().ZYMFlatLibrary::prepareNewItem(profile);
  const PlistArray waters = ZYMWaters::sharedInstance().allItems();
  setDefaults(profile, std::string(firstOf(waters).dictionary()->stringValue(keys::UUID)));
  return profile;
}

std::optional<PlistDictionary> ZYMProfiles::itemWithUUID(std::string_view uuid) {
  std::optional<PlistDictionary> profile = ZYMFlatLibrary::itemWithUUID(uuid);
  if (!profile) return std::nullopt;
  bool repaired = false;
  if (!profile->string(keys::BoilDuration)) {
    profile->set(keys::BoilDuration, std::to_string(profile->integerValue(keys::BoilDuration)));
    repaired = true;
  }
  if (!profile->string(keys::ExtractEfficiency)) {
    profile->setNumber(keys::ExtractEfficiency, profile->floatValue(keys::ExtractEfficiency));
    repaired = true;
  }
  if (repaired) updateItem(*profile);
  return profile;
}

PlistDictionary ZYMProfiles::defaultProfile() {
  const std::optional<std::string> uuid =
      NSUserDefaults::standardUserDefaults().stringForKey(keys::UUIDForDefaultProfile);
  if (uuid) {
    const auto found = ZYMProfileEntity::objectsMatchingKey_andValue_sortedOnKey(
        attributes::uuid, *uuid, std::nullopt);
    if (found && !found->empty()) return *found->front()->dictionaryRepresentation();
  }
  if (const Objects profiles = objectsSortedOnName(); !profiles.empty()) {
    auto& first = static_cast<ZYMProfileEntity&>(*profiles.front());
    makeDefault(first.uuid().value_or(""));
    return *first.dictionaryRepresentation();
  }
  PlistDictionary profile = createItem();
  makeDefault(profile.stringValue(keys::UUID));
  return profile;
}

void ZYMProfiles::updateRecipe_withProfile(PlistDictionary& recipe, const PlistDictionary& given) {
  // The profile given may be the very one that the recipe holds, and is about to lose.
  const PlistDictionary profile = duplicate(given);
  recipe.set(keys::Profile, profile);
  for (const ProfileValue& value : profileValues) {
    copyValue(profile, value.inProfile, recipe, value.inRecipe);
  }
  ZYMMashSchedules& schedules = ZYMMashSchedules::sharedInstance();
  std::optional<PlistDictionary> schedule =
      schedules.itemWithUUID(profile.stringValue(keys::PreferredMashSchedule));
  if (!schedule) schedule = schedules.noChosenSchedule();
  if (schedule) recipe.set(keys::MashSchedule, *schedule);

  const PlistArray waters = ZYMWaters::sharedInstance().allItems();
  const auto knownWater = [&](KeyName key) {
    const std::string_view uuid = profile.stringValue(key);
    const bool isKnown = indexOfObjectWithUUID(waters, uuid) != NSNotFound;
    return isKnown ? uuid : firstOf(waters).dictionary()->stringValue(keys::UUID);
  };
  recipe.set(keys::TargetWaterProfileUsedUUID, knownWater(keys::PreferredTargetWaterUUID));
  recipe.set(keys::BaseWaterProfileUsedUUID, knownWater(keys::PreferredBaseWaterUUID));
}

void ZYMProfiles::updateProfile_withRecipe(PlistDictionary& profile,
                                           const PlistDictionary& recipe) {
  for (const ProfileValue& value : profileValues) {
    copyValue(recipe, value.inRecipe, profile, value.inProfile);
  }
  copyValue(recipe, keys::BaseWaterProfileUsedUUID, profile, keys::PreferredBaseWaterUUID);
  // Asked for under the profile's key, which a recipe seldom has: the target water stays.
  if (recipe.contains(keys::PreferredTargetWaterUUID)) {
    copyValue(recipe, keys::TargetWaterProfileUsedUUID, profile, keys::PreferredTargetWaterUUID);
  }
  if (const PlistDictionary* schedule = recipe.dictionary(keys::MashSchedule)) {
    copyValue(*schedule, keys::UUID, profile, keys::PreferredMashSchedule);
  }
}

bool ZYMProfiles::isProfile_similarToProfile(const PlistDictionary& profile,
                                             const PlistDictionary& other) {
  const std::string* uuid = profile.string(keys::UUID);
  const std::string* otherUUID = other.string(keys::UUID);
  return uuid && otherUUID && *uuid == *otherUUID &&
         std::all_of(std::begin(comparedVolumes), std::end(comparedVolumes), [&](KeyName key) {
           return volumeSimilarForKey_inProfile_toProfile(key, profile, other);
         });
}

bool ZYMProfiles::volumeSimilarForKey_inProfile_toProfile(KeyName key,
                                                          const PlistDictionary& profile,
                                                          const PlistDictionary& other) {
  const double a = profile.floatValue(key);
  const double b = other.floatValue(key);
  return a + 49.0 > b && b > a - 49.0;
}

}  // namespace zym
