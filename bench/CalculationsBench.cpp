#include <cmath>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/platform/values/PlistValue.h"

namespace {

std::size_t allocations = 0;

}  // namespace

// Inlined, GCC takes these for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace zym {
namespace {

PlistDictionary fermentable(const char* name, const char* amount, const char* extract,
                            const char* color, const char* isGrain, std::string_view when) {
  return {{keys::Ingredient, name}, {keys::Amount, amount},   {keys::Extract, extract},
          {keys::Color, color},     {keys::IsGrain, isGrain}, {keys::When, when}};
}

PlistDictionary hop(const char* amount, const char* alpha, const char* minutes,
                    std::string_view when, std::string_view form) {
  return {{keys::Amount, amount},
          {keys::Alpha, alpha},
          {keys::Minutes, minutes},
          {keys::When, when},
          {keys::Form, form}};
}

PlistDictionary porter() {
  using namespace words;
  return {
      {keys::VolumeAtPitching, "21000.000000"},
      {keys::VolumeToFermenter, "19500.000000"},
      {keys::PreBoilWortVolume, "25000.000000"},
      {keys::FinalWortVolume, "21500.000000"},
      {keys::FinalBatchVolume, "20000.000000"},
      {keys::MashEfficiency, "75.000000"},
      {keys::WortFermentability, Medium},
      {keys::SteepDuration, "15"},
      {keys::SteepTemperature, "80"},
      {keys::FermentableIngredients,
       PlistArray{fermentable("Pale Malt", "4200.000000", "80.500000", "2.5", "1", InMashSteeped),
                  fermentable("Brown Malt", "450.000000", "71.000000", "60", "1", InMashSteeped),
                  fermentable("Crystal Malt", "300.000000", "74.5", "55", "1", InMashSteeped),
                  fermentable("Black Malt", "120.000000", "65.00000", "500", "1", InMashSteeped),
                  fermentable("Malt Extract", "250.000000", "95.0", "8", "0", StartOfBoil),
                  fermentable("Demerara", "200.000000", "100.000000", "3.5", "0", EndOfBoil)}},
      {keys::HopIngredients,
       PlistArray{hop("30.000000", "6.100000", "60", FirstWortHopped, LooseWholeHops),
                  hop("25.000000", "5.500000", "60", AllOfBoil, LoosePelletHops),
                  hop("15.000000", "5.500000", "20", "20 Min From End", BaggedWholeHops),
                  hop("20.000000", "4.800000", "0", AtTurnOff, LooseWholeHops),
                  hop("20.000000", "4.800000", "0", DryHopped, BaggedPelletHops)}},
      {keys::YeastIngredients, PlistArray{PlistDictionary{{keys::Attenuation, "76.500000"}}}}};
}

// The same texts in plain structs: as much is read, worked out and written, and nothing more.
struct Bare {
  struct Row {
    std::string amount, yield, color, isGrain, when, name;
    std::string figures[6];
  };
  struct Hop {
    std::string amount, alpha, minutes, when, form;
    double factor;
    std::string ibu;
  };
  std::string given[8];
  std::string attenuation;
  std::vector<Row> rows;
  std::vector<Hop> hops;
  std::string figures[11];

  explicit Bare(const PlistDictionary& recipe);
  void recalculate();
};

Bare::Bare(const PlistDictionary& recipe) {
  const auto text = [](const PlistDictionary& from, KeyName key) {
    return std::string(from.stringValue(key));
  };
  std::size_t i = 0;
  for (const KeyName key : {keys::VolumeAtPitching, keys::VolumeToFermenter,
                            keys::PreBoilWortVolume, keys::FinalWortVolume, keys::FinalBatchVolume,
                            keys::MashEfficiency, keys::SteepDuration, keys::SteepTemperature}) {
    given[i++] = text(recipe, key);
  }
  attenuation = recipe.rows(keys::YeastIngredients).begin()->stringValue(keys::Attenuation);
  for (const PlistDictionary& row : recipe.rows(keys::FermentableIngredients)) {
    rows.push_back({text(row, keys::Amount),
                    text(row, keys::Extract),
                    text(row, keys::Color),
                    text(row, keys::IsGrain),
                    text(row, keys::When),
                    text(row, keys::Ingredient),
                    {}});
  }
  const double factors[] = {1.1, 1.1, 0.9, 1, 1};  // of form and time
  for (const PlistDictionary& hop : recipe.rows(keys::HopIngredients)) {
    hops.push_back({text(hop, keys::Amount), text(hop, keys::Alpha), text(hop, keys::Minutes),
                    text(hop, keys::When), text(hop, keys::Form), factors[hops.size()], ""});
  }
}

void Bare::recalculate() {
  double values[8];
  for (std::size_t i = 0; i < 8; ++i) values[i] = doubleValue(given[i]);
  const auto [pitched, transferred, preBoil, wort, batch, efficiency, steep, steepAt] = values;
  const double dilution = transferred / pitched;
  double total = 0, inKettle = 0, mashed = 0, weight = 0, mcuSum = 0;
  for (Row& row : rows) {
    const double amount = doubleValue(row.amount);
    const bool isGrain = floatValue(row.isGrain) > 0.2F;
    const double extract = amount * doubleValue(row.yield) * (isGrain ? efficiency : 100) / 10000;
    if (row.when == words::InMashSteeped) mashed += extract;
    if (row.when != words::EndOfBoil) inKettle += extract;
    if (!isGrain) {
      benchmark::DoNotOptimize(containsSubstring(row.name, "Sugar"));
      benchmark::DoNotOptimize(containsSubstring(row.name, "Lactose"));
    }
    const double mcu = doubleValue(row.color) * amount / 453.59 / (wort / 3785.41) * dilution;
    mcuSum += mcu;
    weight += amount;
    total += extract;
    row.figures[0] = stringWithFormatF(mcu);
    row.figures[1] = stringWithFormatF(extract * 386.5 / wort * dilution);
  }
  const double srm = 1.4922 * std::pow(mcuSum, 0.6859);
  for (Row& row : rows) {
    const double share = doubleValue(row.figures[0]) / mcuSum;
    row.figures[2] = stringWithFormatF(share * 100);
    row.figures[3] = stringWithFormatF(srm * share);
    row.figures[4] = stringWithFormatF(srm * 1.97 * share);
    row.figures[5] = stringWithFormatF(doubleValue(row.amount) / weight * 100);
  }
  const double og = total * 386.5 / wort / 1000 * dilution + 1;
  const double ferment = doubleValue(attenuation) / 100;
  const double fg = 260 / (260 - (260 - 260 / og) * (1 - ferment));
  const double boilGravity = inKettle * 386.5 / preBoil / 1000 + 1;
  double bitter = 0;
  for (Hop& hop : hops) {
    double minutes = doubleValue(hop.minutes);
    if (hop.when != words::DryHopped) minutes += steep / std::exp2((99.5 - steepAt) / 10);
    minutes /= std::exp2(0.05);
    const double used =
        1.65 * std::pow(0.000125, boilGravity - 1) * (1 - std::exp(-0.04 * minutes));
    const double ibu = doubleValue(hop.amount) * doubleValue(hop.alpha) * 10 * used / 4.15 /
                       (wort / 1000) * hop.factor * dilution;
    hop.ibu = stringWithFormatF(ibu);
    bitter += ibu;
  }
  const double plato = 260 - 260 / og;
  const double abw =
      (plato - (0.1808 * plato + 0.8192 * (260 - 260 / fg))) / (2.0665 - 0.010665 * plato);
  const double written[] = {pitched - transferred,
                            ferment * 100,
                            srm,
                            og,
                            bitter,
                            mashed * 386.5 / preBoil / 1000 + 1,
                            boilGravity,
                            fg,
                            abw * fg / 0.794,
                            abw,
                            (1 - (260 - 260 / fg) / plato) * batch};
  for (std::size_t i = 0; i < 11; ++i) figures[i] = stringWithFormatF(written[i]);
}

void RecalculateRecipe(benchmark::State& state) {
  NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
  defaults.setPersistentFile("");
  defaults.registerDefaults({{keys::BoilingPoint, 99.5},
                             {keys::PelletHopAdjustment, 1.1},
                             {keys::BaggedHopAdjustment, 0.9},
                             {keys::BaggedPelletHopAdjustment, 1.0},
                             {keys::FirstWortHopAdjustment, 1.1},
                             {keys::MashHopAdjustment, 0.2}});
  PlistDictionary recipe = porter();
  Bare bare(recipe);
  measure(
      state, 1, [&] { ZYMBeerCalculations::recalculateBeerRecipe(recipe); },
      [&] { bare.recalculate(); });
  const auto differs = [&](KeyName key, std::size_t figure) {
    return std::abs(recipe.doubleValue(key) - doubleValue(bare.figures[figure])) > 1e-4;
  };
  if (differs(keys::ExpectedOriginalGravity, 3) || differs(keys::ExpectedIBU, 4) ||
      differs(keys::ExpectedFinalGravity, 7)) {
    state.SkipWithError("not the same work");
  }
}

std::vector<std::string> namesOfHops(std::size_t count) {
  static constexpr const char* places[] = {"East Kent",   "Styrian", "Hallertauer", "US",
                                           "New Zealand", "Czech",   "Tettnanger",  "German"};
  static constexpr const char* varieties[] = {
      "Goldings", "Cascade", "Northern Brewer", "Saaz", "Mittelfrüh", "Nelson Sauvin", "Perle"};
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) {
    names.push_back(std::string(places[i % std::size(places)]) + " " +
                    varieties[i % std::size(varieties)] + " " + std::to_string(i));
  }
  return names;
}

double likenessOfAll(const std::vector<std::string>& names) {
  double sum = 0;
  for (const std::string& name : names) {
    sum += similarityWithString("Hallertau Mittelfrueh Hops", name);
  }
  return sum;
}

// One name with a library of 10,000 beside ten times one with 1,000: what is linear has a ratio
// of 1.
void FindSimilarNames(benchmark::State& state) {
  constexpr std::size_t few = 1000;
  constexpr std::size_t many = 10 * few;
  const std::vector<std::string> library = namesOfHops(few);
  const std::vector<std::string> largeLibrary = namesOfHops(many);
  benchmark::DoNotOptimize(likenessOfAll(library));
  const std::size_t before = allocations;
  benchmark::DoNotOptimize(likenessOfAll(library));
  const auto allocated = static_cast<double>(allocations - before);

  measure(
      state, many, [&] { benchmark::DoNotOptimize(likenessOfAll(largeLibrary)); },
      [&] {
        for (int i = 0; i < 10; ++i) benchmark::DoNotOptimize(likenessOfAll(library));
      });
  state.counters["allocations"] = allocated / few;
}

ZYM_BENCHMARK(RecalculateRecipe);
ZYM_BENCHMARK(FindSimilarNames);

}  // namespace
}  // namespace zym
