#include "tests/interchange/ExchangeTest.h"
#include "tests/support/TextTable.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/SafeJSON.h"
#include "zymcore/interchange/beerxml/NSXMLNodeExtensions.h"
#include "zymcore/interchange/beerxml/ZYMBeerXML.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/platform/formats/NSXMLDocument.h"
#include "zymcore/platform/host/NSUserDefaults.h"

namespace zym {
namespace {

/// The values of a file by places such as "HOPS/1/USE": names of tags, and positions among those
/// of a list. The names of all tags of an element are at "HOPS/1/*".
class BeerXMLWriterTest : public ExchangeTest {
 protected:
  static PlistDictionary dictionaryOf(const std::string& JSON) {
    return *safeJSONObjectWithData_options(JSON, 0).value().dictionary();
  }
  static PlistDictionary lager() {
    ZYMWaters::sharedInstance().addItemsFromArray({dictionaryOf(
        R"({"UUID": "W", "Name": "Well", "Sulfate": "10", "Calcium": "20", "Magnesium": "30",
            "Chloride": "40", "Sodium": "50", "Carbonate": "60"})")});
    for (const std::string name : {"Wyeast 1056", "White Labs 1", "White Wyeast"}) {
      ZYMYeasts::sharedInstance().addItemsFromArray({dictionaryOf(
          R"({"Attenuation": "73", "YeastType": "Liquid", "BeerType": "Ale", "UUID": ")" + name +
          R"(", "Name": ")" + name + "\"}")});
    }
    PlistDictionary recipe = recipes().emptyRecipe();
    const PlistDictionary changes = dictionaryOf(R"({
        "MashType": "Extract with Mini-mash", "BoilDuration": "75.9", "FinalBatchVolume": "21000",
        "VolumeAtPitching": "20000", "VolumeToFermenter": "18000", "VolumeWaterAdded": "2000",
        "FinalWortVolume": "19000", "PreBoilWortVolume": "24000", "FermentationTemperature": "9.50",
        "BaseWaterProfileUsedUUID": "W", "CaSO4": "0.0001", "MgSO4": "0.0002", "CaCl2": "0.0003",
        "CaCO3": "0.0004", "NaCl": "0.0005", "NaHCO3": "0.0006",
        "Profile": {"WaterGrainRatio": "2.5", "MTThermalMass": "800"},
        "MashSchedule": {"ScheduleName": "All", "Steps": [
          {"StepType": "Heat to strike and dough in", "Temperature": "40", "Duration": "0"},
          {"StepType": "Rest at", "Temperature": "50.0", "Duration": "10"},
          {"StepType": "Raise by infusion to", "Temperature": "60.0", "Duration": "20.7"},
          {"StepType": "Pull decoction, boil, add back raising mash to", "Temperature": "70", "Duration": "30"},
          {"StepType": "Raise by direct heating to", "Temperature": "72", "Duration": "15"},
          {"StepType": "Raise to and Mash out at", "Temperature": "76", "Duration": "5"}]},
        "HopIngredients": [
          {"When": "First Wort Hopped", "Minutes": "90", "Form": "Loose Whole Hops", "Alpha": "3.5", "Amount": "12.5"},
          {"When": "In Hop-Back", "Minutes": "7", "Form": "Bagged Pellet Hops"},
          {"When": "In Fermenter", "Minutes": "7", "Form": "Loose Pellet Hops"},
          {"When": "Dry-Hopped", "Minutes": "7", "Form": "Bagged Whole Hops"},
          {"When": "In Mash", "Minutes": "90"},
          {"When": "20 Min From End", "Minutes": "20.9", "Form": "Pelletized Hops"}],
        "FermentableIngredients": [
          {"Ingredient": "Sugar of Grain", "IsGrain": "1", "Amount": "2000", "Extract": "75.5", "When": "In Mash/Steeped"},
          {"Ingredient": "Flaked Oats", "IsGrain": "0", "Amount": "2000", "When": "In Mash/Steeped"},
          {"Ingredient": "Flaked Sugar", "When": "Start Of Boil", "Amount": "1"},
          {"Ingredient": "Sugar Extract", "When": "Start Of Boil"},
          {"Ingredient": "Spraydried malt extract"}, {"Ingredient": "Honey", "When": "End Of Boil"}],
        "OtherIngredients": [{"Ingredient": "Salt", "When": "In Mash", "Amount": "5"},
          {"Ingredient": "irish moss", "When": "In Boil"}, {"Ingredient": "Plums", "When": "In Fermenter"},
          {"Ingredient": "Sugar", "When": "In Dispense Vessel"}, {"Ingredient": "Ginger", "When": "In Boil"}],
        "YeastIngredients": [{"UUID": "nowhere", "Name": "Wyeast", "Amount": "3"},
          {"UUID": "Wyeast 1056", "Amount": "2"}, {"UUID": "White Labs 1", "Amount": "2"},
          {"UUID": "White Wyeast", "Amount": "2", "YeastAmountType": "Slurry"}]})");
    for (const PlistEntry& change : changes) recipe.set(change.key, change.value);
    recipe.set(keys::RecipeTitle, "Tom & Jörg's <\"½\">\x01");
    recipe.set(keys::Notes, "One\u2028two\tœ 漢\xff");
    return recipe;
  }

  static std::string valueAt(const NSXMLDocument& document, const std::string& place) {
    std::optional<NSXMLNode> node =
        siblingWithName(document.rootElement().children().firstObject(), "RECIPE");
    std::istringstream parts(place);
    for (std::string part; node && std::getline(parts, part, '/');) {
      std::optional<NSXMLNode> child = node->children().firstObject();
      if (part == "*") {
        std::string names;
        for (const NSXMLNode& each : node->children()) names += std::string(each.name()) + " ";
        return names;
      }
      if (std::isdigit(part[0])) {
        for (int i = std::stoi(part); i > 0 && child; --i) child = child->nextSibling();
      } else {
        child = siblingWithName(child, part);
      }
      node = child;
    }
    return node ? std::string(node->stringValue()) : "absent";
  }
  static void expect(const PlistDictionary& recipe, const std::string& table) {
    const auto document = NSXMLDocument::initWithData_options(ZYMBeerXML::dataForRecipe(recipe),
                                                              NSXMLDocumentTidyXML);
    ASSERT_TRUE(document);
    for (const auto& [place, value] : rowsOf(table)) {
      EXPECT_EQ(valueAt(*document, place), value) << place;
    }
  }
};

// Grain in the mash 4000 g, so 10000 ml of water; to 60 °C by
// 1000 (10 x 10 / 40 + 0.8 + 4 x 0.32) = 4580 ml; the decoction is
// (1280 + 800 + 14580) / ((70 - 100) / (60 - 70) + 1) = 16660 / 4 = 4165 ml, so 18745 ml in all.
// The water: 24000 - (18745 - 4000) + 18745 + (21000 - 19000) = 30000 ml.
// An ion b of the well: (2000 b + 18000 (24000 / 19000) b) / 20000 = 1.236842 b.
TEST_F(BeerXMLWriterTest, WritesEachTagInItsUnits) {
  expect(lager(), R"(
      * -> NAME VERSION TYPE BREWER BATCH_SIZE BOIL_SIZE BOIL_TIME EFFICIENCY NOTES PRIMARY_TEMP EST_OG EST_FG EST_COLOR IBU EST_ABV HOPS FERMENTABLES YEASTS MISCS MASH STYLE WATERS  |
      NAME -> Tom & Jorg's <"1/2"> | VERSION -> 1 | TYPE -> Partial Mash |
      BREWER -> A Wortmeister Touch User | BATCH_SIZE -> 21.000000 | BOIL_SIZE -> 24.000000 |
      BOIL_TIME -> 75 | PRIMARY_TEMP -> 9.50 |
      HOPS/0/* -> NAME VERSION ALPHA AMOUNT NOTES USE TIME FORM  |
      HOPS/0/ALPHA -> 3.500000 | HOPS/0/AMOUNT -> 0.012500 | HOPS/0/USE -> First Wort |
      HOPS/0/NOTES -> First Wort Hopped | HOPS/0/TIME -> 90 | HOPS/0/FORM -> Leaf |
      HOPS/1/USE -> Aroma | HOPS/1/TIME -> 0 | HOPS/1/FORM -> Pellet | HOPS/2/USE -> Aroma |
      HOPS/2/TIME -> 0 | HOPS/2/FORM -> Pellet | HOPS/3/USE -> Dry Hop | HOPS/3/TIME -> 0 |
      HOPS/3/FORM -> Leaf | HOPS/4/USE -> Mash | HOPS/4/TIME -> 80 | HOPS/5/USE -> Boil |
      HOPS/5/TIME -> 20 | HOPS/5/FORM -> Pellet |
      FERMENTABLES/0/* -> NAME VERSION YIELD COLOR AMOUNT NOTES TYPE  |
      FERMENTABLES/0/TYPE -> Grain | FERMENTABLES/0/YIELD -> 75.500000 |
      FERMENTABLES/0/AMOUNT -> 2.000000 | FERMENTABLES/1/TYPE -> Adjunct |
      FERMENTABLES/2/TYPE -> Sugar | FERMENTABLES/3/TYPE -> Extract |
      FERMENTABLES/4/TYPE -> Dry Extract | FERMENTABLES/5/TYPE -> Grain |
      FERMENTABLES/5/NOTES -> End Of Boil |
      YEASTS/0/* -> TYPE TYPE LABORATORY PRODUCT_ID AMOUNT AMOUNT_IS_WEIGHT  |
      YEASTS/0/0 -> Ale | YEASTS/0/1 -> Dry | YEASTS/0/PRODUCT_ID -> Unknown |
      YEASTS/0/AMOUNT -> 0.030000 | YEASTS/0/AMOUNT_IS_WEIGHT -> TRUE |
      YEASTS/1/* -> NAME VERSION ATTENUATION FORM TYPE AMOUNT AMOUNT_IS_WEIGHT  |
      YEASTS/1/AMOUNT -> 0.270000 | YEASTS/1/AMOUNT_IS_WEIGHT -> FALSE |
      YEASTS/1/ATTENUATION -> 73.000000 | YEASTS/1/FORM -> Liquid | YEASTS/1/TYPE -> Ale |
      YEASTS/2/AMOUNT -> 0.070000 | YEASTS/3/AMOUNT -> 0.002000 |
      MISCS/0/* -> NAME VERSION TYPE NOTES USE TIME AMOUNT AMOUNT_IS_WEIGHT  |
      MISCS/0/TYPE -> Other | MISCS/0/USE -> Mash | MISCS/0/TIME -> 80 |
      MISCS/0/AMOUNT -> 0.005000 | MISCS/1/USE -> Boil | MISCS/1/TIME -> 15 |
      MISCS/2/USE -> Primary | MISCS/2/TIME -> 0 | MISCS/3/USE -> Bottling | MISCS/3/TIME -> 0 |
      MISCS/4/TIME -> 75 | MISCS/4/AMOUNT_IS_WEIGHT -> TRUE |
      MASH/* -> NAME VERSION GRAIN_TEMP MASH_STEPS  | MASH/NAME -> All | MASH/GRAIN_TEMP -> 20 |
      MASH/MASH_STEPS/0/* -> NAME VERSION  |
      MASH/MASH_STEPS/1/* -> NAME VERSION TYPE INFUSE_AMOUNT STEP_TEMP STEP_TIME RAMP_TIME  |
      MASH/MASH_STEPS/1/TYPE -> Infusion | MASH/MASH_STEPS/1/INFUSE_AMOUNT -> 0.0 |
      MASH/MASH_STEPS/1/STEP_TEMP -> 50.0 | MASH/MASH_STEPS/2/TYPE -> Infusion |
      MASH/MASH_STEPS/2/INFUSE_AMOUNT -> 4.580000 | MASH/MASH_STEPS/2/STEP_TIME -> 20.7 |
      MASH/MASH_STEPS/3/TYPE -> Decoction | MASH/MASH_STEPS/3/INFUSE_AMOUNT -> 4.165000 |
      MASH/MASH_STEPS/4/TYPE -> Temperature | MASH/MASH_STEPS/5/TYPE -> Temperature |
      MASH/MASH_STEPS/5/INFUSE_AMOUNT -> 0.0 | MASH/MASH_STEPS/5/RAMP_TIME -> 0 |
      STYLE/* -> CATEGORY NAME VERSION TYPE CATEGORY_NUMBER STYLE_LETTER OG_MIN OG_MAX IBU_MIN IBU_MAX COLOR_MIN COLOR_MAX FG_MIN FG_MAX  |
      WATERS/WATER/* -> NAME VERSION AMOUNT SULFATE CALCIUM MAGNESIUM CHLORIDE SODIUM BICARBONATE  |
      WATERS/WATER/NAME -> The Water Used | WATERS/WATER/AMOUNT -> 30.000000)");
}

// mg/l: what the salts bring, and 1.236842 times that of the well.
TEST_F(BeerXMLWriterTest, AddsTheSaltsToTheWater) {
  const auto document =
      NSXMLDocument::initWithData_options(ZYMBeerXML::dataForRecipe(lager()), NSXMLDocumentTidyXML);
  const double well = 23.5 / 19;
  const struct {
    const char* tag;
    double expected;
  } ions[] = {{"SULFATE", 55.76 + 78.2 + 10 * well}, {"CALCIUM", 23.27 + 109.2 + 160 + 20 * well},
              {"MAGNESIUM", 19.4 + 30 * well},       {"CHLORIDE", 190.8 + 301.5 + 40 * well},
              {"SODIUM", 164.4 + 198.5 + 50 * well}, {"BICARBONATE", 428.4 + 240 + 60 * well}};
  for (const auto& ion : ions) {
    EXPECT_NEAR(doubleValue(valueAt(*document, std::string("WATERS/WATER/") + ion.tag)),
                ion.expected, 2e-5)
        << ion.tag;
  }
}

TEST_F(BeerXMLWriterTest, StaysASCIIAndKeepsLines) {
  const std::string text(ZYMBeerXML::dataForRecipe(lager()).view());
  EXPECT_TRUE(isASCII(text));
  EXPECT_TRUE(
      text.starts_with("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<RECIPES>\n"
                       "\t<RECIPE>\n\t\t<NAME>Tom &amp; Jorg&apos;s &lt;&quot;1/2"));
  EXPECT_TRUE(text.ends_with("\n\t\t</WATERS>\n\t</RECIPE>\n</RECIPES>\n"));
  EXPECT_THAT(text, HasSubstr("<NOTES>One\ntwo\toe ?\?</NOTES>"));
  EXPECT_THAT(text, HasSubstr("\n\t\t\t\t<MASH_STEP>\n\t\t\t\t\t<NAME>"));
}

TEST_F(BeerXMLWriterTest, DividesTheStyle) {
  const auto styleNamed = [&](const char* name, std::int64_t set) {
    return ZYMStyles::sharedInstance().styleWithName_inGuidelines(name, set)->stringValue(
        keys::UUID);
  };
  PlistDictionary recipe{{keys::StyleUUID, styleNamed("Lite American Lager", 0)},
                         {keys::StyleGuidelinesSource, -3}};
  expect(recipe, R"(STYLE/CATEGORY -> '' | STYLE/NAME -> Lite American Lager | STYLE/TYPE -> Beer |
      STYLE/CATEGORY_NUMBER -> 1 | STYLE/STYLE_LETTER -> A | STYLE/OG_MIN -> 1.028 |
      STYLE/OG_MAX -> 1.040 | STYLE/IBU_MIN -> 8.0 | STYLE/COLOR_MAX -> 3.0 |
      STYLE/FG_MIN -> 1.007 | STYLE/FG_MAX -> 1.010)");
  recipe.remove(keys::StyleGuidelinesSource);
  recipe.set(keys::StyleUUID, styleNamed("American Light Lager", 1));
  expect(recipe, "STYLE/NAME -> American Light Lager");
  recipe.set(keys::StyleUUID, styleNamed("Pre-Prohibition Lager", 1));
  expect(recipe, R"(STYLE/CATEGORY -> Pre | STYLE/NAME -> Prohibition Lager |
      STYLE/CATEGORY_NUMBER -> 27 | STYLE/STYLE_LETTER -> F)");
  NSUserDefaults::standardUserDefaults().setObject_forKey(0, ZYMPreferredStyleGuidelinesKey);
  expect(recipe,
         "STYLE/NAME -> " + std::string(ZYMStyles::noChosenStyle().stringValue(keys::Name)));
}

// Of what is missing nothing is made up, but for the profile and the water that depends on it.
TEST_F(BeerXMLWriterTest, WritesARecipeOfNothing) {
  expect({}, R"(NAME -> '' | TYPE -> Partial Mash | BATCH_SIZE -> 0.000000 | HOPS/* -> '' |
      YEASTS/* -> '' | MASH/NAME -> '' | MASH/MASH_STEPS/* -> '' | WATERS/WATER/SODIUM -> nan)");
  const auto first = [](std::string_view type) {
    return dictionaryOf(R"({"MashSchedule": {"Steps": [{"Temperature": 66, "StepType": ")" +
                        std::string(type) + "\"}]}}");
  };
  for (const std::string_view type : {words::RaiseByInfusion, words::PullDecoction}) {
    expect(first(type),
           "MASH/MASH_STEPS/0/INFUSE_AMOUNT -> 0.000000 | MASH/MASH_STEPS/0/STEP_TEMP -> 66");
  }
  expect(first("unknown"), "MASH/MASH_STEPS/0/* -> NAME VERSION ");
}

// The schema is of the published tags; where the writer departs from them it says so.
TEST_F(BeerXMLWriterTest, FollowsTheSchema) {
  if (std::system("xmllint --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "no xmllint";
  const std::string schema = std::string(ZYM_FIXTURES) + "/../beerxml.xsd";
  std::string files;
  for (unsigned number = 0; number < 30; ++number) {
    files += " " + folder.file(std::to_string(number) + ".xml",
                               ZYMBeerXML::dataForRecipe(randomRecipe(number)).view());
  }
  EXPECT_EQ(std::system(
                ("xmllint --noout --schema " + schema + files + " 2>" + (folder / "log")).c_str()),
            0)
      << bytesOf(folder / "log");
}

}  // namespace
}  // namespace zym
