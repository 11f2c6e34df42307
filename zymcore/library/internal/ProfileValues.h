#pragma once

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// A value that a recipe takes from its profile, under the key of each.
struct ProfileValue {
  KeyName inProfile;
  KeyName inRecipe;
};

inline constexpr ProfileValue profileValues[] = {
    {keys::PreBoilVolume, keys::PreBoilWortVolume},
    {keys::PostBoilVolume, keys::FinalWortVolume},
    {keys::VolumeToFermenter, keys::VolumeToFermenter},
    {keys::VolumeWaterAdded, keys::VolumeWaterAdded},
    {keys::VolumeAtPitching, keys::VolumeAtPitching},
    {keys::FinishedBatchVolume, keys::FinalBatchVolume},
    {keys::PreferredRecipeType, keys::MashType},
    {keys::ExtractEfficiency, keys::MashEfficiency},
    {keys::BoilDuration, keys::BoilDuration},
};

/// What isn't there is not copied, so nothing is lost by a profile or recipe that lacks it.
inline void copyValue(const PlistDictionary& from, KeyName fromKey, PlistDictionary& to,
                      KeyName toKey) {
  if (const PlistValue* value = from.find(fromKey)) to.set(toKey, *value);
}

}  // namespace zym
