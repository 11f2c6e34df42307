#include "tests/reference/RandomDocuments.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "zymcore/platform/values/NumberText.h"

namespace zym::reference {
namespace {

constexpr std::size_t oddities[] = {0, 0, 100, 20, 4};

// Separated by "|".
using Words = std::string_view;

constexpr Words oddNumbers =
    "|0|0.0|-3|abc| 12.5x|1e3|inf|nan|-inf|0x10|+5|\t7|1.2.3|.5|5.|1e|--4|+-4|- 4|12,5|"
    "1e-3|0.2|-0|  |1E+2|0.0099999|0.01|-0.5|1e9|1 000|NaN|infinity|100.0000004|0,5|"
    "\n1.000001|1e-400|١٢|½|9e-7|1000|1000.5|20|4|50";

constexpr Words truths = "1|1|1|0|0|1.000000|Yes||0.2|0.25|true|2|-1|0.200000001";

constexpr Words names =
    "Pale Malt|Corn Sugar/Dextrose|cane SUGAR|Lactose|lactose sugar|sUgArLaCtOsE|Honey|"
    "Sug ar||Zucker (süß)|Milk Lactos|Sugar";

constexpr Words fermentableWhens =
    "In Mash/Steeped|In Mash/Steeped|In Mash/Steeped|Start Of Boil|End Of Boil||"
    "start of boil|In Mash";

constexpr Words hopWhens =
    "In Mash|First Wort Hopped|All Of Boil|90 Min From End|80 Min From End|"
    "70 Min From End|60 Min From End|55 Min From End|50 Min From End|45 Min From End|"
    "40 Min From End|35 Min From End|30 Min From End|25 Min From End|20 Min From End|"
    "15 Min From End|10 Min From End|5 Min From End|1 Min From End|At turn off|"
    "In Hop-Back|In Fermenter|Dry-Hopped||dry-hopped|Whenever";

constexpr Words forms =
    "Loose Whole Hops|Bagged Whole Hops|Loose Pellet Hops|Bagged Pellet Hops|"
    "Pelletized Hops|Pellets|";

constexpr Words fermentabilities = "Low|Medium|Medium|High||medium|1";

constexpr Words spargeMethods =
    "Fly Sparge|Batch Sparge|Brew in a Bag/No Sparge|Brew in a Bag/No Sparge|";

constexpr Words stepTypes =
    "Heat to strike and dough in|Rest at|Raise by infusion to|Raise by infusion to|"
    "Pull decoction, boil, add back raising mash to|Raise to and Mash out at|"
    "Raise by direct heating to|";

constexpr Words formulaCodes = "0|1|2|3|0|1|2|3|4|7|-1||x| 2|3x|1.9";

}  // namespace

std::string RandomDocuments::oneOf(std::string_view words) {
  for (auto i = below(1 + static_cast<std::size_t>(std::ranges::count(words, '|'))); i > 0; --i) {
    words.remove_prefix(words.find('|') + 1);
  }
  return std::string(words.substr(0, words.find('|')));
}

std::string RandomDocuments::quantity(double from, double to) {
  if (oddity_ > 0 && oneIn(oddity_)) return oneOf(oddNumbers);
  char digits[64];
  const double value = from + (to - from) * (static_cast<double>(random_()) / 4294967296.0);
  constexpr int decimals[] = {0, 1, 3, 6};
  (void)std::snprintf(digits, sizeof digits, "%.*f", decimals[below(4)], value);
  return digits;
}

void RandomDocuments::put(PlistDictionary& to, const char* key, const std::string& text) {
  if (!text.empty() || oneIn(2)) to.set(KeyName(key), text);
}

PlistDictionary RandomDocuments::quantities(std::initializer_list<Range> ranges) {
  PlistDictionary result;
  for (const Range& range : ranges) put(result, range.key, quantity(range.from, range.to));
  return result;
}

void RandomDocuments::putRows(PlistDictionary& to, const char* key, std::size_t most, auto row) {
  PlistArray rows;
  for (std::size_t i = below(most + 1); i > 0; --i) {
    if (oneIn(200)) rows.append("no row");
    rows.append(row());
  }
  if (!rows.empty() || oneIn(2)) to.set(KeyName(key), std::move(rows));
}

PlistDictionary RandomDocuments::addition(std::initializer_list<Range> ranges) {
  PlistDictionary result = quantities(ranges);
  if (oneIn(2)) {
    putRows(result, "Batches", 2, [this] {
      return quantities({{"Amount", 0, 5000}, {"Cost", 0, 1}});
    });
  }
  // Whatever was worked out before.
  if (oneIn(2)) result.set(KeyName("Percentage"), quantity(0, 100));
  return result;
}

PlistDictionary RandomDocuments::recipeOfSameOddity() {
  PlistDictionary recipe = quantities({{"VolumeAtPitching", 15000, 30000},
                                       {"VolumeToFermenter", 10000, oneIn(3) ? 30000.0 : 20000.0},
                                       {"PreBoilWortVolume", 15000, 35000},
                                       {"FinalWortVolume", 12000, 30000},
                                       {"FinalBatchVolume", 10000, 25000},
                                       {"MashEfficiency", 50, 95},
                                       {"SteepDuration", 0, oneIn(2) ? 0.0 : 60.0},
                                       {"SteepTemperature", 60, 105}});
  put(recipe, "WortFermentability", oneOf(fermentabilities));
  recipe.set(KeyName("RecipeTitle"), "Ordinary");
  putRows(recipe, "FermentableIngredients", 7, [this] {
    const Range color = oneIn(10)  ? Range{"Color", 990, 2500}
                        : oneIn(3) ? Range{"Color", 0, 600}
                                   : Range{"Color", 0, 10};
    PlistDictionary row = addition({{"Amount", 0, 6000}, {"Extract", 30, 100}, color});
    put(row, "Ingredient", oneOf(names));
    put(row, "IsGrain", oneOf(truths));
    put(row, "When", oneOf(fermentableWhens));
    return row;
  });
  putRows(recipe, "HopIngredients", 6, [this] {
    PlistDictionary row =
        addition({{"Amount", 0, 100}, {"Alpha", 1, 18}, {"Minutes", 0, oneIn(5) ? 0.0 : 95.0}});
    put(row, "When", oneOf(hopWhens));
    put(row, "Form", oneOf(forms));
    return row;
  });
  putRows(recipe, "OtherIngredients", 2, [this] { return addition({{"Amount", 0, 20}}); });
  putRows(recipe, "YeastIngredients", 3, [this] {
    return addition({{"Attenuation", 0, oneIn(10) ? 2.0 : 99.0}});
  });
  PlistDictionary schedule;
  putRows(schedule, "Steps", 5, [this] {
    PlistDictionary row = quantities({{"Temperature", 35, 80}});
    put(row, "StepType", oneOf(stepTypes));
    return row;
  });
  if (!oneIn(10)) recipe.set(KeyName("MashSchedule"), schedule);
  if (oneIn(2)) recipe.set(KeyName("ExpectedIBU"), quantity(0, 100));
  return recipe;
}

PlistDictionary RandomDocuments::recipe() {
  oddity_ = oddities[below(std::size(oddities))];
  return recipeOfSameOddity();
}

PlistDictionary RandomDocuments::batch() {
  oddity_ = oddities[below(std::size(oddities))];
  PlistDictionary actuals = quantities({{"PreBoilWortVolume", 15000, 35000},
                                        {"FinalWortVolume", 12000, 30000},
                                        {"VolumeToFermenter", 10000, 30000},
                                        {"VolumeAtPitching", 10000, 30000},
                                        {"FinalBatchVolume", 10000, 30000},
                                        {"PreBoilHydroReading", 0.99, 1.09},
                                        {"OGHydroReading", 0.99, 1.12},
                                        {"FGHydroReading", 0.99, 1.03},
                                        {"PreBoilTemp", 0, 100},
                                        {"OGTemp", 0, 30},
                                        {"FGTemp", 0, 30},
                                        {"HydrometerCalibratedAt", 15, 20}});
  // Often not taken.
  for (const char* reading : {"PreBoilHydroReading", "OGHydroReading", "FGHydroReading"}) {
    if (oneIn(4)) actuals.set(KeyName(reading), "1.000");
  }
  PlistDictionary batch = quantities({{"MTThermalMass", 0, 2000}, {"WaterGrainRatio", 2, 4}});
  put(batch, "SpargeMethod", oneOf(spargeMethods));
  batch.set(KeyName("ModifiedRecipe"), recipeOfSameOddity());
  batch.set(KeyName("Actuals"), std::move(actuals));
  return batch;
}

PlistDictionary RandomDocuments::defaults() {
  oddity_ = oddities[below(std::size(oddities))];
  PlistDictionary texts =
      quantities({{"Boiling Point", oneIn(2) ? 100.0 : 15.0, oneIn(2) ? 100.0 : 105.0},
                  {"PelletHopAdjustment", 0, 2},
                  {"BaggedHopAdjustment", 0, 2},
                  {"BaggedPelletHopAdjustment", 0, 2},
                  {"FirstWortHopAdjustment", 0, 2},
                  {"MashHopAdjustment", 0, 2}});
  put(texts, "HopFormula", oneOf(formulaCodes));
  put(texts, "BeerColorFormula", oneOf(formulaCodes));
  // Absent, a text or a number.
  PlistDictionary values;
  for (const PlistEntry& entry : texts) {
    if (oneIn(10)) continue;
    values.set(entry.key, oneIn(2) ? entry.value : PlistValue(doubleValue(*entry.value.string())));
  }
  return values;
}

}  // namespace zym::reference
