#include "zymcore/calculations/internal/RecalculationSteps.h"

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/host/NSUserDefaults.h"

namespace zym::recalculation {
namespace {

constexpr std::int64_t viggianoFormula = 3;

}  // namespace

Fermentable::Fermentable(const PlistDictionary& addition) noexcept
    : amount(addition.doubleValue(keys::Amount)),
      yield(addition.doubleValue(keys::Extract)),
      colour(addition.doubleValue(keys::Color)),
      isGrain(addition.boolValue(keys::IsGrain)) {
  const std::string_view when = addition.stringValue(keys::When);
  isMashed = when == words::InMashSteeped;
  isBoiledFromTheStart = when == words::StartOfBoil;
}

double Fermentable::extract(double mashEfficiency) const noexcept {
  return amount * yield * (isGrain ? mashEfficiency : 100) / 10000;
}

double Fermentable::maltColourUnits(double wortVolume, double dilution) const noexcept {
  return colour * ZYMUnitConverter::convertGrammesToPounds(amount) /
         ZYMUnitConverter::convertMillilitresToUSGallons(wortVolume) * dilution;
}

double gravityPoints(double extract, double volume) noexcept {
  return extract * gravityPointsPerExtract / volume;
}

double gravityOf(double extract, double volume, double dilution) noexcept {
  return gravityPoints(extract, volume) / 1000 * dilution + 1;
}

double dilutionOf(double waterAdded, double transferred, double pitched) noexcept {
  return waterAdded > 0.001 ? transferred / pitched : 1.0;
}

void Colour::add(const Fermentable& fermentable, double wortVolume, double units,
                 double mashed) noexcept {
  if (fermentable.isColouring()) {
    direct += fermentable.amount / wortVolume * fermentable.colour;
    return;
  }
  maltColourUnits += units;
  viggiano += fermentable.isMashed ? mashed : units;
}

float Colour::inSRM() const {
  const std::int64_t formula =
      NSUserDefaults::standardUserDefaults().integerForKey(keys::BeerColorFormula);
  const double base = formula == viggianoFormula
                          ? (viggiano > 0.1 ? viggiano + 1 : viggiano)
                          : static_cast<float>(ZYMBeerCalculations::beerColorForMCU_withFormula(
                                maltColourUnits, formula));
  return static_cast<float>(direct + base);
}

double Bittering::steepMinutesOf(const PlistDictionary& recipe) {
  return ZYMBeerCalculations::effectiveTimeForAdditionTime_atTemperature(
      recipe.floatValue(keys::SteepDuration), recipe.floatValue(keys::SteepTemperature));
}

double Bittering::of(const PlistDictionary& hop) const {
  const NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
  const std::string_view when = hop.stringValue(keys::When);
  const bool isAddedCold = when == words::InFermenter || when == words::DryHopped;
  const double minutes = hop.doubleValue(keys::Minutes) + (isAddedCold ? 0 : steepMinutes);

  double ibu = ZYMBeerCalculations::
      calculateIBUForGrammesOfHops_addedUsing_withAlphaInPercent_forTimeInMinutes_forGravity_finalVolume_usingFormula(
          hop.doubleValue(keys::Amount),
          words::positionOf(hop.stringValue(keys::Form), words::hopForms),
          hop.doubleValue(keys::Alpha), minutes, gravity, wortVolume,
          defaults.integerForKey(keys::HopFormula));
  if (when == words::FirstWortHopped) ibu *= defaults.doubleForKey(keys::FirstWortHopAdjustment);
  if (when == words::InMash) ibu *= defaults.doubleForKey(keys::MashHopAdjustment);
  return ibu * dilution;
}

}  // namespace zym::recalculation
