#include <algorithm>

#include "tests/reference/PlainFormulas.h"
#include "tests/reference/PlainNumbers.h"
#include "tests/reference/PlainRecalculation.h"

namespace zym::reference {
namespace {

struct Grist {
  double extract = 0;
  double grainExtract = 0;
  double startOfBoil = 0;
  double grain = 0;
  double mcu = 0;
  double viggiano = 0;
  double directSRM = 0;
};

std::string corrected(const std::string& reading, const std::string& temperature,
                      const PlainActuals& actuals) {
  return text(number(reading) + hydrometerOffset(number(temperature)) -
              hydrometerOffset(number(actuals.calibratedAt)));
}

void limit(std::string& volume, const std::string& most) {
  if (number(volume) > number(most)) volume = text(number(most));
}

void makeConsistent(PlainActuals& actuals) {
  limit(actuals.volumeToFermenter, actuals.finalWortVolume);
  if (number(actuals.volumeToFermenter) > number(actuals.volumeAtPitching)) {
    actuals.volumeAtPitching = text(number(actuals.volumeToFermenter));
  }
  limit(actuals.finalBatchVolume, actuals.volumeAtPitching);
  actuals.volumeWaterAdded =
      text(std::max(0.0, number(actuals.volumeAtPitching) - number(actuals.volumeToFermenter)));
}

Grist gristOf(const PlainRecipe& recipe, double dilution) {
  Grist grist;
  const double efficiency = number(recipe.mashEfficiency);
  const double wort = number(recipe.finalWortVolume);
  for (const PlainFermentable& row : recipe.fermentables) {
    const double amount = number(row.amount);
    const double yield = number(row.extract);
    const double color = number(row.color);
    const bool isGrain = truth(row.isGrain);
    const double extract = amount * yield * (isGrain ? efficiency : 100) / 10000;
    if (isGrain) {
      grist.grain += amount;
      grist.grainExtract += extract;
    }
    if (row.when == "Start Of Boil") grist.startOfBoil += extract;
    if (color > 1000) {
      grist.directSRM += amount / wort * color;
    } else {
      const double mcu = color * poundsOf(amount) / gallonsOf(wort) * dilution;
      grist.mcu += mcu;
      grist.viggiano +=
          row.when == "In Mash/Steeped" ? yield / 100 * (efficiency / 100 * mcu) : mcu;
    }
    grist.extract += extract;
  }
  return grist;
}

double fullVolumeRatio(const PlainBatch& batch, double grain, const PlainDefaults& user) {
  if (grain < 0.1) return 2.0;
  double water = single(batch.recipe.preBoilWortVolume) + grain;
  const float tun = single(batch.thermalMass);
  const auto& steps = batch.recipe.steps;
  for (std::size_t i = steps.size(); i-- > 1;) {
    if (steps[i].type != "Raise by infusion to") continue;
    const double from = number(steps[i - 1].temperature);
    const double to = number(steps[i].temperature);
    const double r = (to - from) / (user.boilingPoint - to);
    water = (water / 1000 - 0.32 * grain * r / 1000 - tun * r / 1000) / (r + 1) * 1000;
  }
  return water / grain;
}

// Also sets the mash efficiency achieved, and scales the Viggiano sum by it.
std::string gravityForBitterness(PlainBatch& batch, Grist& grist, double dilution) {
  PlainActuals& actuals = batch.actuals;
  const double preBoil = number(actuals.preBoilWortVolume);
  actuals.mashEfficiency = "0.0";
  if (number(actuals.preBoilReading) > 1.0) {
    const double measured = (number(actuals.preBoilGravity) - 1) * 1000 * preBoil / 386.5;
    if (grist.grainExtract > 0 && measured > 0) {
      actuals.mashEfficiency =
          text(number(batch.recipe.mashEfficiency) * measured / grist.grainExtract);
      grist.viggiano *= measured / grist.grainExtract;
    }
    return text((grist.startOfBoil + measured) * 386.5 / preBoil / 1000 + 1);
  }
  if (number(actuals.ogReading) > 1.0) {
    const double undiluted = (number(actuals.og) - 1) / dilution + 1;
    const double measured = number(actuals.finalWortVolume) * (undiluted - 1) * 1000 / 386.5;
    const double notMashed = grist.extract - grist.grainExtract;
    return text((measured - notMashed + grist.startOfBoil) * 386.5 / preBoil / 1000 + 1);
  }
  return "1.000";
}

template <class Addition>
double costOf(const std::vector<Addition>& additions, double total) {
  for (const Addition& addition : additions) {
    for (const PlainAllocation& drawn : addition.stock) {
      total += single(drawn.amount) * single(drawn.cost);
    }
  }
  return total;
}

}  // namespace

void recalculateBatch(PlainBatch& batch, const PlainDefaults& user) {
  PlainActuals& actuals = batch.actuals;
  PlainRecipe& recipe = batch.recipe;
  actuals.preBoilGravity = corrected(actuals.preBoilReading, actuals.preBoilTemp, actuals);
  actuals.og = corrected(actuals.ogReading, actuals.ogTemp, actuals);
  actuals.fg = corrected(actuals.fgReading, actuals.fgTemp, actuals);
  makeConsistent(actuals);

  const double dilution = number(actuals.volumeWaterAdded) > 0.001
                              ? number(actuals.volumeToFermenter) / number(actuals.volumeAtPitching)
                              : 1.0;
  Grist grist = gristOf(recipe, dilution);
  if (batch.spargeMethod == "Brew in a Bag/No Sparge") {
    batch.waterGrainRatio = text(fullVolumeRatio(batch, grist.grain, user));
  }
  const double gravity = number(gravityForBitterness(batch, grist, dilution));
  actuals.color = text(beerColor(grist.mcu, grist.viggiano, grist.directSRM, user.colorFormula));

  double total = 0;
  for (const PlainHop& hop : recipe.hops) {
    total += bitterness(hop, recipe, gravity, number(actuals.finalWortVolume), user) * dilution;
  }
  actuals.ibu = text(total);

  const double og = number(actuals.og);
  const double fg = number(actuals.fg);
  actuals.abv = text(alcoholByVolume(og, fg));
  actuals.abw = text(alcoholByWeight(og, fg));
  actuals.apparentAttenuation = text(apparentAttenuation(og, fg));
  actuals.realAttenuation = text(realAttenuation(og, fg));
  recipe.cost = text(0);
}

void recalculateBatchCost(PlainBatch& batch) {
  double total = costOf(batch.recipe.fermentables, 0);
  total = costOf(batch.recipe.hops, total);
  total = costOf(batch.recipe.others, total);
  total = costOf(batch.recipe.yeasts, total);
  batch.cost = text(total);
}

}  // namespace zym::reference
