#include "tests/reference/Recalculation.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "zymcore/platform/values/PlistValue.h"

namespace zym::reference {
namespace {

using Tree = PlistDictionary;
using Text = std::string_view;

// ---- Numbers as text.

double numberIn(Text text) {
  while (!text.empty() && (text[0] == ' ' || (text[0] >= '\t' && text[0] <= '\r'))) {
    text.remove_prefix(1);
  }
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  // from_chars would read words and a second sign.
  if (text.empty() || !(text[0] == '.' || std::isdigit(static_cast<unsigned char>(text[0])))) {
    return 0;
  }
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return isNegative ? -value : value;
}

std::string textOf(double number) {
  if (std::isnan(number)) return "nan";
  char digits[320];
  return {digits, std::to_chars(digits, std::end(digits), number, std::chars_format::fixed, 6).ptr};
}

double num(const Tree& tree, Text key) {
  const PlistValue* value = tree.find(KeyName(key));
  if (!value) return 0;
  return value->string()     ? numberIn(*value->string())
         : value->isNumber() ? value->doubleValue()
                             : 0;
}
float single(const Tree& tree, Text key) {
  return static_cast<float>(num(tree, key));
}
std::int64_t code(const Tree& user, Text key) {
  return static_cast<std::int64_t>(num(user, key));
}
Text text(const Tree& tree, Text key) {
  const std::string* found = tree.string(KeyName(key));
  return found ? Text(*found) : Text();
}
void put(Tree& tree, Text key, double number) {
  tree.set(KeyName(key), textOf(number));
}
// Calls with each row of a list.
template <class Call>
void each(const Tree& tree, Text key, Call call) {
  const PlistArray* array = tree.array(KeyName(key));
  for (std::size_t i = 0; array && i < array->size(); ++i) {
    if (const Tree* row = array->find(i)->dictionary()) call(*row);
  }
}
template <class Call>
void change(Tree& tree, Text key, Call call) {
  PlistArray* array = tree.editArray(KeyName(key));
  for (std::size_t i = 0; array && i < array->size(); ++i) {
    if (Tree* row = array->edit(i).editDictionary()) call(*row);
  }
}

// ---- Formulas.

double plato(double sg) {
  return 260 - 260 / sg;
}

double boilingPoint(const Tree& user) {
  const float set = single(user, "Boiling Point");
  return set < 20 ? 100.0 : set;
}

double shortened(double minutes, double degreesBelow) {
  return degreesBelow > 0 ? minutes / std::pow(2.0F, static_cast<float>(degreesBelow / 10))
                          : minutes;
}

using Steps = std::span<const std::pair<double, double>>;
constexpr std::pair<double, double> daniels[] = {
    {10, 0.05}, {20, 0.12}, {30, 0.15}, {45, 0.19}, {60, 0.22}, {75, 0.24}, {HUGE_VAL, 0.27}};
constexpr std::pair<double, double> garetz[] = {
    {11, 0},    {16, 0.02}, {21, 0.05}, {26, 0.08}, {31, 0.11}, {36, 0.14},      {41, 0.16},
    {46, 0.18}, {51, 0.19}, {61, 0.20}, {71, 0.21}, {81, 0.22}, {HUGE_VAL, 0.23}};

// The value beside the first limit that is above t, else the last one.
double step(double t, Steps steps) {
  for (const auto& [limit, value] : steps) {
    if (t < limit) return value;
  }
  return steps.back().second;
}

double utilisation(double sg, double t, std::int64_t formula) {
  const double ga = (sg - 1.05) / 0.2 + 1;
  switch (formula) {
    case 0:
      return 1.65 * std::pow(0.000125, sg - 1) * (1 - std::exp(-0.04 * t)) / 4.15;
    case 1:
      return step(t, daniels) / ga;
    case 2:
      return (18.11 + 13.86 * std::tanh((t - 31.32) / 18.27)) / (sg > 1.05 ? ga : 1) / 100;
    default:
      return step(t, garetz) / ga;
  }
}

double bitterness(const Tree& hop, const Tree& recipe, double sg, double volume, const Tree& user) {
  const Text when = text(hop, "When");
  const Text form = text(hop, "Form");
  double t = num(hop, "Minutes");
  if (when != "In Fermenter" && when != "Dry-Hopped") {
    t += shortened(single(recipe, "SteepDuration"),
                   boilingPoint(user) - single(recipe, "SteepTemperature"));
  }
  double ibu = 0;
  if (num(hop, "Amount") != 0 && num(hop, "Alpha") != 0 && t != 0 && sg != 0 && volume != 0) {
    const double m = form == "Bagged Whole Hops"    ? num(user, "BaggedHopAdjustment")
                     : form == "Loose Pellet Hops"  ? num(user, "PelletHopAdjustment")
                     : form == "Bagged Pellet Hops" ? num(user, "BaggedPelletHopAdjustment")
                                                    : 1.0;
    const std::int64_t formula = code(user, "HopFormula");
    const double u = formula < 0 || formula > 3
                         ? 0
                         : m * utilisation(sg, shortened(t, 100 - boilingPoint(user)), formula);
    ibu = num(hop, "Amount") * num(hop, "Alpha") * 10 * u / (volume / 1000);
  }
  if (when == "First Wort Hopped") ibu *= num(user, "FirstWortHopAdjustment");
  if (when == "In Mash") ibu *= num(user, "MashHopAdjustment");
  return ibu;
}

double beerColor(double mcu, double viggiano, double direct, const Tree& user) {
  const std::int64_t formula = code(user, "BeerColorFormula");
  if (formula == 3) return static_cast<float>(direct + (viggiano > 0.1 ? viggiano + 1 : viggiano));
  const double base = formula == 0   ? 1.4922 * std::pow(mcu, 0.6859)
                      : formula == 1 ? 0.2 * mcu + 8.4
                      : formula == 2 ? 0.3 * mcu + 4.7
                                     : 0;
  return static_cast<float>(direct + static_cast<float>(base));
}

double apparent(double og, double fg) {
  return plato(og) < 0.01 ? 0 : (1 - plato(fg) / plato(og)) * 100;
}
double real(double og, double fg) {
  const double po = plato(og);
  return po < 0.01 ? 0 : (1 - (0.8192 * plato(fg) + 0.1808 * po) / po) * 100;
}
double byWeight(double og, double fg) {
  const double po = plato(og);
  return (po - (0.1808 * po + 0.8192 * plato(fg))) / (2.0665 - 0.010665 * po);
}
double byVolume(double og, double fg) {
  return byWeight(og, fg) * fg / 0.794;
}

double offset(double t) {
  if (t > 50) return -0.005431719 + 0.0001963596 * t + 2.661056e-06 * t * t;
  if (t < 4) return -0.000740644 - 3.2692e-05 * t;
  return -0.0008031922 - 4.73773e-05 * t + 7.231263e-06 * t * t - 3.078278e-08 * t * t * t;
}

double extractOf(const Tree& row, double efficiency) {
  const bool isGrain = single(row, "IsGrain") > 0.2F;
  return num(row, "Amount") * num(row, "Extract") * (isGrain ? efficiency : 100) / 10000;
}

double mcuOf(const Tree& row, double wort, double dilution) {
  return num(row, "Color") * (num(row, "Amount") / 453.59) / (wort / 3785.41) * dilution;
}

// `word` in capitals.
bool contains(Text name, Text word) {
  return std::search(name.begin(), name.end(), word.begin(), word.end(), [](char a, char b) {
           return std::toupper(static_cast<unsigned char>(a)) == b;
         }) != name.end();
}

double attenuationOf(const Tree& recipe) {
  float best = 0;
  bool hasYeast = false;
  each(recipe, "YeastIngredients", [&](const Tree& yeast) {
    best = std::max(best, single(yeast, "Attenuation"));
    hasYeast = true;
  });
  const Text word = text(recipe, "WortFermentability");
  const double shift = word == "Low" ? -2.5 : word == "Medium" ? 0 : word == "High" ? 2.5 : 1e18;
  return hasYeast ? std::clamp(best + shift, 0.0, 100.0) : 0;
}

}  // namespace

void recalculateRecipe(Tree& recipe, const Tree& user) {
  const double pitched = num(recipe, "VolumeAtPitching");
  const double transferred = num(recipe, "VolumeToFermenter");
  const double preBoil = num(recipe, "PreBoilWortVolume");
  const double wort = num(recipe, "FinalWortVolume");
  const double water = std::max(0.0, pitched - transferred);
  put(recipe, "VolumeWaterAdded", water);
  if (preBoil < 0.01 || wort < 0.01 || pitched < 0.01 || num(recipe, "FinalBatchVolume") < 0.01) {
    return;
  }
  const double dilution = water > 0.001 ? transferred / pitched : 1.0;
  put(recipe, "Attenuation", attenuationOf(recipe));
  const double attenuation = num(recipe, "Attenuation");
  const double efficiency = num(recipe, "MashEfficiency");

  double total = 0, notMashed = 0, fromStart = 0, shift = 0, weight = 0;
  double mcuSum = 0, viggiano = 0, direct = 0;
  change(recipe, "FermentableIngredients", [&](Tree& row) {
    const double extract = extractOf(row, efficiency);
    const bool isMashed = text(row, "When") == "In Mash/Steeped";
    if (!isMashed) notMashed += extract;
    if (text(row, "When") == "Start Of Boil") fromStart += extract;
    if (!(single(row, "IsGrain") > 0.2F)) {
      double own = 0;
      if (contains(text(row, "Ingredient"), "SUGAR")) {
        own -= (100 - attenuation) / 100 * extract;
        own -= extract * 0.225;
      }
      if (contains(text(row, "Ingredient"), "LACTOSE")) own += extract * 0.225 + extract;
      shift += own;
    }
    const double mcu = mcuOf(row, wort, dilution);
    if (num(row, "Color") > 1000) {
      direct += num(row, "Amount") / wort * num(row, "Color");
    } else {
      mcuSum += mcu;
      viggiano += isMashed ? efficiency / 100 * mcu * num(row, "Extract") / 100 : mcu;
    }
    weight += num(row, "Amount");
    total += extract;
    put(row, "MCUForAddition", mcu);
    put(row, "GravityPointsForAddition", extract * 386.5 / wort * dilution);
  });

  const double srm = beerColor(mcuSum, viggiano, direct, user);
  put(recipe, "ExpectedColor", srm);
  change(recipe, "FermentableIngredients", [&](Tree& row) {
    const double share = mcuSum < 0.001 ? 0 : num(row, "MCUForAddition") / mcuSum;
    put(row, "MCUPercentage", share * 100);
    put(row, "ColorForAdditionInSRM", srm * share);
    put(row, "ColorForAdditionInEBC", (srm < 0 ? 0 : 1.97 * srm) * share);
    put(row, "Percentage", num(row, "Amount") / weight * 100);
  });

  const double mashed = total - notMashed;
  put(recipe, "ExpectedPreBoilGravity", mashed * 386.5 / preBoil / 1000 + 1);
  put(recipe, "GravityForIBUCalcs", (fromStart + mashed) * 386.5 / preBoil / 1000 + 1);
  const double og = total * 386.5 / wort / 1000 * dilution + 1;
  const double fg = attenuation < 1 ? og
                                    : 260 / (260 - plato(og) * (100 - attenuation) / 100) +
                                          shift * 386.5 / wort / 1000 * dilution;
  const auto notNegative = [](double figure) { return figure < 0 ? 0 : figure; };
  put(recipe, "ExpectedOriginalGravity", og);
  put(recipe, "ExpectedFinalGravity", fg);
  put(recipe, "ExpectedABV", notNegative(byVolume(og, fg)));
  put(recipe, "ExpectedABW", notNegative(byWeight(og, fg)));
  put(recipe, "ApparentAttenuation", notNegative(apparent(og, fg)));

  double bitter = 0;
  const Tree given = recipe;
  change(recipe, "HopIngredients", [&](Tree& hop) {
    if (text(hop, "Form") == "Pelletized Hops") hop.set(KeyName("Form"), "Loose Pellet Hops");
    const double ibu =
        bitterness(hop, given, num(given, "GravityForIBUCalcs"), wort, user) * dilution;
    put(hop, "IBUForAddition", ibu);
    bitter += ibu;
  });
  put(recipe, "ExpectedIBU", bitter);
}

void recalculateBatch(Tree& batch, const Tree& user) {
  const Tree recipe = *batch.dictionary(KeyName("ModifiedRecipe"));
  Tree a = *batch.dictionary(KeyName("Actuals"));
  for (const auto& [to, reading, at] :
       {std::tuple("PreBoilGrav", "PreBoilHydroReading", "PreBoilTemp"),
        {"OG", "OGHydroReading", "OGTemp"},
        {"FG", "FGHydroReading", "FGTemp"}}) {
    put(a, to, num(a, reading) + offset(num(a, at)) - offset(num(a, "HydrometerCalibratedAt")));
  }
  for (const auto& [larger, limit, to] :
       {std::tuple("VolumeToFermenter", "FinalWortVolume", "VolumeToFermenter"),
        {"VolumeToFermenter", "VolumeAtPitching", "VolumeAtPitching"},
        {"FinalBatchVolume", "VolumeAtPitching", "FinalBatchVolume"}}) {
    if (num(a, larger) > num(a, limit)) put(a, to, num(a, Text(to) == larger ? limit : larger));
  }
  const double pitched = num(a, "VolumeAtPitching");
  put(a, "VolumeWaterAdded", std::max(0.0, pitched - num(a, "VolumeToFermenter")));
  const double dilution =
      num(a, "VolumeWaterAdded") > 0.001 ? num(a, "VolumeToFermenter") / pitched : 1.0;
  const double efficiency = num(recipe, "MashEfficiency");
  const double wort = num(recipe, "FinalWortVolume");

  double total = 0, fromGrain = 0, fromStart = 0, grain = 0, mcuSum = 0, viggiano = 0, direct = 0;
  each(recipe, "FermentableIngredients", [&](const Tree& row) {
    const double extract = extractOf(row, efficiency);
    if (single(row, "IsGrain") > 0.2F) {
      grain += num(row, "Amount");
      fromGrain += extract;
    }
    if (text(row, "When") == "Start Of Boil") fromStart += extract;
    if (num(row, "Color") > 1000) {
      direct += num(row, "Amount") / wort * num(row, "Color");
    } else {
      const double mcu = mcuOf(row, wort, dilution);
      mcuSum += mcu;
      viggiano += text(row, "When") == "In Mash/Steeped"
                      ? num(row, "Extract") / 100 * (efficiency / 100 * mcu)
                      : mcu;
    }
    total += extract;
  });

  if (text(batch, "SpargeMethod") == "Brew in a Bag/No Sparge") {
    double w = single(recipe, "PreBoilWortVolume") + grain;
    std::vector<Tree> steps;  // what is no step is an empty one
    const Tree* schedule = recipe.dictionary(KeyName("MashSchedule"));
    const PlistArray* array = schedule ? schedule->array(KeyName("Steps")) : nullptr;
    for (std::size_t i = 0; array && i < array->size(); ++i) {
      const Tree* one = array->find(i)->dictionary();
      steps.push_back(one ? *one : Tree());
    }
    for (std::size_t i = steps.size(); i-- > 1;) {
      if (text(steps[i], "StepType") != "Raise by infusion to") continue;
      const double t2 = num(steps[i], "Temperature");
      const double r =
          (t2 - num(steps[i - 1], "Temperature")) / (single(user, "Boiling Point") - t2);
      w = (w / 1000 - 0.32 * grain * r / 1000 - single(batch, "MTThermalMass") * r / 1000) /
          (r + 1) * 1000;
    }
    put(batch, "WaterGrainRatio", grain < 0.1 ? 2.0 : w / grain);
  }

  const double preBoil = num(a, "PreBoilWortVolume");
  std::string gravity = "1.000";
  a.set(KeyName("ActualMashEfficiency"), "0.0");
  if (num(a, "PreBoilHydroReading") > 1.0) {
    const double measured = (num(a, "PreBoilGrav") - 1) * 1000 * preBoil / 386.5;
    if (fromGrain > 0 && measured > 0) {
      put(a, "ActualMashEfficiency", efficiency * measured / fromGrain);
      viggiano *= measured / fromGrain;
    }
    gravity = textOf((fromStart + measured) * 386.5 / preBoil / 1000 + 1);
  } else if (num(a, "OGHydroReading") > 1.0) {
    const double undiluted = (num(a, "OG") - 1) / dilution + 1;
    const double measured = num(a, "FinalWortVolume") * (undiluted - 1) * 1000 / 386.5;
    gravity = textOf((measured - (total - fromGrain) + fromStart) * 386.5 / preBoil / 1000 + 1);
  }
  put(a, "Color", beerColor(mcuSum, viggiano, direct, user));

  double bitter = 0;
  each(recipe, "HopIngredients", [&](const Tree& hop) {
    bitter +=
        bitterness(hop, recipe, numberIn(gravity), num(a, "FinalWortVolume"), user) * dilution;
  });
  put(a, "IBU", bitter);
  const double og = num(a, "OG");
  const double fg = num(a, "FG");
  put(a, "ABV", byVolume(og, fg));
  put(a, "ABW", byWeight(og, fg));
  put(a, "ApparentAttenuation", apparent(og, fg));
  put(a, "RealAttenuation", real(og, fg));
  batch.set(KeyName("Actuals"), a);
  put(*batch.editDictionary(KeyName("ModifiedRecipe")), "Cost", 0);
}

void recalculateBatchCost(Tree& batch) {
  double total = 0;
  for (const Text list :
       {"FermentableIngredients", "HopIngredients", "OtherIngredients", "YeastIngredients"}) {
    each(*std::as_const(batch).dictionary(KeyName("ModifiedRecipe")), list, [&](const Tree& row) {
      each(row, "Batches",
           [&](const Tree& drawn) { total += single(drawn, "Amount") * single(drawn, "Cost"); });
    });
  }
  put(batch, "Cost", total);
}

}  // namespace zym::reference
