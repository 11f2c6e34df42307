#include <algorithm>

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/calculations/internal/RecalculationSteps.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

using namespace recalculation;

struct Grist {
  double extract = 0;           // grams
  double grainExtract = 0;      // of it, from grain
  double boilStartExtract = 0;  // of it, in the kettle from the start
  double grainWeight = 0;       // grams
  Colour colour;
};

void correctGravities(PlistDictionary& actuals) {
  struct Reading {
    KeyName corrected, reading, temperature;
  };
  static constexpr Reading readings[] = {
      {keys::PreBoilGrav, keys::PreBoilHydroReading, keys::PreBoilTemp},
      {keys::OG, keys::OGHydroReading, keys::OGTemp},
      {keys::FG, keys::FGHydroReading, keys::FGTemp}};
  const auto correction = [&actuals](KeyName temperature) {
    return ZYMBeerCalculations::SGCorrectionValueForTemp(actuals.doubleValue(temperature));
  };
  for (const Reading& r : readings) {
    actuals.setNumber(r.corrected, actuals.doubleValue(r.reading) + correction(r.temperature) -
                                       correction(keys::HydrometerCalibratedAt));
  }
}

// No more can be transferred, pitched and packaged than there was before.
void makeVolumesConsistent(PlistDictionary& actuals) {
  const auto exceeds = [&actuals](KeyName key, KeyName other) {
    return actuals.doubleValue(key) > actuals.doubleValue(other);
  };
  const auto take = [&actuals](KeyName key, KeyName other) {
    actuals.setNumber(key, actuals.doubleValue(other));
  };
  if (exceeds(keys::VolumeToFermenter, keys::FinalWortVolume)) {
    take(keys::VolumeToFermenter, keys::FinalWortVolume);
  }
  if (exceeds(keys::VolumeToFermenter, keys::VolumeAtPitching)) {
    take(keys::VolumeAtPitching, keys::VolumeToFermenter);
  }
  if (exceeds(keys::FinalBatchVolume, keys::VolumeAtPitching)) {
    take(keys::FinalBatchVolume, keys::VolumeAtPitching);
  }
  actuals.setNumber(keys::VolumeWaterAdded,
                    std::max(0.0, actuals.doubleValue(keys::VolumeAtPitching) -
                                      actuals.doubleValue(keys::VolumeToFermenter)));
}

// The recipe's volume and not the measured one: the colour is that of its grist.
Grist sumFermentables(const PlistDictionary& recipe, double dilution) {
  const double finalWortVolume = recipe.doubleValue(keys::FinalWortVolume);
  const double efficiency = recipe.doubleValue(keys::MashEfficiency);
  Grist grist;
  for (const PlistDictionary& addition : recipe.rows(keys::FermentableIngredients)) {
    const Fermentable fermentable(addition);
    const double extract = fermentable.extract(efficiency);
    if (fermentable.isGrain) {
      grist.grainWeight += fermentable.amount;
      grist.grainExtract += extract;
    }
    if (fermentable.isBoiledFromTheStart) grist.boilStartExtract += extract;
    // As it is rounded here, a last digit can differ from the prediction's.
    const double mcu = fermentable.maltColourUnits(finalWortVolume, dilution);
    grist.colour.add(fermentable, finalWortVolume, mcu,
                     fermentable.yield / 100 * (efficiency / 100 * mcu));
    grist.extract += extract;
  }
  return grist;
}

// Without a sparge all the water is in the mash. The thickness is solved backwards from the volume
// wanted before the boil, taking out what each infusion of boiling water will bring.
double waterGrainRatioWithoutSparge(const PlistDictionary& batch, const PlistDictionary& recipe,
                                    double grainWeight) {
  if (grainWeight < 0.1) return 2.0;
  // Grain keeps one millilitre of water a gram, and has 0.32 of its weight in water's heat.
  double water = recipe.floatValue(keys::PreBoilWortVolume) + grainWeight;
  const double tun = batch.floatValue(keys::MTThermalMass);
  const double boil = NSUserDefaults::standardUserDefaults().floatForKey(keys::BoilingPoint);

  static const PlistDictionary noStep;
  const PlistDictionary* schedule = recipe.dictionary(keys::MashSchedule);
  const PlistArray* steps = schedule ? schedule->array(keys::Steps) : nullptr;
  const auto stepAt = [&](std::size_t i) -> const PlistDictionary& {
    const PlistDictionary* step = steps->find(i)->dictionary();
    return step ? *step : noStep;
  };
  for (std::size_t i = steps ? steps->size() : 0; i-- > 1;) {
    const PlistDictionary& step = stepAt(i);
    if (step.stringValue(keys::StepType) != words::RaiseByInfusion) continue;
    const double from = stepAt(i - 1).doubleValue(keys::Temperature);
    const double to = step.doubleValue(keys::Temperature);
    const double r = (to - from) / (boil - to);
    water = (water / 1000 - 0.32 * grainWeight * r / 1000 - tun * r / 1000) / (r + 1) * 1000;
  }
  return water / grainWeight;
}

// Writes the efficiency of the mash that was measured, where it was, and takes the colour of the
// grist along. Answers the gravity for bitterness as it is stored, as text.
std::string measureMash(PlistDictionary& actuals, const PlistDictionary& recipe, Grist& grist,
                        double dilution) {
  const double preBoilVolume = actuals.doubleValue(keys::PreBoilWortVolume);
  actuals.set(keys::ActualMashEfficiency, "0.0");

  if (actuals.doubleValue(keys::PreBoilHydroReading) > 1.0) {
    const double measured = (actuals.doubleValue(keys::PreBoilGrav) - 1) * 1000 * preBoilVolume /
                            gravityPointsPerExtract;
    if (grist.grainExtract > 0 && measured > 0) {
      actuals.setNumber(keys::ActualMashEfficiency,
                        recipe.doubleValue(keys::MashEfficiency) * measured / grist.grainExtract);
      grist.colour.viggiano *= measured / grist.grainExtract;
    }
    return stringWithFormatF(gravityOf(grist.boilStartExtract + measured, preBoilVolume));
  }
  if (actuals.doubleValue(keys::OGHydroReading) > 1.0) {
    const double undiluted = (actuals.doubleValue(keys::OG) - 1) / dilution + 1;
    const double measured = actuals.doubleValue(keys::FinalWortVolume) * (undiluted - 1) * 1000 /
                            gravityPointsPerExtract;
    return stringWithFormatF(gravityOf(
        measured - (grist.extract - grist.grainExtract) + grist.boilStartExtract, preBoilVolume));
  }
  return "1.000";
}

double bitternessOf(const PlistDictionary& recipe, const Bittering& bittering) {
  double total = 0;
  for (const PlistDictionary& hop : recipe.rows(keys::HopIngredients)) total += bittering.of(hop);
  return total;
}

// No limit at 0: an FG above the OG must show.
void measureAlcohol(PlistDictionary& actuals) {
  using Calculations = ZYMBeerCalculations;
  const double og = actuals.doubleValue(keys::OG);
  const double fg = actuals.doubleValue(keys::FG);
  actuals.setNumber(keys::ABV,
                    Calculations::percentageAlcoholByVolumeWithStartingSG_FinishedSG(og, fg));
  actuals.setNumber(keys::ABW,
                    Calculations::percentageAlcoholByWeightWithStartingSG_FinishedSG(og, fg));
  actuals.setNumber(keys::ApparentAttenuation,
                    Calculations::apparentAttenuationWithStartingSG_FinishedSG(og, fg));
  actuals.setNumber(keys::RealAttenuation,
                    Calculations::realAttenuationWithStartingSG_FinishedSG(og, fg));
}

void measure(PlistDictionary& batch, PlistDictionary& actuals, const PlistDictionary& recipe) {
  correctGravities(actuals);
  makeVolumesConsistent(actuals);
  const double dilution = dilutionOf(actuals.doubleValue(keys::VolumeWaterAdded),
                                     actuals.doubleValue(keys::VolumeToFermenter),
                                     actuals.doubleValue(keys::VolumeAtPitching));

  Grist grist = sumFermentables(recipe, dilution);
  if (batch.stringValue(keys::SpargeMethod) == words::NoSparge) {
    batch.setNumber(keys::WaterGrainRatio,
                    waterGrainRatioWithoutSparge(batch, recipe, grist.grainWeight));
  }
  const std::string boilGravity = measureMash(actuals, recipe, grist, dilution);
  actuals.setNumber(keys::Color, grist.colour.inSRM());
  actuals.setNumber(keys::IBU, bitternessOf(recipe, {doubleValue(boilGravity),
                                                     actuals.doubleValue(keys::FinalWortVolume),
                                                     Bittering::steepMinutesOf(recipe), dilution}));
  measureAlcohol(actuals);
}

}  // namespace

void ZYMBeerCalculations::recalculateBatch(PlistDictionary& batch) {
  // A batch without recipe or measurements is worked out from nothing, and nothing is added to it.
  const PlistDictionary* modified = batch.dictionary(keys::ModifiedRecipe);
  const PlistDictionary recipe = modified ? *modified : PlistDictionary();
  PlistDictionary actuals;
  if (PlistDictionary* held = batch.editDictionary(keys::Actuals)) actuals = std::move(*held);

  measure(batch, actuals, recipe);

  if (PlistDictionary* held = batch.editDictionary(keys::Actuals)) *held = std::move(actuals);
  // Called with the recipe, which has no recipe of its own: it gets a cost of 0, and the cost of
  // the batch stays until its stock is counted.
  if (PlistDictionary* held = batch.editDictionary(keys::ModifiedRecipe)) {
    recalculateBatchCost(*held);
  }
}

void ZYMBeerCalculations::recalculateBatchCost(PlistDictionary& batch) {
  double total = 0;
  if (const PlistDictionary* recipe = batch.dictionary(keys::ModifiedRecipe)) {
    for (const KeyName additions : keys::additions) {
      for (const PlistDictionary& addition : recipe->rows(additions)) {
        for (const PlistDictionary& allocation : addition.rows(keys::Batches)) {
          const float cost =
              allocation.floatValue(keys::Amount) * allocation.floatValue(keys::Cost);
          total += cost;
        }
      }
    }
  }
  batch.setNumber(keys::Cost, total);
}

}  // namespace zym
