#include "tests/support/Defaults.h"
#include "tests/support/Json.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Test.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/host/NSBundle.h"

namespace zym {
namespace {

using Changes = std::initializer_list<std::pair<KeyName, PlistValue>>;

PlistDictionary changed(PlistDictionary tree, Changes changes) {
  for (const auto& [key, value] : changes) tree.set(key, value);
  return tree;
}

// 10 l of wort, in which 1000 g of extract are 38.65 gravity points.
const PlistDictionary wort = R"({
    "PreBoilWortVolume": "12000", "FinalWortVolume": "10000", "VolumeToFermenter": "10000",
    "VolumeAtPitching": "10000", "FinalBatchVolume": "9000", "MashEfficiency": "80",
    "WortFermentability": "Medium", "SteepDuration": "0", "SteepTemperature": "80"})"_json;

PlistDictionary grain(const char* amount) {
  return changed(R"({"Ingredient": "Pale Malt", "Extract": "80", "Color": "3", "IsGrain": "1",
                     "When": "In Mash/Steeped"})"_json,
                 {{keys::Amount, amount}});
}
PlistDictionary adjunct(const char* name, const char* amount, const char* color = "0") {
  return changed(R"({"Extract": "100", "IsGrain": "0", "When": "Start Of Boil"})"_json,
                 {{keys::Ingredient, name}, {keys::Amount, amount}, {keys::Color, color}});
}
PlistDictionary yeast(const char* attenuation) {
  return {{keys::Attenuation, attenuation}};
}

// Examples worked out by hand. That every figure of any document is right is for the comparison
// with the second writing to show.
class Recalculation : public testing::WithDefaults {
 protected:
  static PlistDictionary recipeWith(Changes changes) {
    PlistDictionary recipe = changed(wort, changes);
    ZYMBeerCalculations::recalculateBeerRecipe(recipe);
    return recipe;
  }
};

// In the language of the user and in English, whatever the case; a sugar by an attenuation of 80
// takes 0.2 and 0.225 of its points out, lactose adds 1.225.
TEST_F(Recalculation, SugarFermentsOutAndLactoseStays) {
  const TemporaryFolder folder;
  (void)folder.file("de.lproj/Localizable.strings",
                    "<plist><dict><key>Sugar</key><string>Zucker</string><key>Lactose</key>"
                    "<string>Laktose</string></dict></plist>");
  NSBundle::setMainBundle(NSBundle(folder.path(), "org.zymcore.tests", "1"));
  const auto shift = [](const char* name, const char* attenuation, const char* isGrain = "0") {
    const auto fg = [&](const char* as) {
      const PlistDictionary addition = changed(adjunct(as, "100"), {{keys::IsGrain, isGrain}});
      return recipeWith({{keys::FermentableIngredients, PlistArray{grain("2000"), addition}},
                         {keys::YeastIngredients, PlistArray{yeast(attenuation)}}})
          .doubleValue(keys::ExpectedFinalGravity);
    };
    return (fg(name) - fg("Honey")) / (100 * 386.5 / 10000 / 1000);
  };
  struct Row {
    const char* name;
    const char* locale;
    double shift;
  };
  for (const Row& row :
       {Row{"Corn Sugar/Dextrose", "en_US", -0.425}, Row{"BROWN SUGAR", "de_DE", -0.425},
        Row{"Rohrzucker", "de_DE", -0.425}, Row{"Rohrzucker", "en_US", 0},
        Row{"Lactose", "de_DE", 1.225}, Row{"LAKTOSE", "de_DE", 1.225}, Row{"Laktose", "en_US", 0},
        Row{"Milk sugar (lactose)", "en_US", 0.8}, Row{"Milchzucker, Laktose", "de_DE", 0.8}}) {
    useLocale(row.locale);
    EXPECT_NEAR(shift(row.name, "80"), row.shift, 1e-3) << row.name << " " << row.locale;
    EXPECT_EQ(shift(row.name, "0.99"), 0) << "nothing ferments";
    EXPECT_EQ(shift(row.name, "80", "1"), 0) << "grain";
  }
  NSBundle::setMainBundle(NSBundle());
}

TEST_F(Recalculation, MashThicknessWithoutSparge) {
  set(keys::BoilingPoint, 100);
  const auto ratio = [](std::string_view second, std::string_view sparge, const char* malt) {
    const PlistDictionary schedule{
        {keys::Steps,
         PlistArray{
             PlistDictionary{{keys::StepType, words::RaiseByInfusion}, {keys::Temperature, "50"}},
             PlistDictionary{{keys::StepType, second}, {keys::Temperature, "60"}}}}};
    PlistDictionary batch{{keys::ModifiedRecipe,
                           PlistDictionary{{keys::PreBoilWortVolume, "25000"},
                                           {keys::FermentableIngredients, PlistArray{grain(malt)}},
                                           {keys::MashSchedule, schedule}}},
                          {keys::SpargeMethod, sparge},
                          {keys::MTThermalMass, "1000"},
                          {keys::WaterGrainRatio, "3.1"}};
    ZYMBeerCalculations::recalculateBatch(batch);
    return std::string(batch.stringValue(keys::WaterGrainRatio));
  };
  EXPECT_EQ(ratio(words::RestAt, words::NoSparge, "4000"), "7.250000");  // (25000 + 4000) / 4000
  // r is 10 / 40; 29 l less 0.32 of 4 kg and a tun of 1 l of water, each a quarter, over 1.25.
  EXPECT_EQ(ratio(words::RaiseByInfusion, words::NoSparge, "4000"), "5.686000");
  EXPECT_EQ(ratio(words::RestAt, words::NoSparge, "0.09"), "2.000000");
  EXPECT_EQ(ratio(words::RestAt, words::NoSparge, "0.1"), "250001.000000");
  EXPECT_EQ(ratio(words::RaiseByInfusion, words::FlySparge, "4000"), "3.1");
}

TEST_F(Recalculation, NothingInNothingOut) {
  PlistDictionary empty;
  ZYMBeerCalculations::recalculateBatch(empty);
  EXPECT_EQ(empty, PlistDictionary());
  PlistDictionary odd{{keys::ModifiedRecipe, PlistArray()},
                      {keys::Actuals, "none"},
                      {keys::SpargeMethod, words::NoSparge}};
  ZYMBeerCalculations::recalculateBatch(odd);
  EXPECT_EQ(odd.stringValue(keys::WaterGrainRatio), "2.000000");
  EXPECT_EQ(odd.stringValue(keys::Actuals), "none");
}

}  // namespace
}  // namespace zym
