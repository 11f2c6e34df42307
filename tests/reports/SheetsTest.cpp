#include "tests/reports/Pages.h"
#include "zymcore/library/ZYMWaters.h"

namespace zym {
namespace {

using testing::WithPages;

constexpr const char* valueKeys =
    "BeerColorInHex MinIBU MaxIBU MaxOG MinOG MaxFG MinFG MinColor MaxColor Category StyleName "
    "ExpectedPreBoilGravity ExpectedOriginalGravity ExpectedFinalGravity PreBoilWortVolume "
    "FinalWortVolume VolumeToFermenter VolumeWaterAdded VolumeAtPitching FinalBatchVolume "
    "ExpectedColor FermentationTemperature ApparentAttenuation ExpectedABV ExpectedABW "
    "MashEfficiency ExpectedIBU BUGURatio Formula ColorFormula BoilDuration FermentableItems "
    "HopItems OtherItems YeastItems ScheduleSteps Sulfate Calcium Magnesium Chloride Sodium "
    "Carbonate WaterProfileUsed MashpH Acid MashType ScheduleName Notes FontName ZoomFactor "
    "RecipeTitle SelectedStyleAndTargetSpecs ";
constexpr const char* batchKeys =
    "DateBrewed DateRacked DatePackaged DateReady BatchTitle ActualPreBoilGravity "
    "ActualOriginalGravity ActualFinalGravity ActualPreBoilWortVolume ActualFinalWortVolume "
    "ActualVolumeToFermenter ActualVolumeAtPitching ActualFinalBatchVolume ActualColor "
    "ActualApparentAttenuation ActualABV ActualABW ActualMashEfficiency ActualIBU "
    "ActualFermentationTemperature BatchNotes BoilNotes FermentationNotes PackagingNotes "
    "TastingNotes ";
// All that end in "Text"; those without a colon from "RecipeOverview" on.
constexpr const char* labelKeys =
    "MinimumOG MaximumOG MinimumFG MaximumFG MinimumIBU MaximumIBU MinimumColor MaximumColor "
    "WortVolumeBeforeBoil TargetWortVolumeBeforeBoil ActualWortVolumeBeforeBoil "
    "WortVolumeAfterBoil TargetWortVolumeAfterBoil ActualWortVolumeAfterBoil VolumeTransferred "
    "TargetVolumeTransferred ActualVolumeTransferred WaterAddedToFermenter VolumeAtPitching "
    "TargetVolumeAtPitching ActualVolumeAtPitching VolumeOfFinishedBeer "
    "TargetVolumeOfFinishedBeer ActualVolumeOfFinishedBeer ExpectedPreBoilGravity "
    "TargetPreBoilGravity ActualPreBoilGravity ExpectedOG TargetOG ActualOG ExpectedFG TargetFG "
    "ActualFG ApparentAttenuation TargetApparentAttenuation ActualApparentAttenuation ExpectedABV "
    "TargetABV ActualABV ExpectedABW TargetABW ActualABW ExpectedIBU TargetIBU ActualIBU "
    "ExpectedColor TargetColor ActualColor BUGURatio ApproxColor MashEfficiency "
    "TargetMashEfficiency ActualMashEfficiency BoilDuration FermentationTemperature "
    "TargetFermentationTemperature ActualFermentationTemperature TargetProfile PhAdjustedWith "
    "TotalCalcium TotalMagnesium TotalSodium TotalSulfate TotalChloride TotalBicarbonate "
    "RecipeOverview Using Fermentables Ingredient Amount When Hops Variety Alpha Form "
    "OtherIngredients Yeasts YeastStrain YeastUsage WaterProfile MashPh MashSchedule MashType "
    "ScheduleName StepType Temperature Duration Step For Minutes RecipeNotes GeneralNotes "
    "MashNotes BoilNotes FermentationNotes PackagingNotes TastingNotes Dates DateBrewed "
    "DateRacked DatePackaged DateReady ";

PlistDictionary fullRecipe() {
  return R"({"RecipeTitle": "Tom & Jerry <3", "StyleUUID": "gone", "StyleGuidelinesSource": "1",
    "MashType": "Full Mash", "MashEfficiency": "75", "BoilDuration": "60", "MashpH": "5.2",
    "PreBoilWortVolume": "30000", "FinalWortVolume": "25000", "VolumeToFermenter": "20000",
    "VolumeAtPitching": "25000", "FinalBatchVolume": "24000", "Acid": "Unadjusted",
    "FermentationTemperature": "20", "BaseWaterProfileUsedUUID": "base", "CaSO4": "1",
    "TargetWaterProfileUsedUUID": "none", "NaHCO3": "0.5", "CaCl2": "2", "NaCl": "0.4",
    "CaCO3": "0.3", "MgSO4": "0.6", "Notes": "a < b\n\"c\"",
    "FermentableIngredients": [{"Ingredient": "Pale & <*KEYNAME=Amount>", "Amount": "5000",
      "When": "In Mash/Steeped", "Extract": "80", "Color": "3", "IsGrain": "1"},
      {"Ingredient": "Odd", "Amount": "5", "When": "Some <time>"}],
    "HopIngredients": [{"Variety": "Fuggle", "Amount": "30", "Alpha": "5", "Minutes": "60",
      "Form": "Loose Pellet Hops", "When": "60 Min From End"}],
    "OtherIngredients": [{"Ingredient": "Moss", "Amount": "5", "When": "In Boil"}],
    "YeastIngredients": [{"Name": "A", "Amount": "1"}, {"Name": "B", "Amount": "3.9"},
      {"Name": "C", "Amount": "250", "YeastAmountType": "Slurry"}],
    "MashSchedule": {"ScheduleName": "One & all", "Steps": [
      {"StepType": "Rest at", "Temperature": "66", "Duration": "60"}]}})"_json;
}

class Sheets : public WithPages {
 protected:
  Sheets() {
    set(keys::PelletHopAdjustment, 1);
    putTemplate("FermentableItem",
                "[<*KEYNAME=Ingredient>|<*KEYNAME=Amount>|<*KEYNAME=When>|"
                "<*KEYNAME=MCUForAddition>|<*KEYNAME=Percentage>]");
    putTemplate("HopItem",
                "[<*KEYNAME=Variety>|<*KEYNAME=Amount>|<*KEYNAME=When>|<*KEYNAME=Form>|"
                "<*KEYNAME=Alpha>|<*KEYNAME=IBUForAddition>]");
    putTemplate("OtherItem", "[<*KEYNAME=Ingredient>|<*KEYNAME=Amount>|<*KEYNAME=When>]");
    putTemplate("YeastItem", "[<*KEYNAME=Name>|<*KEYNAME=Amount>]");
    putTemplate("ScheduleStep", "[<*KEYNAME=StepType>|<*KEYNAME=Temperature>|<*KEYNAME=StepText>]");
    ZYMWaters::sharedInstance().addItemsFromArray({R"({"UUID": "base", "Name": "Base",
      "Sulfate": "50", "Calcium": "40", "Magnesium": "10", "Chloride": "20", "Sodium": "15",
      "Carbonate": "100"})"_json});
  }
  /// The value of each key that the sheet fills with something.
  std::map<std::string, std::string> filledKeys(PlistDictionary item, std::int64_t type,
                                                const std::string& names) {
    static constexpr const char* templates[] = {"HTMLTemplate-Recipe", "HTMLTemplate-Batch",
                                                "HTMLTemplate-Recipe-Clipboard",
                                                "HTMLTemplate-Batch-Clipboard"};
    std::string text;
    std::istringstream all(names);
    for (std::string name; std::getline(all, name, ' ');) {
      text += name + "\x1e" + marker(name) + "\x1f";
    }
    putTemplate(templates[type], text);
    std::map<std::string, std::string> values;
    std::istringstream page(ZYMHTML::renderItemToHTML_type(item, type));
    for (std::string row; std::getline(page, row, '\x1f');) {
      const std::size_t at = row.find('\x1e');
      if (at + 1 < row.size()) values[row.substr(0, at)] = row.substr(at + 1);
    }
    return values;
  }
};

std::string withText(std::string names) {
  return std::regex_replace(names, std::regex(" "), "Text ");
}

TEST_F(Sheets, FillEveryKey) {
  const std::string names = std::string(valueKeys) + withText(labelKeys);
  PlistDictionary batch{{keys::ModifiedRecipe, fullRecipe()},
                        {keys::Actuals, R"({"OGHydroReading": "1.060", "FGHydroReading": "1.012",
                          "OGTemp": "15", "FGTemp": "15", "HydrometerCalibratedAt": "15"})"_json}};
  for (const KeyName key :
       {keys::DateBrewed, keys::DateRacked, keys::DatePackaged, keys::DateReady}) {
    batch.set(key, NSDate::dateWithTimeIntervalSinceReferenceDate(0));
  }
  for (const char* key : {"BatchTitle", "BatchNotes", "BoilNotes", "FermentationNotes",
                          "PackagingNotes", "TastingNotes"}) {
    batch.set(KeyName(key), "x\ny");
  }
  const auto recipe = filledKeys(fullRecipe(), 0, names);
  const auto brewed = filledKeys(batch, 1, names + batchKeys);
  std::istringstream all(names + batchKeys);
  int batchOnly = 0;
  for (std::string name; std::getline(all, name, ' ');) {
    // A style that is gone has neither category nor, in the recipe, anything but zeros.
    if (name == "Category") continue;
    EXPECT_TRUE(brewed.contains(name)) << name;
    if (!recipe.contains(name)) ++batchOnly;
  }
  EXPECT_EQ(batchOnly, 25);
  EXPECT_EQ(recipe.at("SelectedStyleAndTargetSpecs"), "Selected Style and Target Specs");
  EXPECT_EQ(recipe.at("ExpectedPreBoilGravityText"), "Expected Pre-Boil Gravity:");
  EXPECT_EQ(recipe.at("TotalSulfateText"), "Total Sulfate (ppm):");
  EXPECT_EQ(recipe.at("YeastUsageText"), "Used");
  EXPECT_EQ(brewed.at("ActualPreBoilGravity"), "-No Record-");
  EXPECT_EQ(brewed.at("ActualOriginalGravity"), "1.060 SG");
  EXPECT_EQ(brewed.at("BatchNotes"), "x&nbsp;<br>y");
}

TEST_F(Sheets, NameLabelsByTheirWords) {
  const auto labels = filledKeys(fullRecipe(), 0, withText(labelKeys));
  const auto letters = [](std::string text) {
    std::erase_if(text, [](unsigned char c) { return !std::isalpha(c); });
    std::transform(text.begin(), text.end(), text.begin(), ::tolower);
    return text;
  };
  bool hasColon = true;
  std::istringstream all(labelKeys);
  for (std::string name; std::getline(all, name, ' ');) {
    hasColon = hasColon && name != "RecipeOverview";
    const std::string text = labels.at(name + "Text");
    EXPECT_EQ(text.ends_with(':'), hasColon) << name;
    if (name == "YeastUsage") continue;
    // Short words of the longer names: "Temp", "ppm".
    EXPECT_TRUE(letters(name).starts_with(letters(text)) ||
                letters(text) == letters(name) + (name.starts_with("Total") ? "ppm" : "with"))
        << name << " " << text;
  }
}

TEST_F(Sheets, ShowNoGravityThatIsThatOfWater) {
  const auto gravities = [&](const char* sg) {
    const PlistDictionary recipe{{keys::ExpectedOriginalGravity, sg}, {keys::ExpectedIBU, "11"}};
    const auto values = filledKeys({{keys::ModifiedRecipe, recipe},
                                    {keys::Actuals, PlistDictionary{{keys::OGHydroReading, sg}}}},
                                   1, "BUGURatio ActualOriginalGravity ");
    return values.at("BUGURatio") + " " + values.at("ActualOriginalGravity");
  };
  EXPECT_EQ(gravities("1.001"), "- -No Record-");
  EXPECT_EQ(gravities("1.0011"), "10.00 1.001 SG");
}

TEST_F(Sheets, ShowFiguresAndTextsAsTheyAre) {
  const auto values = filledKeys(fullRecipe(), 0, valueKeys);
  const std::pair<const char*, const char*> rows[] = {
      {"RecipeTitle", "Tom &amp; Jerry &lt;3"},
      {"Notes", "a &lt; b&nbsp;<br>&quot;c&quot;"},
      {"StyleName", "No Style Chosen"},
      {"MinIBU", "0"},
      {"MaxOG", "0.000 SG"},
      {"VolumeToFermenter", "20.00 l"},
      {"VolumeWaterAdded", "5.00 l"},
      {"FermentationTemperature", "20 ˚C"},
      {"MashEfficiency", "75.0 %"},
      {"BoilDuration", "60.0 mins"},
      {"Formula", "Tinseth"},
      {"ColorFormula", "Morey"},
      {"MashType", "Full Mash"},
      {"ScheduleName", "One &amp; all"},
      // (ion * 30000 / 25000 * 20000 + ion * 5000) / 25000 = 1.16 * ion, and the salts in mg/l, of
      // which there are too many to overlook a digit
      {"Sulfate", "792258"},    // 58 + 557600 + 234600
      {"Calcium", "1080746"},   // 46.4 + 232700 + 728000 + 120000
      {"Magnesium", "58212"},   // 11.6 + 58200
      {"Chloride", "1513223"},  // 23.2 + 1272000 + 241200
      {"Sodium", "295817"},     // 17.4 + 137000 + 158800
      {"Carbonate", "537116"},  // 116 + 357000 + 180000
      {"WaterProfileUsed", "Unknown Target Water"},
      {"YeastItems", "[A|1 pack][B|3 packs][C|250 ml]"},
      {"OtherItems", "[Moss|5.00 g|In Boil]"},
      {"ScheduleSteps", "[Rest at|66 ˚C|60]"},
  };
  for (const auto& [key, text] : rows) EXPECT_EQ(values.at(key), text) << key;
  EXPECT_THAT(values.at("FermentableItems"),
              ::testing::MatchesRegex("\\[Pale &amp; &lt;\\*KEYNAME=Amount&gt;\\|5.000 kg\\|In "
                                      "Mash/Steeped\\|[0-9.]+\\|99.9 %\\]\\[Odd\\|5.00 g\\|Some "
                                      "&lt;time&gt;\\|0.0\\|0.1 %\\]"));
  EXPECT_THAT(
      values.at("HopItems"),
      ::testing::MatchesRegex("\\[Fuggle\\|30 g\\|60 Min From End\\|Loose Pellet Hops\\|5.0 "
                              "%\\|[1-9][0-9].[0-9]\\]"));
  // 5 kg of 80 % at 75 %: 3000 g in 25 l, thinned to 0.8, times 386.5: 1.0371
  EXPECT_EQ(values.at("ExpectedOriginalGravity"), "1.037 SG");
  const auto units = [&] {
    PlistDictionary recipe = fullRecipe();
    putTemplate("HTMLTemplate-Recipe", marker("Gravity Unit") + " " + marker("Color Unit"));
    return ZYMHTML::renderRecipeToHTMLForWeb(recipe);
  };
  EXPECT_EQ(units(), "SG SRM");
  set(keys::GravityUnits, 1);
  set(keys::ColorUnit, 1);
  EXPECT_EQ(units(), "Plato EBC");
  useLocale("de_DE");
  const auto german = filledKeys(fullRecipe(), 0, std::string(valueKeys) + "MashTypeText ");
  EXPECT_EQ(german.at("MashTypeText"), "Art des Rezepts");
  EXPECT_EQ(german.at("Acid"), "Nicht eingestellt");
  EXPECT_EQ(german.at("OtherItems").substr(0, 13), "[Moss|5,00 g|");
  EXPECT_EQ(german.at("MaxOG"), "-");
}

TEST_F(Sheets, ShowWhereAFigureStandsInItsStyle) {
  const std::string names =
      "Category MinIBU MaxOG MinColor OriginalGravityPlace BitternessPlace ColorPlace ";
  const auto places = [&](const char* uuid) {
    PlistDictionary recipe = fullRecipe();
    recipe.set(keys::StyleUUID, uuid);
    std::string text;
    for (const auto& [name, value] : filledKeys(recipe, 0, names)) text += value + " ";
    return text;
  };
  // 37.1 of 28 to 40, and of 75 to 115; 12.2 IBU of 8 to 12, and of 50 to 90; 3.9 SRM of 2 to 3
  EXPECT_EQ(places("87ACE380-2736-5B27-B6B9-01D9113821DA"), "78 1A 100 1.040 SG 2.0 SRM 8.0 63 ");
  EXPECT_EQ(places("FADFE522-2982-5A73-9B00-E19EE9A87EE7"), "0 20C 0 1.115 SG 30.0 SRM 50.0 0 ");
  EXPECT_EQ(places("gone"), "0.000 SG 0.0 SRM 0 ");
  set(keys::HopFormula, 4);
  set(keys::BeerColorFormula, -1);
  EXPECT_TRUE(filledKeys(fullRecipe(), 0, "Formula ColorFormula ").empty());
}

TEST_F(Sheets, RowsSpeakTheLanguageOfTheUser) {
  useLocale("de_DE");
  std::string text;
  for (const auto& [name, value] :
       filledKeys(fullRecipe(), 0, "FermentableItems HopItems OtherItems ScheduleSteps ")) {
    text += value;
  }
  for (const char* word :
       {"|In der Maische/eingeweicht|", "|60 Min. vor Ende|", "|Beim Kochen]", "[Rast bei|"}) {
    EXPECT_THAT(text, ::testing::HasSubstr(word));
  }
}

TEST_F(Sheets, ForTheClipboardArePlainText) {
  PlistDictionary recipe = fullRecipe();
  recipe.set(keys::RecipeTitle, "<b>&\x01\x03</b> <*KEYNAME=FontName>");
  putTemplate("YeastItem-Clipboard", "<*KEYNAME=Name> ");
  const auto values = filledKeys(recipe, 2, valueKeys);
  EXPECT_EQ(values.at("RecipeTitle"), "<b>&\x01\x03</b> <*KEYNAME=FontName>");
  EXPECT_EQ(values.at("YeastItems"), "A B C ");
  EXPECT_FALSE(values.contains("HopItems"));
  EXPECT_EQ(values.at("Notes"), "a < b&nbsp;<br>\"c\"");
}

TEST_F(Sheets, RecalculateTheDocumentAndStandWhateverItHolds) {
  PlistDictionary recipe = fullRecipe();
  putTemplate("HTMLTemplate-Recipe", marker("BUGURatio"));
  const std::string ratio = ZYMHTML::renderRecipeToHTMLForWeb(recipe);
  EXPECT_NEAR(std::stod(ratio),
              recipe.doubleValue(keys::ExpectedIBU) /
                  (recipe.doubleValue(keys::ExpectedOriginalGravity) * 1000 - 1000),
              0.005);
  recipe.set(keys::FermentableIngredients, PlistArray());
  EXPECT_EQ(ZYMHTML::renderRecipeToHTMLForWeb(recipe), "-");

  const std::string names = std::string(valueKeys) + batchKeys;
  const PlistValue odd[] = {PlistArray{1, "x"},
                            PlistDictionary{{keys::Amount, 1}},
                            NSDate::date(),
                            NAN,
                            true,
                            "1e400",
                            std::string(1U << 20U, '<')};
  for (const PlistValue& value : odd) {
    PlistDictionary broken = fullRecipe();
    for (std::size_t i = 0; i < broken.size(); ++i) broken.editAt(i) = value;
    PlistDictionary rows = fullRecipe();
    for (const KeyName key : keys::additions) {
      for (PlistDictionary& row : rows.editRows(key)) {
        for (std::size_t i = 0; i < row.size(); ++i) row.editAt(i) = value;
      }
    }
    for (const PlistDictionary& one : {broken, rows}) {
      for (const auto& [key, text] : filledKeys(one, 0, names)) {
        if (text.size() > 1000) continue;
        for (const char* bad : {"nan", "inf", "NaN", "∞", "- %", "- mins"})
          EXPECT_THAT(text, Not(HasSubstr(bad))) << key;
      }
      (void)filledKeys({{keys::ModifiedRecipe, one}, {keys::Actuals, one}}, 1, names);
      (void)filledKeys({{keys::ModifiedRecipe, value}, {keys::Actuals, value}}, 3, names);
    }
  }
}

TEST_F(Sheets, AreEmptyWithoutTheirTemplates) {
  PlistDictionary recipe = fullRecipe();
  EXPECT_EQ(ZYMHTML::renderRecipeToHTMLForWeb(recipe), "");
  std::filesystem::remove(folder / "bundle/HopItem.html");
  putTemplate("OtherItem", "");
  const auto values = filledKeys(recipe, 0, valueKeys);
  EXPECT_FALSE(values.contains("HopItems"));
  EXPECT_FALSE(values.contains("OtherItems"));
  EXPECT_TRUE(values.contains("YeastItems"));
}

}  // namespace
}  // namespace zym
