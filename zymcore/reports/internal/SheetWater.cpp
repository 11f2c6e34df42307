#include "zymcore/reports/internal/SheetWater.h"

#include <optional>

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/reports/internal/PageFigures.h"

namespace zym::pages {
namespace {

constexpr double partsInAMillion = 1000000;

struct SaltShare {
  KeyName salt;
  double share;  // of its weight that is the ion
};
struct Ion {
  KeyName key;
  SaltShare salts[3];
};
constexpr SaltShare none{keys::NaCl, 0};
constexpr Ion ions[] = {
    {keys::Sulfate, {{keys::CaSO4, 0.5576}, {keys::MgSO4, 0.391}, none}},
    {keys::Calcium, {{keys::CaSO4, 0.2327}, {keys::CaCl2, 0.364}, {keys::CaCO3, 0.4}}},
    {keys::Magnesium, {{keys::MgSO4, 0.097}, none, none}},
    {keys::Chloride, {{keys::CaCl2, 0.636}, {keys::NaCl, 0.603}, none}},
    {keys::Sodium, {{keys::NaHCO3, 0.274}, {keys::NaCl, 0.397}, none}},
    {keys::Carbonate, {{keys::NaHCO3, 0.714}, {keys::CaCO3, 0.6}, none}},
};

float ofTheWater(float inWater, const PlistDictionary& recipe) {
  const float boiled = inWater * recipe.floatValue(keys::PreBoilWortVolume) /
                       recipe.floatValue(keys::FinalWortVolume) *
                       recipe.floatValue(keys::VolumeToFermenter);
  return (boiled + inWater * recipe.floatValue(keys::VolumeWaterAdded)) /
         recipe.floatValue(keys::VolumeAtPitching);
}

double ofTheSalts(const Ion& ion, const PlistDictionary& recipe) {
  double grammesInMillilitre = 0;
  for (const SaltShare& salt : ion.salts) {
    grammesInMillilitre += salt.share * recipe.doubleValue(salt.salt);
  }
  return grammesInMillilitre * partsInAMillion;
}

std::optional<PlistDictionary> waterUnder(KeyName key, const PlistDictionary& recipe) {
  const std::string* uuid = recipe.string(key);
  return uuid ? ZYMWaters::sharedInstance().itemWithUUID(*uuid) : std::nullopt;
}

}  // namespace

void addSheetWater(const PlistDictionary& recipe, Form form, PlistDictionary& values) {
  if (const auto base = waterUnder(keys::BaseWaterProfileUsedUUID, recipe)) {
    for (const Ion& ion : ions) {
      const double total = ofTheWater(base->floatValue(ion.key), recipe) + ofTheSalts(ion, recipe);
      values.set(ion.key, whole(total));
    }
  }
  const auto target = waterUnder(keys::TargetWaterProfileUsedUUID, recipe);
  values.set(keys::WaterProfileUsed, target ? pageTextAt(*target, keys::Name, form)
                                            : Localized_String("Unknown Target Water"));
}

}  // namespace zym::pages
