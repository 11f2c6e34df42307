#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/Defaults.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"

namespace zym {
namespace {

// 10 l of wort in which 1000 g of extract are 38.65 gravity points.
PlistDictionary wort() {
  return {{keys::PreBoilWortVolume, "12000"},   {keys::FinalWortVolume, "10000"},
          {keys::VolumeToFermenter, "10000"},   {keys::VolumeAtPitching, "10000"},
          {keys::FinalBatchVolume, "9000"},     {keys::MashEfficiency, "80"},
          {keys::WortFermentability, "Medium"}, {keys::SteepDuration, "0"},
          {keys::SteepTemperature, "80"}};
}

PlistDictionary grain(const char* amount) {
  return {{keys::Ingredient, "Pale Malt"},
          {keys::Amount, amount},
          {keys::Extract, "80"},
          {keys::Color, "3"},
          {keys::IsGrain, "1"},
          {keys::When, words::InMashSteeped}};
}

PlistDictionary adjunct(const char* name, const char* when) {
  return {{keys::Ingredient, name}, {keys::Amount, "1000"}, {keys::Extract, "100"},
          {keys::Color, "0"},       {keys::IsGrain, "0"},   {keys::When, when}};
}

PlistDictionary hop(std::string_view when, const char* minutes) {
  return {{keys::Variety, "Goldings"},      {keys::Alpha, "5"}, {keys::Amount, "20"},
          {keys::Form, "Loose Whole Hops"}, {keys::When, when}, {keys::Minutes, minutes}};
}

PlistDictionary yeast(const char* attenuation) {
  return {{keys::Attenuation, attenuation}};
}

class RecipeRecalculation : public testing::WithDefaults {
 protected:
  RecipeRecalculation() {
    set(keys::BoilingPoint, 100);
    set(keys::FirstWortHopAdjustment, 1.1);
    set(keys::MashHopAdjustment, 0.2);
    set(keys::PelletHopAdjustment, 1.1);
  }

  static PlistDictionary recalculated(PlistDictionary recipe) {
    ZYMBeerCalculations::recalculateBeerRecipe(recipe);
    return recipe;
  }
  static PlistDictionary with(std::initializer_list<std::pair<KeyName, PlistValue>> changes) {
    PlistDictionary recipe = wort();
    for (const auto& [key, value] : changes) recipe.set(key, value);
    return recalculated(recipe);
  }
  static const PlistDictionary& row(const PlistDictionary& recipe, KeyName rows, std::size_t i) {
    return *recipe.array(rows)->find(i)->dictionary();
  }
};

TEST_F(RecipeRecalculation, WaterIsAddedBeforeAnythingIsChecked) {
  EXPECT_EQ(recalculated({}), (PlistDictionary{{keys::VolumeWaterAdded, "0.000000"}}));
  EXPECT_EQ(with({{keys::VolumeAtPitching, "9000"}}).stringValue(keys::VolumeWaterAdded),
            "0.000000");
  for (const KeyName volume :
       {keys::PreBoilWortVolume, keys::FinalWortVolume, keys::FinalBatchVolume}) {
    PlistDictionary expected = wort();
    expected.set(volume, "0.009");
    expected.set(keys::VolumeAtPitching, "11000");
    PlistDictionary recipe = expected;
    expected.set(keys::VolumeWaterAdded, "1000.000000");
    EXPECT_EQ(recalculated(recipe), expected) << volume.text();
  }
}

TEST_F(RecipeRecalculation, Attenuation) {
  struct Case {
    std::vector<const char*> yeasts;
    const char* fermentability;
    const char* attenuation;
  };
  for (const Case& c :
       {Case{{"70", "75"}, "High", "77.500000"}, Case{{"75", "70"}, "Low", "72.500000"},
        Case{{"99"}, "High", "100.000000"}, Case{{"1"}, "Low", "0.000000"},
        Case{{"72.3"}, "Medium", "72.300003"}, Case{{"75"}, "medium", "100.000000"},
        Case{{"-5"}, "Medium", "0.000000"}, Case{{}, "no word", "0.000000"}}) {
    PlistArray yeasts;
    for (const char* y : c.yeasts) yeasts.append(yeast(y));
    const PlistDictionary recipe =
        with({{keys::YeastIngredients, yeasts}, {keys::WortFermentability, c.fermentability}});
    EXPECT_EQ(recipe.stringValue(keys::Attenuation), c.attenuation);
  }
}

// 5 kg at 80 % yield and 80 % efficiency are 3200 g of extract.
TEST_F(RecipeRecalculation, GravitiesOfAnAllGrainBeer) {
  const PlistDictionary recipe = with({{keys::FermentableIngredients, PlistArray{grain("5000")}},
                                       {keys::YeastIngredients, PlistArray{yeast("75")}}});
  EXPECT_EQ(recipe.stringValue(keys::ExpectedOriginalGravity), "1.123680");
  EXPECT_EQ(recipe.stringValue(keys::ExpectedPreBoilGravity), "1.103067");
  EXPECT_EQ(recipe.stringValue(keys::GravityForIBUCalcs), "1.103067");
  // 28.6174 degrees Plato, a quarter of them left: 260 / (260 - 7.1543).
  EXPECT_EQ(recipe.stringValue(keys::ExpectedFinalGravity), "1.028295");
  EXPECT_EQ(
      row(recipe, keys::FermentableIngredients, 0).stringValue(keys::GravityPointsForAddition),
      "123.680000");
}

TEST_F(RecipeRecalculation, WhatIsAddedWhenBurdensWhat) {
  const PlistDictionary recipe =
      with({{keys::FermentableIngredients,
             PlistArray{grain("1000"), adjunct("Honey", "Start Of Boil"),
                        adjunct("Honey", "End Of Boil"), adjunct("Honey", "whenever")}}});
  // 640 g from the mash, 1000 g each of the others.
  EXPECT_EQ(recipe.stringValue(keys::ExpectedPreBoilGravity), "1.020613");
  EXPECT_EQ(recipe.stringValue(keys::GravityForIBUCalcs), "1.052822");
  EXPECT_EQ(recipe.stringValue(keys::ExpectedOriginalGravity), "1.140686");
  EXPECT_EQ(recipe.stringValue(keys::ExpectedFinalGravity), "1.140686");  // no yeast
  EXPECT_EQ(recipe.stringValue(keys::ExpectedABV), "0.000000");
}

TEST_F(RecipeRecalculation, SugarFermentsOutAndLactoseStays) {
  const auto shift = [](PlistDictionary fermentable, const char* attenuation) {
    fermentable.set(keys::Amount, "100");
    PlistDictionary plain = fermentable;
    plain.set(keys::Ingredient, "Extract");
    const auto fg = [&](const PlistDictionary& addition) {
      return with({{keys::FermentableIngredients, PlistArray{grain("2000"), addition}},
                   {keys::YeastIngredients, PlistArray{yeast(attenuation)}}})
          .doubleValue(keys::ExpectedFinalGravity);
    };
    return (fg(fermentable) - fg(plain)) / (100 * 386.5 / 10000 / 1000);
  };
  EXPECT_NEAR(shift(adjunct("Corn Sugar/Dextrose", "Start Of Boil"), "80"), -0.2 - 0.225, 1e-3);
  EXPECT_NEAR(shift(adjunct("BROWN SUGAR", "In Mash/Steeped"), "80"), -0.2 - 0.225, 1e-3);
  EXPECT_NEAR(shift(adjunct("Milk sugar (lactose)", "Start Of Boil"), "80"), 1.225 - 0.425, 1e-3);
  EXPECT_NEAR(shift(adjunct("Lactose", "End Of Boil"), "80"), 1.225, 1e-3);
  EXPECT_EQ(shift(adjunct("Lactose", "End Of Boil"), "0.5"), 0);  // nothing ferments
  PlistDictionary sugarGrain = adjunct("Sugar Malt", "In Mash/Steeped");
  sugarGrain.set(keys::IsGrain, "1");
  EXPECT_EQ(shift(sugarGrain, "80"), 0);
}

TEST_F(RecipeRecalculation, WaterAddedThinsGravityColourAndBitternessAlike) {
  const PlistDictionary strong =
      with({{keys::FermentableIngredients, PlistArray{grain("4000")}},
            {keys::HopIngredients, PlistArray{hop("All Of Boil", "60")}}});
  PlistDictionary thin = strong;
  thin.set(keys::VolumeAtPitching, "20000");
  thin = recalculated(thin);
  EXPECT_EQ(thin.stringValue(keys::VolumeWaterAdded), "10000.000000");
  EXPECT_NEAR(thin.doubleValue(keys::ExpectedOriginalGravity) - 1,
              (strong.doubleValue(keys::ExpectedOriginalGravity) - 1) / 2, 1e-6);
  EXPECT_NEAR(thin.doubleValue(keys::ExpectedIBU), strong.doubleValue(keys::ExpectedIBU) / 2, 1e-6);
  const auto mcu = [](const PlistDictionary& recipe) {
    return row(recipe, keys::FermentableIngredients, 0).doubleValue(keys::MCUForAddition);
  };
  EXPECT_NEAR(mcu(thin), mcu(strong) / 2, 1e-6);
  EXPECT_EQ(thin.stringValue(keys::ExpectedPreBoilGravity),
            strong.stringValue(keys::ExpectedPreBoilGravity));
}

TEST_F(RecipeRecalculation, ColouringsColourOutsideTheFormula) {
  PlistDictionary colouring = adjunct("Colour", "End Of Boil");
  colouring.set(keys::Amount, "10");
  colouring.set(keys::Color, "2000");
  const PlistArray fermentables{grain("2000"), colouring};
  const double plain = with({{keys::FermentableIngredients, PlistArray{grain("2000")}}})
                           .doubleValue(keys::ExpectedColor);
  for (const int formula : {0, 1, 2}) {
    set(keys::BeerColorFormula, formula);
    const double base = with({{keys::FermentableIngredients, PlistArray{grain("2000")}}})
                            .doubleValue(keys::ExpectedColor);
    EXPECT_NEAR(
        with({{keys::FermentableIngredients, fermentables}}).doubleValue(keys::ExpectedColor),
        base + 2, 1e-5);
  }
  set(keys::BeerColorFormula, 0);
  const PlistDictionary recipe = with({{keys::FermentableIngredients, fermentables}});
  EXPECT_NEAR(row(recipe, keys::FermentableIngredients, 0).doubleValue(keys::MCUPercentage), 100,
              1e-4);
  EXPECT_GT(row(recipe, keys::FermentableIngredients, 1).doubleValue(keys::MCUPercentage), 0);
  EXPECT_EQ(row(recipe, keys::FermentableIngredients, 1).stringValue(keys::Percentage), "0.497512");
  EXPECT_NEAR(row(recipe, keys::FermentableIngredients, 0).doubleValue(keys::ColorForAdditionInSRM),
              plain + 2, 1e-5);
  EXPECT_NEAR(row(recipe, keys::FermentableIngredients, 0).doubleValue(keys::ColorForAdditionInEBC),
              (plain + 2) * 1.97, 1e-5);
}

TEST_F(RecipeRecalculation, ViggianoSumsTheGristAndAddsOneAboveATenth) {
  set(keys::BeerColorFormula, "3");
  const auto colourOf = [](double mcu) {
    PlistDictionary extract = adjunct("Extract", "Start Of Boil");
    extract.set(keys::Amount, 453.59);
    extract.set(keys::Color, mcu * 10000 / 3785.41);
    return with({{keys::FermentableIngredients, PlistArray{extract}}})
        .doubleValue(keys::ExpectedColor);
  };
  EXPECT_NEAR(colourOf(0.0999), 0.0999, 1e-6);
  EXPECT_NEAR(colourOf(0.1001), 1.1001, 1e-6);
  // In the mash by efficiency and yield: 0.8 * 0.8 of the MCU.
  PlistDictionary mashed = grain("4535.9");
  const double mcu = 3 * 10 / (10000 / 3785.41);
  EXPECT_NEAR(
      with({{keys::FermentableIngredients, PlistArray{mashed}}}).doubleValue(keys::ExpectedColor),
      mcu * 0.64 + 1, 1e-5);
}

TEST_F(RecipeRecalculation, HopsByTheirTime) {
  PlistDictionary recipe =
      with({{keys::SteepDuration, "20"},
            {keys::SteepTemperature, "90"},
            {keys::HopIngredients,
             PlistArray{hop("60 Min From End", "60"), hop("First Wort Hopped", "60"),
                        hop("In Mash", "60"), hop("At turn off", "0"), hop("Dry-Hopped", "0"),
                        hop("In Fermenter", "0")}}});
  const auto ibu = [&recipe](std::size_t i) {
    return row(recipe, keys::HopIngredients, i).doubleValue(keys::IBUForAddition);
  };
  // 1.0 is the gravity of water; the steep counts as 10 minutes.
  const auto tinseth = [](double minutes) {
    return 20 * 5 * 10 * 1.65 * (1 - std::exp(-0.04 * minutes)) / 4.15 / 10;
  };
  EXPECT_NEAR(ibu(0), tinseth(70), 1e-6);
  EXPECT_NEAR(ibu(1), tinseth(70) * 1.1, 1e-6);
  EXPECT_NEAR(ibu(2), tinseth(70) * 0.2, 1e-6);
  EXPECT_NEAR(ibu(3), tinseth(10), 1e-6);
  EXPECT_EQ(ibu(4), 0);
  EXPECT_EQ(ibu(5), 0);
  EXPECT_NEAR(recipe.doubleValue(keys::ExpectedIBU), tinseth(70) * 2.3 + tinseth(10), 1e-5);

  recipe.set(keys::SteepDuration, "0");
  recipe = recalculated(recipe);
  EXPECT_EQ(ibu(3), 0);
}

TEST_F(RecipeRecalculation, TheOldWordForPelletsIsReplacedAndCounts) {
  PlistDictionary old = hop("All Of Boil", "60");
  PlistDictionary whole = old;
  old.set(keys::Form, "Pelletized Hops");
  const PlistDictionary recipe = with({{keys::HopIngredients, PlistArray{old, whole}}});
  const PlistDictionary& pellets = row(recipe, keys::HopIngredients, 0);
  EXPECT_EQ(pellets.stringValue(keys::Form), "Loose Pellet Hops");
  EXPECT_NEAR(pellets.doubleValue(keys::IBUForAddition),
              row(recipe, keys::HopIngredients, 1).doubleValue(keys::IBUForAddition) * 1.1, 1e-6);
}

TEST_F(RecipeRecalculation, NothingWeighedIsNoNumber) {
  const PlistDictionary recipe = with({{keys::FermentableIngredients, PlistArray{grain("0")}}});
  EXPECT_EQ(row(recipe, keys::FermentableIngredients, 0).stringValue(keys::Percentage), "nan");
  EXPECT_EQ(recipe.stringValue(keys::ExpectedIBU), "0.000000");
  EXPECT_EQ(recipe.stringValue(keys::ExpectedColor), "0.000000");
}

TEST_F(RecipeRecalculation, RowsThatAreNoneArePassedOver) {
  const PlistDictionary recipe = with(
      {{keys::FermentableIngredients, PlistArray{1, grain("5000"), "x", PlistArray{grain("1")}}},
       {keys::HopIngredients, PlistDictionary{{keys::Alpha, "5"}}},
       {keys::YeastIngredients, 7}});
  EXPECT_EQ(recipe.stringValue(keys::ExpectedOriginalGravity), "1.123680");
  EXPECT_EQ(recipe.array(keys::FermentableIngredients)->size(), 4U);
}

TEST_F(RecipeRecalculation, ASecondTimeChangesNothing) {
  const PlistDictionary once = with(
      {{keys::FermentableIngredients, PlistArray{grain("4321"), adjunct("Sugar", "End Of Boil")}},
       {keys::HopIngredients, PlistArray{hop("In Mash", "60")}},
       {keys::YeastIngredients, PlistArray{yeast("72.3")}}});
  EXPECT_EQ(recalculated(once), once);
}

}  // namespace
}  // namespace zym
