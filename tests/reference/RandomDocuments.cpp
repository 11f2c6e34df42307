#include "tests/reference/RandomDocuments.h"

#include "tests/reference/PlainFields.h"
#include "tests/reference/PlainNumbers.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym::reference {
namespace {

constexpr const char* oddNumbers[] = {
    "",       "0",    "0.0",  "-3",    "abc",   " 12.5x",   "1e3",         "inf",  "nan",
    "-inf",   "0x10", "+5",   "\t7",   "1.2.3", ".5",       "5.",          "1e",   "--4",
    "+-4",    "- 4",  "12,5", "1e-3",  "0.2",   "-0",       "  ",          "1E+2", "0.0099999",
    "0.01",   "-0.5", "1e9",  "1 000", "NaN",   "infinity", "100.0000004", "0,5",  "\n1.000001",
    "1e-400", "١٢",   "½",    "9e-7",  "1000",  "1000.5",   "20",          "4",    "50"};

constexpr const char* truths[] = {"1", "1",   "1",    "0",    "0", "1.000000", "Yes",
                                  "",  "0.2", "0.25", "true", "2", "-1",       "0.200000001"};

constexpr const char* names[] = {"Pale Malt",
                                 "Corn Sugar/Dextrose",
                                 "cane SUGAR",
                                 "Lactose",
                                 "lactose sugar",
                                 "sUgArLaCtOsE",
                                 "Honey",
                                 "Sug ar",
                                 "",
                                 "Zucker (süß)",
                                 "Milk Lactos",
                                 "Sugar"};

constexpr const char* fermentableWhens[] = {"In Mash/Steeped", "In Mash/Steeped", "In Mash/Steeped",
                                            "Start Of Boil",   "End Of Boil",     "",
                                            "start of boil",   "In Mash"};

constexpr const char* hopWhens[] = {
    "In Mash",         "First Wort Hopped", "All Of Boil",     "90 Min From End",
    "80 Min From End", "70 Min From End",   "60 Min From End", "55 Min From End",
    "50 Min From End", "45 Min From End",   "40 Min From End", "35 Min From End",
    "30 Min From End", "25 Min From End",   "20 Min From End", "15 Min From End",
    "10 Min From End", "5 Min From End",    "1 Min From End",  "At turn off",
    "In Hop-Back",     "In Fermenter",      "Dry-Hopped",      "",
    "dry-hopped",      "Whenever"};

constexpr const char* forms[] = {"Loose Whole Hops",
                                 "Bagged Whole Hops",
                                 "Loose Pellet Hops",
                                 "Bagged Pellet Hops",
                                 "Pelletized Hops",
                                 "Pellets",
                                 ""};

constexpr const char* fermentabilities[] = {"Low", "Medium", "Medium", "High", "", "medium", "1"};

constexpr const char* spargeMethods[] = {"Fly Sparge", "Batch Sparge", "Brew in a Bag/No Sparge",
                                         "Brew in a Bag/No Sparge", ""};

constexpr const char* stepTypes[] = {"Heat to strike and dough in",
                                     "Rest at",
                                     "Raise by infusion to",
                                     "Raise by infusion to",
                                     "Pull decoction, boil, add back raising mash to",
                                     "Raise to and Mash out at",
                                     "Raise by direct heating to",
                                     ""};

constexpr const char* formulaCodes[] = {"0", "1", "2",  "3", "0", "1",  "2",  "3",
                                        "4", "7", "-1", "",  "x", " 2", "3x", "1.9"};

}  // namespace

std::string RandomDocuments::quantity(double from, double to) {
  if (oddity_ > 0 && oneIn(oddity_)) return oneOf(oddNumbers);
  const double value = from + (to - from) * (static_cast<double>(random_()) / 4294967296.0);
  std::string result = text(value);
  switch (below(4)) {
    case 0:
      return result.substr(0, result.find('.'));
    case 1:
      return result.substr(0, result.size() - 5);
    case 2:
      return result.substr(0, result.size() - 3);
    default:
      return result;
  }
}

// A hydrometer reading, often not taken.
std::string RandomDocuments::reading(double from, double to) {
  return oneIn(4) ? "1.000" : quantity(from, to);
}

template <class Row, class Fields>
void RandomDocuments::leaveStale(Row& row, const Fields& written) {
  for (const Field<Row>& field : written) {
    if (oneIn(2)) row.*field.text = quantity(0, 100);
  }
}

std::vector<PlainAllocation> RandomDocuments::stock() {
  std::vector<PlainAllocation> result;
  for (std::size_t i = below(3); i > 0 && oneIn(2); --i) {
    result.push_back({quantity(0, 5000), quantity(0, 1)});
  }
  return result;
}

PlainFermentable RandomDocuments::fermentable() {
  PlainFermentable row;
  row.name = oneOf(names);
  row.amount = quantity(0, oneIn(5) ? 3 : 8000);
  row.extract = quantity(40, 100);
  row.color = oneIn(10) ? quantity(990, 2500) : quantity(0, oneIn(3) ? 600 : 10);
  row.isGrain = oneOf(truths);
  row.when = oneOf(fermentableWhens);
  row.stock = stock();
  leaveStale(row, fermentableWritten);
  return row;
}

PlainHop RandomDocuments::hop() {
  PlainHop row;
  row.amount = quantity(0, 100);
  row.alpha = quantity(1, 18);
  row.minutes = oneIn(5) ? "0" : quantity(0, 95);
  row.when = oneOf(hopWhens);
  row.form = oneOf(forms);
  row.stock = stock();
  leaveStale(row, hopWritten);
  return row;
}

PlainRecipe RandomDocuments::recipeOfSameOddity() {
  PlainRecipe recipe;
  recipe.volumeAtPitching = quantity(15000, 30000);
  recipe.volumeToFermenter = oneIn(3) ? quantity(25000, 30000) : quantity(10000, 20000);
  recipe.preBoilWortVolume = quantity(15000, 35000);
  recipe.finalWortVolume = quantity(12000, 30000);
  recipe.finalBatchVolume = quantity(10000, 25000);
  recipe.mashEfficiency = quantity(50, 95);
  recipe.wortFermentability = oneOf(fermentabilities);
  recipe.steepDuration = oneIn(2) ? "0" : quantity(0, 60);
  recipe.steepTemperature = quantity(60, 105);
  for (std::size_t i = below(8); i > 0; --i) recipe.fermentables.push_back(fermentable());
  for (std::size_t i = below(7); i > 0; --i) recipe.hops.push_back(hop());
  for (std::size_t i = below(3); i > 0; --i) recipe.others.push_back({quantity(0, 20), stock()});
  for (std::size_t i = below(4); i > 0; --i) {
    recipe.yeasts.push_back({quantity(0, oneIn(10) ? 2 : 99), stock()});
  }
  for (std::size_t i = below(6); i > 0; --i) {
    recipe.steps.push_back({oneOf(stepTypes), quantity(35, 80)});
  }
  leaveStale(recipe, recipeWritten);
  return recipe;
}

PlainRecipe RandomDocuments::recipe() {
  startDocument();
  return recipeOfSameOddity();
}

PlainActuals RandomDocuments::actuals() {
  PlainActuals actuals;
  actuals.preBoilWortVolume = quantity(15000, 35000);
  actuals.finalWortVolume = quantity(12000, 30000);
  actuals.volumeToFermenter = quantity(10000, 30000);
  actuals.volumeAtPitching = quantity(10000, 30000);
  actuals.finalBatchVolume = quantity(10000, 30000);
  actuals.preBoilReading = reading(0.99, 1.09);
  actuals.ogReading = reading(0.99, 1.12);
  actuals.fgReading = reading(0.99, 1.03);
  actuals.preBoilTemp = quantity(0, 100);
  actuals.ogTemp = quantity(0, 30);
  actuals.fgTemp = quantity(0, 30);
  actuals.calibratedAt = oneIn(2) ? actuals.ogTemp : quantity(15, 20);
  leaveStale(actuals, actualsWritten);
  return actuals;
}

PlainBatch RandomDocuments::batch() {
  startDocument();
  PlainBatch batch;
  batch.recipe = recipeOfSameOddity();
  batch.actuals = actuals();
  batch.spargeMethod = oneOf(spargeMethods);
  batch.thermalMass = quantity(0, 2000);
  leaveStale(batch, batchWritten);
  return batch;
}

std::pair<PlistDictionary, PlainDefaults> RandomDocuments::defaults() {
  startDocument();
  PlistDictionary values;
  // Absent, a text or a number.
  const auto chosen = [&](KeyName key, const std::string& text) {
    if (oneIn(10)) return 0.0;
    values.set(key, oneIn(2) ? PlistValue(text) : PlistValue(number(text)));
    return number(text);
  };
  PlainDefaults plain;
  plain.boilingPoint =
      static_cast<float>(chosen(keys::BoilingPoint, oneIn(2) ? "100" : quantity(15, 105)));
  plain.hopFormula = static_cast<std::int64_t>(chosen(keys::HopFormula, oneOf(formulaCodes)));
  plain.colorFormula =
      static_cast<std::int64_t>(chosen(keys::BeerColorFormula, oneOf(formulaCodes)));
  plain.pelletHops = chosen(keys::PelletHopAdjustment, quantity(0, 2));
  plain.baggedHops = chosen(keys::BaggedHopAdjustment, quantity(0, 2));
  plain.baggedPelletHops = chosen(keys::BaggedPelletHopAdjustment, quantity(0, 2));
  plain.firstWortHops = chosen(keys::FirstWortHopAdjustment, quantity(0, 2));
  plain.mashHops = chosen(keys::MashHopAdjustment, quantity(0, 2));
  return {values, plain};
}

}  // namespace zym::reference
