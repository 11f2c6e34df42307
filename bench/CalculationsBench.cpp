#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "tests/reference/DocumentOf.h"
#include "tests/reference/PlainRecalculation.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/platform/host/NSUserDefaults.h"
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

using namespace reference;

PlainFermentable fermentable(const char* name, const char* amount, const char* extract,
                             const char* color, const char* isGrain, const char* when) {
  PlainFermentable row;
  row.name = name;
  row.amount = amount;
  row.extract = extract;
  row.color = color;
  row.isGrain = isGrain;
  row.when = when;
  return row;
}

PlainHop hop(const char* amount, const char* alpha, const char* minutes, const char* when,
             const char* form) {
  PlainHop row;
  row.amount = amount;
  row.alpha = alpha;
  row.minutes = minutes;
  row.when = when;
  row.form = form;
  return row;
}

PlainRecipe porter() {
  PlainRecipe recipe;
  recipe.volumeAtPitching = "21000.000000";
  recipe.volumeToFermenter = "19500.000000";
  recipe.preBoilWortVolume = "25000.000000";
  recipe.finalWortVolume = "21500.000000";
  recipe.finalBatchVolume = "20000.000000";
  recipe.mashEfficiency = "75.000000";
  recipe.wortFermentability = "Medium";
  recipe.steepDuration = "15";
  recipe.steepTemperature = "80";
  const char* mash = "In Mash/Steeped";
  recipe.fermentables = {
      fermentable("Pale Malt", "4200.000000", "80.500000", "2.500000", "1", mash),
      fermentable("Brown Malt", "450.000000", "71.000000", "60.000000", "1", mash),
      fermentable("Crystal Malt", "300.000000", "74.500000", "55.000000", "1", mash),
      fermentable("Black Malt", "120.000000", "65.000000", "500.000000", "1", mash),
      fermentable("Malt Extract", "250.000000", "95.000000", "8.000000", "0", "Start Of Boil"),
      fermentable("Demerara Sugar", "200.000000", "100.000000", "3.500000", "0", "End Of Boil")};
  recipe.hops = {hop("30.000000", "6.100000", "60", "First Wort Hopped", "Loose Whole Hops"),
                 hop("25.000000", "5.500000", "60", "All Of Boil", "Loose Pellet Hops"),
                 hop("15.000000", "5.500000", "20", "20 Min From End", "Bagged Whole Hops"),
                 hop("20.000000", "4.800000", "0", "At turn off", "Loose Whole Hops"),
                 hop("20.000000", "4.800000", "0", "Dry-Hopped", "Bagged Pellet Hops")};
  recipe.yeasts = {{"76.500000", {}}};
  return recipe;
}

// The limit: the same texts in plain structs.
void RecalculateRecipe(benchmark::State& state) {
  NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
  defaults.setPersistentFile("");
  defaults.registerDefaults({{keys::BoilingPoint, 99.5},
                             {keys::PelletHopAdjustment, 1.1},
                             {keys::BaggedHopAdjustment, 0.9},
                             {keys::BaggedPelletHopAdjustment, 1.0},
                             {keys::FirstWortHopAdjustment, 1.1},
                             {keys::MashHopAdjustment, 0.2}});
  const PlainDefaults user{99.5F, 0, 0, 1.1, 0.9, 1.0, 1.1, 0.2};

  PlainRecipe plain = porter();
  PlistDictionary recipe = documentOf(plain, WhereEmpty::LeaveOut);
  measure(
      state, 1, [&] { ZYMBeerCalculations::recalculateBeerRecipe(recipe); },
      [&] { recalculateRecipe(plain, user); });
  if (recipe != documentOf(plain, WhereEmpty::LeaveOut)) state.SkipWithError("not the same work");
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
