#include "tests/support/Store.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/library/recipes/ZYMRecipes.h"

namespace zym {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

constexpr KeyName allAdditions[] = {keys::FermentableIngredients, keys::HopIngredients,
                                    keys::OtherIngredients, keys::YeastIngredients};

class RecipeRepairs : public testing::WithStore {
 protected:
  static void addWaters() {
    ZYMWaters::sharedInstance().addItemsFromArray(
        {PlistDictionary{{keys::UUID, "burton"}, {keys::Name, "Burton"}},
         PlistDictionary{{keys::UUID, "none"}, {keys::Name, " None"}}});
  }
  static void addYeasts() {
    PlistArray yeasts;
    for (const char* uuid : {" None", "Ale", "Twice"}) {
      yeasts.append(
          PlistDictionary{{keys::UUID, uuid}, {keys::Name, uuid}, {keys::Attenuation, "74"}});
    }
    yeasts.append(PlistDictionary{{keys::UUID, "other"}, {keys::Name, "Twice"}});
    ZYMYeasts::sharedInstance().addItemsFromArray(yeasts);
  }
  static PlistDictionary current() {
    return R"({
        "BoilDuration": "60", "MashEfficiency": "75", "SteepTemperature": 66, "SteepDuration": "",
        "StyleGuidelinesSource": "1.000000", "StyleUUID": "", "WortFermentability": "Low",
        "TargetWaterProfileUsedUUID": "t", "BaseWaterProfileUsedUUID": "b",
        "Profile": {"BoilDuration": "", "ExtractEfficiency": ""},
        "FermentableIngredients": ["no addition", {"IngredientDeducted": "x"}],
        "HopIngredients": ["no addition", {"IngredientDeducted": "x"}],
        "OtherIngredients": ["no addition", {"IngredientDeducted": "x"}],
        "YeastIngredients": ["no addition", {"IngredientDeducted": "x"}]})"_json;
  }
};

TEST_F(RecipeRepairs, ACurrentDocumentStays) {
  addWaters();
  const PlistDictionary before = current();
  PlistDictionary withoutProfile = before;
  withoutProfile.remove(keys::Profile);
  for (const PlistDictionary& document : {before, withoutProfile}) {
    PlistDictionary recipe = document;
    EXPECT_TRUE(ZYMRecipes::ensureRecipeLatestVersion_inventoryAdjusted(recipe, true));
    EXPECT_EQ(recipe, document);
  }
}

TEST_F(RecipeRepairs, WhatIsMissingIsFilledIn) {
  addWaters();
  struct Case {
    KeyName key;
    std::optional<PlistValue> before;
    PlistValue after;
  };
  const Case cases[] = {
      {keys::BoilDuration, 60, "60"},
      {keys::BoilDuration, 60.9, "60"},
      {keys::BoilDuration, true, "1"},
      {keys::BoilDuration, PlistArray(), "0"},
      {keys::BoilDuration, std::nullopt, "0"},
      {keys::MashEfficiency, 0.1, "0.100000"},
      {keys::MashEfficiency, 123456789, "123456792.000000"},
      {keys::MashEfficiency, std::nullopt, "0.000000"},
      {keys::SteepTemperature, std::nullopt, "80"},
      {keys::SteepDuration, std::nullopt, "0"},
      {keys::StyleGuidelinesSource, std::nullopt, 0},
      {keys::StyleUUID, std::nullopt, ""},
      {keys::WortFermentability, std::nullopt, "Medium"},
      {keys::TargetWaterProfileUsedUUID, std::nullopt, "none"},
      {keys::BaseWaterProfileUsedUUID, std::nullopt, "none"},
      {keys::YeastIngredients, std::nullopt, PlistArray()},
      {keys::YeastIngredients, PlistArray{PlistDictionary()},
       PlistArray{PlistDictionary{{keys::IngredientDeducted, "0"}}}},
      {keys::Profile, PlistDictionary{{keys::BoilDuration, 90}},
       PlistDictionary{{keys::BoilDuration, "90"}, {keys::ExtractEfficiency, "0.000000"}}},
      {keys::Profile, PlistDictionary{{keys::BoilDuration, "90"}, {keys::ExtractEfficiency, 70}},
       PlistDictionary{{keys::BoilDuration, "90"}, {keys::ExtractEfficiency, "70.000000"}}}};
  for (const Case& c : cases) {
    PlistDictionary recipe = current();
    PlistDictionary expected = current();
    recipe.setOrRemove(c.key, c.before ? &*c.before : nullptr);
    expected.set(c.key, c.after);
    EXPECT_FALSE(ZYMRecipes::ensureRecipeLatestVersion(recipe)) << c.key.text();
    EXPECT_EQ(recipe, expected) << c.key.text();
    EXPECT_TRUE(ZYMRecipes::ensureRecipeLatestVersion(recipe)) << c.key.text();
  }
}

TEST_F(RecipeRepairs, StylesAndWatersAreFoundByName) {
  PlistDictionary recipe = current();
  recipe.remove(keys::TargetWaterProfileUsedUUID);
  recipe.remove(keys::BaseWaterProfileUsedUUID);
  recipe.set(keys::WaterProfileUsed, "Burton");
  const PlistDictionary withoutWaters = recipe;
  EXPECT_TRUE(ZYMRecipes::ensureRecipeLatestVersion(recipe));
  EXPECT_EQ(recipe, withoutWaters);
  addWaters();
  EXPECT_FALSE(ZYMRecipes::ensureRecipeLatestVersion(recipe));
  EXPECT_EQ(recipe.stringValue(keys::TargetWaterProfileUsedUUID), "burton");
  EXPECT_EQ(recipe.stringValue(keys::BaseWaterProfileUsedUUID), "none");

  for (const auto& [source, style, uuid] :
       {std::tuple("0.000000", "Munich Helles", "AAEEDA9A-F6C2-556C-8F8D-2F8BC12B2282"),
        std::tuple("1.000000", "Munich Helles", "5006A889-A9E2-56DC-9C1C-BF7694BECA9D"),
        std::tuple("1.000000", "Dortmunder Export", "")}) {
    recipe.set(keys::StyleGuidelinesSource, source);
    recipe.set(keys::Style, style);
    recipe.remove(keys::StyleUUID);
    EXPECT_FALSE(ZYMRecipes::ensureRecipeLatestVersion(recipe));
    EXPECT_EQ(recipe.stringValue(keys::StyleUUID), uuid);
  }
}

TEST_F(RecipeRepairs, TheOneYeastBecomesAnAddition) {
  addWaters();
  addYeasts();
  for (const std::string yeast : {" None", "Twice", "unknown", "Ale"}) {
    PlistDictionary recipe = current();
    recipe.remove(keys::YeastIngredients);
    recipe.set(keys::Yeast, yeast);
    recipe.set(keys::YeastAmount, "2");
    PlistDictionary expected = recipe;
    expected.set(keys::YeastIngredients, PlistArray());
    if (yeast == "Ale") {
      expected.editArray(keys::YeastIngredients)->append(R"({
          "Name": "Ale", "UUID": "Ale", "Attenuation": "74.000000", "Amount": "2",
          "YeastAmountType": "Commercial Pack", "UsageNote": "", "IngredientDeducted": "1"})"_json);
    }
    EXPECT_FALSE(ZYMRecipes::ensureRecipeLatestVersion_inventoryAdjusted(recipe, true));
    EXPECT_EQ(recipe, expected) << yeast;
  }
}

TEST_F(RecipeRepairs, AdditionsTakeOnTheStateOfTheirBatch) {
  addWaters();
  for (const KeyName key : allAdditions) {
    PlistDictionary recipe = current();
    recipe.editArray(key)->append(PlistDictionary());
    PlistDictionary batch{{keys::TastingNotes, ""},
                          {keys::AdjustedInventory, "1"},
                          {keys::ModifiedRecipe, recipe},
                          {keys::OriginalRecipe, recipe}};
    EXPECT_FALSE(ZYMRecipes::ensureBatchLatestVersion(batch));
    EXPECT_EQ(*batch.dictionary(keys::OriginalRecipe), recipe);
    recipe.editArray(key)->edit(2).editDictionary()->set(keys::IngredientDeducted, "1");
    EXPECT_EQ(*batch.dictionary(keys::ModifiedRecipe), recipe) << key.text();
  }
}

TEST_F(RecipeRepairs, ABatchWithoutTastingNotesGetsNothingElse) {
  PlistDictionary batch{{keys::ModifiedRecipe, PlistDictionary()}};
  EXPECT_TRUE(ZYMRecipes::ensureBatchLatestVersion(batch));
  EXPECT_EQ(batch,
            (PlistDictionary{{keys::ModifiedRecipe, PlistDictionary()}, {keys::TastingNotes, ""}}));
  EXPECT_FALSE(ZYMRecipes::ensureBatchLatestVersion(batch));
  EXPECT_EQ(batch.dictionary(keys::ModifiedRecipe)->stringValue(keys::BoilDuration), "0");
}

TEST(SaltWeights, AreWorkedOutInSinglePrecision) {
  struct Case {
    const char *toFermenter, *afterBoil, *atPitching, *salt, *weight;
  };
  for (const Case& c :
       {Case{"20000", "23000", "22000", "3.7", "93610.004695"}, Case{"0", "0", "0", "1", "nan"},
        Case{"1", "0", "1", "1", "0.000000"}, Case{"0", "1", "1", "1", "inf"},
        Case{"0", "1", "1", "-1", "-inf"}, Case{"0", "1", "1", "0", "nan"}}) {
    PlistDictionary recipe{{keys::VolumeToFermenter, c.toFermenter},
                           {keys::FinalWortVolume, c.afterBoil},
                           {keys::VolumeAtPitching, c.atPitching},
                           {keys::NaHCO3, c.salt}};
    ZYMRecipes::checkSaltWeightsExistInRecipe(recipe);
    EXPECT_EQ(recipe.stringValue(keys::NaHCO3InGrammes), c.weight);
    EXPECT_EQ(recipe.size(), 10);
  }
  PlistDictionary one{{keys::MgSO4InGrammes, ""}, {keys::CaCO3, "1"}};
  ZYMRecipes::checkSaltWeightsExistInRecipe(one);
  EXPECT_EQ(one.size(), 2);
}

PlistDictionary addition(PlistValue when, PlistValue amount, const char* name = "") {
  return {{keys::When, std::move(when)}, {keys::Amount, std::move(amount)}, {keys::Variety, name}};
}

std::string names(const PlistDictionary& recipe, KeyName key) {
  std::string result;
  for (const PlistDictionary& each : recipe.rows(key)) result += each.stringValue(keys::Variety);
  return result;
}

TEST(SortedIngredients, StandInTheOrderOfBrewing) {
  PlistDictionary interrupted = addition("Dry-Hopped", "9", "g");
  interrupted.set(keys::Amount2, 1);
  interrupted.set(keys::WhenIndex, 0);
  PlistDictionary recipe{
      {keys::HopIngredients,
       PlistArray{addition("never", "1", "i"), "no hop", interrupted,
                  addition("5 Min From End", "10", "c"), addition("5 Min From End", "9", "d"),
                  addition("5 Min From End", notANumber, "f"), addition(5, "2", "h"),
                  addition("5 Min From End", "9.0", "e"), addition("In Mash", "1", "a"),
                  addition("60 Min From End", "1", "b")}},
      {keys::OtherIngredients,
       PlistArray{addition("In Dispense Vessel", "1", "d"), addition("In Fermenter", "1", "c"),
                  addition("In Boil", "1", "b"), addition("In Mash", "1", "a")}},
      {keys::FermentableIngredients,
       PlistArray{addition("End Of Boil", "1", "c"), addition("Start Of Boil", "1", "b"),
                  addition("In Mash/Steeped", "1", "a")}},
      {keys::YeastIngredients, PlistArray{addition("", "1", "a"), addition("", "2", "b")}}};
  ZYMRecipes::sortIngredientsInRecipe(recipe);
  EXPECT_EQ(names(recipe, keys::HopIngredients), "abcdefghi");
  EXPECT_EQ(names(recipe, keys::OtherIngredients), "abcd");
  EXPECT_EQ(names(recipe, keys::FermentableIngredients), "abc");
  EXPECT_EQ(names(recipe, keys::YeastIngredients), "ab");
  EXPECT_EQ(recipe.array(keys::HopIngredients)->size(), 10);
  for (const PlistDictionary& hop : recipe.rows(keys::HopIngredients)) EXPECT_EQ(hop.size(), 3);
}

TEST(ValidatedIngredients, FermentablesHaveTheirShares) {
  for (const auto& [amount, first, second] :
       {std::tuple("1000", "25.000000", "75.000000"), std::tuple("0.0024", "0.000000", "0.000000"),
        std::tuple("0.0025", "25.000000", "75.000000")}) {
    PlistDictionary grain = addition("End Of Boil", amount);
    grain.set(keys::IsGrain, "1");
    PlistDictionary sugar = addition("End Of Boil", 3 * grain.doubleValue(keys::Amount));
    PlistDictionary recipe{{keys::FermentableIngredients, PlistArray{grain, false, sugar}}};
    grain.set(keys::When, "In Mash/Steeped");
    grain.set(keys::Percentage, first);
    sugar.set(keys::Percentage, second);
    ZYMRecipes::validateIngredientsInRecipe(recipe);
    EXPECT_EQ(*recipe.array(keys::FermentableIngredients), (PlistArray{grain, false, sugar}));
  }
}

TEST(ValidatedIngredients, HopsBoilNoLongerThanTheWort) {
  struct Case {
    std::optional<PlistValue> boil;
    PlistValue when;
    const char* fitted;
    PlistValue minutes;
  };
  const Case cases[] = {{"45", "90 Min From End", "45 Min From End", "45"},
                        {"60.5", "90 Min From End", "60 Min From End", "60"},
                        {"59.9", "60 Min From End", "55 Min From End", "55"},
                        {60, "In Mash", "In Mash", 60},
                        {"60 minutes", "All Of Boil", "All Of Boil", "60 minutes"},
                        {"60", "Whenever", "In Mash", "60"},
                        {"60", 7, "In Mash", "60"},
                        {"60", "Dry-Hopped", "Dry-Hopped", "0"},
                        {"0.5", "1 Min From End", "At turn off", "0"},
                        {"-1", "First Wort Hopped", "First Wort Hopped", "-1"},
                        {"-1", "90 Min From End", "Dry-Hopped", "0"},
                        {notANumber, "90 Min From End", "90 Min From End", "90"},
                        {std::nullopt, "All Of Boil", "All Of Boil", "0"},
                        {PlistArray(), "20 Min From End", "At turn off", "0"}};
  for (const Case& c : cases) {
    PlistDictionary recipe{{keys::HopIngredients, PlistArray{0, addition(c.when, "1")}}};
    recipe.setOrRemove(keys::BoilDuration, c.boil ? &*c.boil : nullptr);
    ZYMRecipes::validateHopsInRecipe(recipe);
    const PlistDictionary& hop = *recipe.array(keys::HopIngredients)->find(1)->dictionary();
    EXPECT_EQ(hop.stringValue(keys::When), c.fitted);
    EXPECT_EQ(*hop.find(keys::Minutes), c.minutes) << c.fitted;
  }
}

TEST(ZeroedIngredients, GoFromOneArrayACall) {
  PlistDictionary recipe{
      {keys::FermentableIngredients, PlistArray{addition("", "0.05")}},
      {keys::HopIngredients, PlistArray{addition("", "0.049"), addition("", 1), "no hop",
                                        PlistDictionary(), addition("", notANumber)}},
      {keys::OtherIngredients, PlistArray{addition("", "-1")}},
      {keys::YeastIngredients, PlistArray{addition("", "0")}}};
  PlistDictionary expected = recipe;
  for (const std::size_t zeroed : {3U, 0U})
    expected.editArray(keys::HopIngredients)->remove(zeroed);
  EXPECT_TRUE(ZYMRecipes::removeZeroedIngredientsInRecipe(recipe));
  EXPECT_EQ(recipe, expected);
  expected.set(keys::OtherIngredients, PlistArray());
  EXPECT_TRUE(ZYMRecipes::removeZeroedIngredientsInRecipe(recipe));
  EXPECT_FALSE(ZYMRecipes::removeZeroedIngredientsInRecipe(recipe));
  EXPECT_EQ(recipe, expected);
}

// Removing them one by one would take minutes.
TEST(ZeroedIngredients, MayBeMany) {
  PlistDictionary recipe{
      {keys::HopIngredients, PlistArray(std::vector<PlistValue>(200000, PlistDictionary()))}};
  ZYMRecipes::sortIngredientsInRecipe(recipe);
  EXPECT_TRUE(ZYMRecipes::removeZeroedIngredientsInRecipe(recipe));
  EXPECT_TRUE(recipe.array(keys::HopIngredients)->empty());
}

}  // namespace
}  // namespace zym
