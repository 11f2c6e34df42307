#include <algorithm>

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/calculations/internal/RecalculationSteps.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {
namespace {

using namespace recalculation;

// The weight share of extract by which a fully fermentable sugar, or lactose, moves the final
// gravity.
constexpr double fermentabilityShift = 0.225;

struct Grist {
  double extract = 0;           // grams
  double nonMashExtract = 0;    // of it, not from the mash
  double boilStartExtract = 0;  // of it, in the kettle from the start
  double finalGravityShift = 0;
  double amount = 0;  // grams of fermentables
  Colour colour;
};

// A wort without any yeast does not ferment, whatever its fermentability.
double attenuationOf(const PlistDictionary& recipe) {
  float highest = 0;
  bool hasYeast = false;
  for (const PlistDictionary& yeast : recipe.rows(keys::YeastIngredients)) {
    highest = std::max(highest, yeast.floatValue(keys::Attenuation));
    hasYeast = true;
  }
  if (!hasYeast) return 0;
  // Where the document names no fermentability the position is huge and the limit holds.
  const auto position = static_cast<double>(
      words::positionOf(recipe.stringValue(keys::WortFermentability), words::wortFermentabilities));
  return std::clamp(highest + (position - 1) * 2.5, 0.0, 100.0);
}

double finalGravityShiftOf(std::string_view name, double extract, double attenuation) {
  const auto isNamed = [name](std::string_view word) {
    return containsSubstring(name, word) || containsSubstring(name, Localized_String(word));
  };
  double shift = 0;
  if (isNamed("Sugar")) {
    shift -= (100 - attenuation) / 100 * extract;
    shift -= extract * fermentabilityShift;
  }
  if (isNamed("Lactose")) shift += extract * fermentabilityShift + extract;
  return shift;
}

// First pass: what the fermentables give to the wort, and what each gives by itself.
Grist addFermentables(PlistDictionary& recipe, double efficiency, double dilution) {
  const double finalWortVolume = recipe.doubleValue(keys::FinalWortVolume);
  const double attenuation = recipe.doubleValue(keys::Attenuation);
  Grist grist;
  for (PlistDictionary& addition : recipe.editRows(keys::FermentableIngredients)) {
    const Fermentable fermentable(addition);
    const double extract = fermentable.extract(efficiency);
    if (!fermentable.isMashed) grist.nonMashExtract += extract;
    if (fermentable.isBoiledFromTheStart) grist.boilStartExtract += extract;
    if (!fermentable.isGrain) {
      grist.finalGravityShift +=
          finalGravityShiftOf(addition.stringValue(keys::Ingredient), extract, attenuation);
    }

    const double mcu = fermentable.maltColourUnits(finalWortVolume, dilution);
    grist.colour.add(fermentable, finalWortVolume, mcu,
                     efficiency / 100 * mcu * fermentable.yield / 100);
    grist.amount += fermentable.amount;
    grist.extract += extract;

    addition.setNumber(keys::MCUForAddition, mcu);
    addition.setNumber(keys::GravityPointsForAddition,
                       gravityPoints(extract, finalWortVolume) * dilution);
  }
  return grist;
}

// Second pass: the shares of each, which need the sums of the first.
void shareOutFermentables(PlistDictionary& recipe, const Grist& grist, float srm) {
  const double ebc = ZYMBeerCalculations::convertSRMtoEBC(srm);
  const double totalMCU = grist.colour.maltColourUnits;
  for (PlistDictionary& fermentable : recipe.editRows(keys::FermentableIngredients)) {
    const double share =
        totalMCU < 0.001 ? 0 : fermentable.doubleValue(keys::MCUForAddition) / totalMCU;
    fermentable.setNumber(keys::MCUPercentage, share * 100);
    fermentable.setNumber(keys::ColorForAdditionInSRM, srm * share);
    fermentable.setNumber(keys::ColorForAdditionInEBC, ebc * share);
    fermentable.setNumber(keys::Percentage,
                          fermentable.doubleValue(keys::Amount) / grist.amount * 100);
  }
}

double notNegative(double value) {
  return value < 0 ? 0 : value;
}

void predictGravities(PlistDictionary& recipe, const Grist& grist, double dilution) {
  const double preBoilVolume = recipe.doubleValue(keys::PreBoilWortVolume);
  const double finalWortVolume = recipe.doubleValue(keys::FinalWortVolume);
  const double mashExtract = grist.extract - grist.nonMashExtract;
  recipe.setNumber(keys::ExpectedPreBoilGravity, gravityOf(mashExtract, preBoilVolume));
  recipe.setNumber(keys::GravityForIBUCalcs,
                   gravityOf(grist.boilStartExtract + mashExtract, preBoilVolume));

  const double og = gravityOf(grist.extract, finalWortVolume, dilution);
  recipe.setNumber(keys::ExpectedOriginalGravity, og);

  double fg = og;
  const double attenuation = recipe.doubleValue(keys::Attenuation);
  if (attenuation >= 1) {
    const double plato = ZYMUnitConverter::convertSGToPlato(og) * (100 - attenuation) / 100;
    fg = ZYMUnitConverter::convertPlatoToSG(plato) +
         gravityPoints(grist.finalGravityShift, finalWortVolume) / 1000 * dilution;
  }
  recipe.setNumber(keys::ExpectedFinalGravity, fg);

  using Calculations = ZYMBeerCalculations;
  recipe.setNumber(
      keys::ExpectedABV,
      notNegative(Calculations::percentageAlcoholByVolumeWithStartingSG_FinishedSG(og, fg)));
  recipe.setNumber(
      keys::ExpectedABW,
      notNegative(Calculations::percentageAlcoholByWeightWithStartingSG_FinishedSG(og, fg)));
  recipe.setNumber(keys::ApparentAttenuation,
                   notNegative(Calculations::apparentAttenuationWithStartingSG_FinishedSG(og, fg)));
}

void predictBitterness(PlistDictionary& recipe, double dilution) {
  const Bittering bittering{recipe.doubleValue(keys::GravityForIBUCalcs),
                            recipe.doubleValue(keys::FinalWortVolume),
                            Bittering::steepMinutesOf(recipe), dilution};
  double total = 0;
  for (PlistDictionary& hop : recipe.editRows(keys::HopIngredients)) {
    if (hop.stringValue(keys::Form) == words::PelletizedHops) {
      hop.set(keys::Form, words::LoosePelletHops);
    }
    const double ibu = bittering.of(hop);
    hop.setNumber(keys::IBUForAddition, ibu);
    total += ibu;
  }
  recipe.setNumber(keys::ExpectedIBU, total);
}

}  // namespace

void ZYMBeerCalculations::recalculateBeerRecipe(PlistDictionary& recipe) {
  const double pitched = recipe.doubleValue(keys::VolumeAtPitching);
  const double transferred = recipe.doubleValue(keys::VolumeToFermenter);
  const double water = std::max(0.0, pitched - transferred);
  recipe.setNumber(keys::VolumeWaterAdded, water);

  for (const KeyName volume : {keys::PreBoilWortVolume, keys::FinalWortVolume,
                               keys::VolumeAtPitching, keys::FinalBatchVolume}) {
    if (recipe.doubleValue(volume) < 0.01) return;
  }
  const double dilution = dilutionOf(water, transferred, pitched);
  recipe.setNumber(keys::Attenuation, attenuationOf(recipe));

  const Grist grist = addFermentables(recipe, recipe.doubleValue(keys::MashEfficiency), dilution);
  const float srm = grist.colour.inSRM();
  recipe.setNumber(keys::ExpectedColor, srm);
  shareOutFermentables(recipe, grist, srm);
  predictGravities(recipe, grist, dilution);
  predictBitterness(recipe, dilution);
}

}  // namespace zym
