#pragma once

#include "zymcore/documents/RecipeKeys.h"

namespace zym::host {

struct VolumeRow {
  const char* name;
  KeyName key;
};

/// The volumes of a recipe, and of the measurements of a batch, in the order of brewing.
inline constexpr VolumeRow volumeRows[] = {
    {"Before the boil", keys::PreBoilWortVolume},  {"After the boil", keys::FinalWortVolume},
    {"To the fermenter", keys::VolumeToFermenter}, {"Water added", keys::VolumeWaterAdded},
    {"At pitching", keys::VolumeAtPitching},       {"Finished beer", keys::FinalBatchVolume}};

}  // namespace zym::host
