#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Recipes, batches and user defaults as plain structs. Every field is the stored text; an empty
/// one is absent. What a calculation writes stands last in each.
namespace zym::reference {

struct PlainAllocation {
  std::string amount, cost;
};

struct PlainFermentable {
  std::string name, amount, extract, color, isGrain, when;
  std::vector<PlainAllocation> stock;
  std::string mcu, mcuPercentage, srm, ebc, gravityPoints, percentage;
};

struct PlainHop {
  std::string amount, alpha, minutes, when;
  std::vector<PlainAllocation> stock;
  std::string form, ibu;
};

struct PlainOther {
  std::string amount;
  std::vector<PlainAllocation> stock;
};

struct PlainYeast {
  std::string attenuation;
  std::vector<PlainAllocation> stock;
};

struct PlainStep {
  std::string type, temperature;
};

struct PlainRecipe {
  std::string volumeAtPitching, volumeToFermenter, preBoilWortVolume, finalWortVolume;
  std::string finalBatchVolume, mashEfficiency, wortFermentability, steepDuration, steepTemperature;
  std::vector<PlainFermentable> fermentables;
  std::vector<PlainHop> hops;
  std::vector<PlainOther> others;
  std::vector<PlainYeast> yeasts;
  std::vector<PlainStep> steps;
  std::string volumeWaterAdded, attenuation, color, preBoilGravity, gravityForIBU, og, fg, abv, abw;
  std::string apparentAttenuation, ibu, cost;
};

struct PlainActuals {
  std::string preBoilWortVolume, finalWortVolume;
  std::string preBoilReading, ogReading, fgReading, preBoilTemp, ogTemp, fgTemp, calibratedAt;
  std::string volumeToFermenter, volumeAtPitching, finalBatchVolume, volumeWaterAdded;
  std::string preBoilGravity, og, fg, mashEfficiency, color, ibu, abv, abw;
  std::string apparentAttenuation, realAttenuation;
};

struct PlainBatch {
  PlainRecipe recipe;
  PlainActuals actuals;
  std::string spargeMethod, thermalMass;
  std::string waterGrainRatio, cost;
};

struct PlainDefaults {
  float boilingPoint = 0;
  std::int64_t hopFormula = 0;
  std::int64_t colorFormula = 0;
  double pelletHops = 0;
  double baggedHops = 0;
  double baggedPelletHops = 0;
  double firstWortHops = 0;
  double mashHops = 0;
};

}  // namespace zym::reference
