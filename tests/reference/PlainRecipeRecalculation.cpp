#include <algorithm>
#include <cctype>
#include <string>

#include "tests/reference/PlainFormulas.h"
#include "tests/reference/PlainNumbers.h"
#include "tests/reference/PlainRecalculation.h"

namespace zym::reference {
namespace {

struct Grist {
  double extract = 0;
  double notMashed = 0;
  double startOfBoil = 0;
  double finalGravityShift = 0;
  double amount = 0;
  double mcu = 0;
  double viggiano = 0;
  double directSRM = 0;
};

// `word` in capitals.
bool contains(const std::string& name, std::string_view word) {
  const auto same = [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; };
  return std::search(name.begin(), name.end(), word.begin(), word.end(), same) != name.end();
}

double predictedAttenuation(const PlainRecipe& recipe) {
  if (recipe.yeasts.empty()) return 0;
  float best = 0;
  for (const PlainYeast& yeast : recipe.yeasts) best = std::max(best, single(yeast.attenuation));
  const std::string& word = recipe.wortFermentability;
  double shift = 1e18;
  if (word == "Low") shift = -2.5;
  if (word == "Medium") shift = 0;
  if (word == "High") shift = 2.5;
  return std::clamp(best + shift, 0.0, 100.0);
}

double finalGravityShift(const PlainFermentable& row, double extract, double attenuation) {
  double shift = 0;
  if (contains(row.name, "SUGAR")) {
    shift -= (100 - attenuation) / 100 * extract;
    shift -= extract * 0.225;
  }
  if (contains(row.name, "LACTOSE")) shift += extract * 0.225 + extract;
  return shift;
}

Grist firstPass(PlainRecipe& recipe, double wort, double dilution) {
  Grist grist;
  const double efficiency = number(recipe.mashEfficiency);
  const double attenuation = number(recipe.attenuation);
  for (PlainFermentable& row : recipe.fermentables) {
    const double amount = number(row.amount);
    const double yield = number(row.extract);
    const double color = number(row.color);
    const bool isGrain = truth(row.isGrain);
    const bool isMashed = row.when == "In Mash/Steeped";
    const double extract = amount * yield * (isGrain ? efficiency : 100) / 10000;

    if (!isMashed) grist.notMashed += extract;
    if (row.when == "Start Of Boil") grist.startOfBoil += extract;
    if (!isGrain) grist.finalGravityShift += finalGravityShift(row, extract, attenuation);

    const double mcu = color * poundsOf(amount) / gallonsOf(wort) * dilution;
    if (color > 1000) {
      grist.directSRM += amount / wort * color;
    } else {
      grist.mcu += mcu;
      grist.viggiano += isMashed ? efficiency / 100 * mcu * yield / 100 : mcu;
    }
    grist.amount += amount;
    grist.extract += extract;
    row.mcu = text(mcu);
    row.gravityPoints = text(extract * 386.5 / wort * dilution);
  }
  return grist;
}

void secondPass(PlainRecipe& recipe, const Grist& grist, double srm) {
  for (PlainFermentable& row : recipe.fermentables) {
    const double share = grist.mcu < 0.001 ? 0 : number(row.mcu) / grist.mcu;
    row.mcuPercentage = text(share * 100);
    row.srm = text(srm * share);
    row.ebc = text(ebcOf(srm) * share);
    row.percentage = text(number(row.amount) / grist.amount * 100);
  }
}

void predictGravities(PlainRecipe& recipe, const Grist& grist, double wort, double dilution) {
  const double preBoil = number(recipe.preBoilWortVolume);
  const double mashed = grist.extract - grist.notMashed;
  const double og = grist.extract * 386.5 / wort / 1000 * dilution + 1;
  const double attenuation = number(recipe.attenuation);
  double fg = og;
  if (!(attenuation < 1)) {
    fg = gravityOf(platoOf(og) * (100 - attenuation) / 100) +
         grist.finalGravityShift * 386.5 / wort / 1000 * dilution;
  }
  recipe.preBoilGravity = text(mashed * 386.5 / preBoil / 1000 + 1);
  recipe.gravityForIBU = text((grist.startOfBoil + mashed) * 386.5 / preBoil / 1000 + 1);
  recipe.og = text(og);
  recipe.fg = text(fg);
  const auto notNegative = [](double figure) { return text(figure < 0 ? 0 : figure); };
  recipe.abv = notNegative(alcoholByVolume(og, fg));
  recipe.abw = notNegative(alcoholByWeight(og, fg));
  recipe.apparentAttenuation = notNegative(apparentAttenuation(og, fg));
}

}  // namespace

void recalculateRecipe(PlainRecipe& recipe, const PlainDefaults& user) {
  const double atPitching = number(recipe.volumeAtPitching);
  const double toFermenter = number(recipe.volumeToFermenter);
  const double water = std::max(0.0, atPitching - toFermenter);
  recipe.volumeWaterAdded = text(water);

  const double wort = number(recipe.finalWortVolume);
  if (number(recipe.preBoilWortVolume) < 0.01 || wort < 0.01 || atPitching < 0.01 ||
      number(recipe.finalBatchVolume) < 0.01) {
    return;
  }
  const double dilution = water > 0.001 ? toFermenter / atPitching : 1.0;

  recipe.attenuation = text(predictedAttenuation(recipe));
  const Grist grist = firstPass(recipe, wort, dilution);
  const double srm = beerColor(grist.mcu, grist.viggiano, grist.directSRM, user.colorFormula);
  recipe.color = text(srm);
  secondPass(recipe, grist, srm);
  predictGravities(recipe, grist, wort, dilution);

  double total = 0;
  const double gravity = number(recipe.gravityForIBU);
  for (PlainHop& hop : recipe.hops) {
    if (hop.form == "Pelletized Hops") hop.form = "Loose Pellet Hops";
    const double ibu = bitterness(hop, recipe, gravity, wort, user) * dilution;
    hop.ibu = text(ibu);
    total += ibu;
  }
  recipe.ibu = text(total);
}

}  // namespace zym::reference
