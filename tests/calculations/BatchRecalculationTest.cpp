#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/Defaults.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/Vocabularies.h"

namespace zym {
namespace {

using Changes = std::initializer_list<std::pair<KeyName, PlistValue>>;

PlistDictionary changed(PlistDictionary tree, Changes changes) {
  for (const auto& [key, value] : changes) tree.set(key, value);
  return tree;
}

// 2560 g of extract from 4000 g of grain.
const PlistDictionary recipe{
    {keys::PreBoilWortVolume, "25000"},
    {keys::FinalWortVolume, "20000"},
    {keys::MashEfficiency, "80"},
    {keys::FermentableIngredients, PlistArray{PlistDictionary{{keys::Amount, "4000"},
                                                              {keys::Extract, "80"},
                                                              {keys::Color, "3"},
                                                              {keys::IsGrain, "1"},
                                                              {keys::When, words::InMashSteeped}}}},
    {keys::HopIngredients, PlistArray{PlistDictionary{{keys::Amount, "20"},
                                                      {keys::Alpha, "5"},
                                                      {keys::Minutes, "60"},
                                                      {keys::Form, words::LooseWholeHops},
                                                      {keys::When, words::AllOfBoil}}}}};

const PlistDictionary actuals{{keys::PreBoilWortVolume, "25000"},
                              {keys::FinalWortVolume, "20000"},
                              {keys::VolumeToFermenter, "20000"},
                              {keys::VolumeAtPitching, "20000"},
                              {keys::FinalBatchVolume, "19000"},
                              {keys::PreBoilHydroReading, "1.000"},
                              {keys::OGHydroReading, "1.000"},
                              {keys::FGHydroReading, "1.000"},
                              {keys::PreBoilTemp, "20"},
                              {keys::OGTemp, "20"},
                              {keys::FGTemp, "20"},
                              {keys::HydrometerCalibratedAt, "20"}};

class BatchRecalculation : public testing::WithDefaults {
 protected:
  BatchRecalculation() { set(keys::BoilingPoint, 100); }

  static PlistDictionary batch(Changes inActuals, Changes inRecipe = {}, Changes inBatch = {}) {
    PlistDictionary result{{keys::ModifiedRecipe, changed(recipe, inRecipe)},
                           {keys::Actuals, changed(actuals, inActuals)},
                           {keys::SpargeMethod, words::FlySparge},
                           {keys::WaterGrainRatio, "2.5"}};
    result = changed(result, inBatch);
    ZYMBeerCalculations::recalculateBatch(result);
    return result;
  }
  static std::string measured(const PlistDictionary& batch, KeyName key) {
    return std::string(batch.dictionary(keys::Actuals)->stringValue(key));
  }
};

TEST_F(BatchRecalculation, ReadingsAreCorrectedForTheirTemperature) {
  const PlistDictionary b = batch({{keys::OGHydroReading, "1.050"},
                                   {keys::FGHydroReading, "1.010"},
                                   {keys::FGTemp, "30"},
                                   {keys::PreBoilHydroReading, "1.040"},
                                   {keys::PreBoilTemp, "60"}});
  EXPECT_EQ(measured(b, keys::OG), "1.050000");
  EXPECT_EQ(measured(b, keys::FG), "1.012557");
  EXPECT_EQ(measured(b, keys::PreBoilGrav), "1.055034");
}

TEST_F(BatchRecalculation, NoMoreIsPassedOnThanThereWas) {
  const PlistDictionary b = batch({{keys::VolumeToFermenter, "21000"},
                                   {keys::VolumeAtPitching, "19000"},
                                   {keys::FinalBatchVolume, "30000"}});
  EXPECT_EQ(measured(b, keys::VolumeToFermenter), "20000.000000");
  EXPECT_EQ(measured(b, keys::VolumeAtPitching), "20000.000000");
  EXPECT_EQ(measured(b, keys::FinalBatchVolume), "20000.000000");
  EXPECT_EQ(measured(b, keys::VolumeWaterAdded), "0.000000");

  const PlistDictionary fit = batch({{keys::VolumeToFermenter, "18000"}});
  EXPECT_EQ(measured(fit, keys::VolumeToFermenter), "18000");  // not touched
  EXPECT_EQ(measured(fit, keys::VolumeWaterAdded), "2000.000000");
}

// 40 points in 25 l are 2587.322 g of extract, of the 2560 g that 80 % would give.
TEST_F(BatchRecalculation, EfficiencyFromTheReadingBeforeTheBoil) {
  const PlistDictionary b = batch({{keys::PreBoilHydroReading, "1.040"}});
  EXPECT_EQ(measured(b, keys::ActualMashEfficiency), "80.853816");
  const double tinseth = 1.65 * std::pow(0.000125, 0.04) * (1 - std::exp(-2.4)) / 4.15;
  EXPECT_NEAR(std::stod(measured(b, keys::IBU)), 20 * 5 * 10 * tinseth / 20, 1e-5);

  // A reading below water counts as a reading, but yields no efficiency.
  const PlistDictionary cold =
      batch({{keys::PreBoilHydroReading, "1.0001"}, {keys::PreBoilTemp, "4"}});
  EXPECT_EQ(measured(cold, keys::ActualMashEfficiency), "0.0");
}

TEST_F(BatchRecalculation, TheOriginalGravityServesBitternessWithoutAReadingBeforeTheBoil) {
  const PlistDictionary b = batch({{keys::OGHydroReading, "1.050"}});
  EXPECT_EQ(measured(b, keys::ActualMashEfficiency), "0.0");
  // 50 points in 20 l are 40 in 25 l.
  EXPECT_EQ(measured(b, keys::IBU),
            measured(batch({{keys::PreBoilHydroReading, "1.040"}}), keys::IBU));
  const double atWater = 20 * 5 * 10 * 1.65 * (1 - std::exp(-2.4)) / 4.15 / 20;
  EXPECT_NEAR(std::stod(measured(batch({}), keys::IBU)), atWater, 1e-5);
  // The measured volume thins, and the reading is taken back to the wort before the water.
  const PlistDictionary thin =
      batch({{keys::OGHydroReading, "1.025"}, {keys::VolumeToFermenter, "10000"}});
  EXPECT_NEAR(std::stod(measured(thin, keys::IBU)), std::stod(measured(b, keys::IBU)) / 2, 1e-6);
}

TEST_F(BatchRecalculation, ViggianoColourFollowsTheEfficiency) {
  set(keys::BeerColorFormula, 3);
  const double mcu = 3 * 4000 / 453.59 / (20000 / 3785.41);
  const double predicted = mcu * 0.64;
  EXPECT_NEAR(std::stod(measured(batch({}), keys::Color)), predicted + 1, 1e-5);
  EXPECT_NEAR(std::stod(measured(batch({{keys::PreBoilHydroReading, "1.040"}}), keys::Color)),
              predicted * 2587.322 / 2560 + 1, 1e-4);
  set(keys::BeerColorFormula, 1);
  EXPECT_NEAR(std::stod(measured(batch({{keys::PreBoilHydroReading, "1.040"}}), keys::Color)),
              0.2 * mcu + 8.4, 1e-5);
}

TEST_F(BatchRecalculation, AlcoholMayBeNegative) {
  const PlistDictionary b =
      batch({{keys::OGHydroReading, "1.010"}, {keys::FGHydroReading, "1.040"}});
  EXPECT_LT(std::stod(measured(b, keys::ABV)), -3);
  EXPECT_LT(std::stod(measured(b, keys::ApparentAttenuation)), -200);
  EXPECT_EQ(measured(batch({}), keys::ABV), "0.000000");
  EXPECT_EQ(measured(batch({}), keys::RealAttenuation), "0.000000");
}

TEST_F(BatchRecalculation, MashThicknessWithoutSparge) {
  const auto ratio = [](Changes inRecipe, Changes inBatch) {
    PlistDictionary all = changed({{keys::SpargeMethod, words::NoSparge}}, inBatch);
    PlistDictionary result{{keys::ModifiedRecipe, changed(recipe, inRecipe)},
                           {keys::Actuals, actuals}};
    for (const PlistEntry& entry : all) result.set(entry.key, entry.value);
    ZYMBeerCalculations::recalculateBatch(result);
    return std::string(result.stringValue(keys::WaterGrainRatio));
  };
  const auto schedule = [](std::string_view second) {
    return PlistDictionary{
        {keys::Steps,
         PlistArray{
             PlistDictionary{{keys::StepType, words::RaiseByInfusion}, {keys::Temperature, "50"}},
             PlistDictionary{{keys::StepType, second}, {keys::Temperature, "60"}}}}};
  };
  EXPECT_EQ(ratio({}, {}), "7.250000");  // (25000 + 4000) / 4000
  EXPECT_EQ(ratio({{keys::MashSchedule, schedule(words::RaiseByDirectHeating)}}, {}), "7.250000");
  // r is 10 / 40; 29 l less 0.32 of 4 kg and a tun of 1 l of water, each a quarter, over 1.25.
  EXPECT_EQ(ratio({{keys::MashSchedule, schedule(words::RaiseByInfusion)}},
                  {{keys::MTThermalMass, "1000"}}),
            "5.686000");
  EXPECT_EQ(ratio({{keys::FermentableIngredients, PlistArray{}}}, {}), "2.000000");
  EXPECT_EQ(ratio({}, {{keys::SpargeMethod, words::FlySparge}, {keys::WaterGrainRatio, "3.1"}}),
            "3.1");
}

TEST_F(BatchRecalculation, TheCostOfTheRecipeIsAlwaysNothing) {
  const PlistDictionary b = batch({}, {}, {{keys::Cost, "12.50"}});
  EXPECT_EQ(b.stringValue(keys::Cost), "12.50");
  EXPECT_EQ(b.dictionary(keys::ModifiedRecipe)->stringValue(keys::Cost), "0.000000");
}

TEST_F(BatchRecalculation, OnlyWhatIsMeasuredChangesInTheRecipe) {
  const PlistDictionary b = batch({{keys::PreBoilHydroReading, "1.040"}});
  EXPECT_EQ(*b.dictionary(keys::ModifiedRecipe), changed(recipe, {{keys::Cost, "0.000000"}}));
  EXPECT_EQ(b.stringValue(keys::WaterGrainRatio), "2.5");
}

TEST_F(BatchRecalculation, CostSumsAllocationsInSinglePrecision) {
  const auto addition = [](Changes allocation) {
    return PlistArray{PlistDictionary{{keys::Batches, PlistArray{changed({}, allocation)}}},
                      PlistDictionary{{keys::Amount, "5"}}};
  };
  PlistDictionary b{
      {keys::ModifiedRecipe,
       PlistDictionary{
           {keys::FermentableIngredients,
            addition({{keys::Amount, "4000"}, {keys::Cost, "0.0015"}})},
           {keys::HopIngredients, addition({{keys::Amount, "20"}, {keys::Cost, "0.1"}})},
           {keys::OtherIngredients, addition({{keys::Amount, "1"}, {keys::Cost, "0.25"}})},
           {keys::YeastIngredients, addition({{keys::Amount, "2"}, {keys::Cost, "33333333.3"}})}}}};
  ZYMBeerCalculations::recalculateBatchCost(b);
  // 33333333.3 is 33333334 in single precision.
  EXPECT_EQ(b.stringValue(keys::Cost), "66666676.250000");
}

TEST_F(BatchRecalculation, NothingInNothingOut) {
  PlistDictionary empty;
  ZYMBeerCalculations::recalculateBatch(empty);
  EXPECT_EQ(empty, PlistDictionary());
  PlistDictionary odd{{keys::ModifiedRecipe, PlistArray()},
                      {keys::Actuals, "none"},
                      {keys::SpargeMethod, words::NoSparge}};
  ZYMBeerCalculations::recalculateBatch(odd);
  EXPECT_EQ(odd.stringValue(keys::WaterGrainRatio), "2.000000");
  EXPECT_EQ(odd.stringValue(keys::Actuals), "none");
  PlistDictionary bare{{keys::ModifiedRecipe, PlistDictionary()},
                       {keys::Actuals, PlistDictionary()}};
  ZYMBeerCalculations::recalculateBatch(bare);
  EXPECT_EQ(measured(bare, keys::OG), "0.000000");
}

}  // namespace
}  // namespace zym
