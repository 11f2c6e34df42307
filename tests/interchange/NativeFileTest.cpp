#include "tests/interchange/ExchangeTest.h"
#include "tests/support/TextTable.h"
#include "zymcore/documents/SafeJSON.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/interchange/native/ZYMIngFile.h"
#include "zymcore/interchange/native/ZYMWortmeisterWMRFile.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/host/NSUserDefaults.h"

namespace zym {
namespace {

using WMR = ZYMWortmeisterWMRFile;

NSDate day(int number) {
  return NSDate::dateWithTimeIntervalSince1970(number * 86400.0);
}

class NativeFileTest : public ExchangeTest {
 protected:
  static std::optional<PlistDictionary> read(const PlistValue& list) {
    return WMR::parseFileData(NSData(NSPropertyListSerialization::dataWithPropertyList_format(
                                         list, NSPropertyListFormat::XMLFormat_v1_0)
                                         .value()));
  }
  static void expect(const PlistDictionary& record, const char* table) {
    for (const auto& [key, value] : rowsOf(table)) {
      const std::string* text = record.string(KeyName(key));
      EXPECT_EQ(text ? *text : "absent", value) << key;
    }
  }
  static PlistDictionary dictionaryOf(const std::string& JSON) {
    return *safeJSONObjectWithData_options(JSON, 0).value().dictionary();
  }
  /// As it was written when keys had blanks.
  static PlistDictionary oldRecipe() {
    return dictionaryOf(
        R"({"Recipe Title": "Old Peculiar", "Attenuation": 75, "Notes": "", "CaCl2": "0.0",
        "Style": "American Light Lagers", "Final Batch Volume": "20000", "Final Wort Volume": "18000",
        "Mash Schedule": {"Schedule Name": "Plain", "Steps": [{"Step Type": "none"}, {"Step Type": "Rest at"}]}})");
  }
};

TEST_F(NativeFileTest, BringsAnOldRecipeUpToDate) {
  const PlistDictionary recipe = read(oldRecipe()).value();
  expect(recipe,
         R"(RecipeTitle -> Old Peculiar | Recipe Title -> absent | Attenuation -> 75.000000 |
      YeastAmount -> 1 | VolumeAtPitching -> 20000 | VolumeToFermenter -> 18000 |
      VolumeWaterAdded -> 2000.000000 | SteepTemperature -> 80)");
  const auto style =
      ZYMStyles::sharedInstance().styleWithName_inGuidelines("American Light Lager", 1);
  EXPECT_EQ(recipe.stringValue(keys::StyleUUID), style->stringValue(keys::UUID));
  EXPECT_EQ(recipe.integerValue(keys::StyleGuidelinesSource), 1);
  EXPECT_EQ(recipe.stringValue(keys::CarbonationVolumes),
            style->stringValue(keys::CarbonationVolumes));
  EXPECT_TRUE(*recipe.date(keys::DateLastModified) > day(18000));
  const PlistDictionary& schedule = *recipe.dictionary(keys::MashSchedule);
  expect(schedule, "ScheduleName -> Plain | Version -> 3");
  ASSERT_EQ(count(schedule, keys::Steps), 1U);
  EXPECT_EQ(schedule.rows(keys::Steps).begin()->stringValue(keys::StepType), words::RestAt);
  for (const KeyName mark : {keys::Attenuation, keys::Notes, keys::CaCl2}) {
    PlistDictionary none = oldRecipe();
    none.remove(mark);
    EXPECT_FALSE(read(none)) << mark.text();
  }
  EXPECT_FALSE(read(PlistArray{oldRecipe()}));
}

TEST_F(NativeFileTest, UpdatesASchedule) {
  const struct {
    std::optional<PlistValue> version;
    std::size_t steps;
    const char* blank;
  } cases[] = {{std::nullopt, 1, "absent"},
               {"1", 1, "absent"},
               {2, 2, "absent"},
               {"3", 2, "x"},
               {"7", 2, "x"}};
  for (const auto& c : cases) {
    PlistDictionary schedule{{KeyName("A Key"), "x"},
                             {keys::Steps, PlistArray{PlistDictionary(), PlistDictionary()}}};
    if (c.version) schedule.set(keys::Version, *c.version);
    WMR::updateSchedule(schedule);
    EXPECT_EQ(count(schedule, keys::Steps), c.steps);
    expect(schedule, "Version -> 3");
    EXPECT_EQ(schedule.contains(KeyName("A Key")), std::string(c.blank) == "x");
    EXPECT_EQ(schedule.contains(keys::DateLastModified), std::string(c.blank) != "x");
  }
  PlistDictionary none;
  WMR::updateSchedule(none);
  expect(none, "Version -> 3");
}

TEST_F(NativeFileTest, KeepsVolumesThatAreThere) {
  PlistDictionary larger{{keys::FinalBatchVolume, "18.5"}, {keys::FinalWortVolume, "20"}};
  WMR::checkVolumesForRecipe(larger);
  expect(larger,
         "VolumeAtPitching -> 18.5 | VolumeToFermenter -> 18.5 | VolumeWaterAdded -> 0.000000");
  PlistDictionary equal{{keys::FinalBatchVolume, "20"},
                        {keys::FinalWortVolume, "20.0"},
                        {keys::VolumeAtPitching, "9"}};
  WMR::checkVolumesForRecipe(equal);
  expect(equal, "VolumeAtPitching -> 9 | VolumeToFermenter -> 20.0 | VolumeWaterAdded -> 0.000000");
}

TEST_F(NativeFileTest, BringsOldBatchesUpToDate) {
  NSUserDefaults::standardUserDefaults().setObject_forKey("Batch Sparge",
                                                          keys::PreferredSpargeMethod);
  PlistDictionary brewed = oldRecipe();
  brewed.set(KeyName("Final Batch Volume"), "19000");
  brewed.set(keys::ExpectedColor, "12.5");
  PlistDictionary measured = dictionaryOf(R"({"UUID": "OWN", "PreBoilHydroReading": "1.040",
      "OG Hydro Reading": "1.050", "MeasuredPreBoil Grav": "1.041", "Measured OG": "1.051",
      "Actual Mash Efficiency": "77", "ABV": "5.5", "ExpectedIBU": "30"})");
  measured.set(keys::RecipeAtCreation, brewed);
  measured.set(keys::DateLastModified, day(1));
  measured.set(keys::DateBrewed, day(20));
  measured.set(keys::DateRacked, day(10));
  measured.set(keys::DatePackaged, day(30));
  PlistDictionary recipe = oldRecipe();
  recipe.set(keys::Batches, PlistArray{measured, PlistDictionary(), "no batch"});
  const PlistDictionary read = NativeFileTest::read(recipe).value();
  ASSERT_EQ(count(read, keys::Batches), 3U);
  const PlistDictionary& first = *read.array(keys::Batches)->find(0)->dictionary();
  expect(first,
         R"(BatchTitle -> Batch 1 of Old Peculiar | UUID -> OWN | SpargeMethod -> Batch Sparge |
      BatchNotes -> '' | RoomTemperature -> 15.0 | AdjustedInventory -> 0 |
      PreBoilHydroReading -> absent | OGHydroReading -> absent | MeasuredPreBoilGrav -> absent |
      MeasuredOG -> absent | ExpectedIBU -> absent)");
  EXPECT_FALSE(first.contains(keys::RecipeAtCreation));
  EXPECT_TRUE(*first.date(keys::DateLastModified) > day(18000));
  EXPECT_TRUE(*first.date(keys::DateRacked) == day(20));
  EXPECT_TRUE(*first.date(keys::DatePackaged) == day(30));
  EXPECT_TRUE(*first.date(keys::DateReady) > day(18000));
  expect(*first.dictionary(keys::ModifiedRecipe), R"(FinalBatchVolume -> 19000 | YeastAmount -> 1 |
      VolumeAtPitching -> 19000 | VolumeToFermenter -> 18000)");
  EXPECT_EQ(
      count(*first.dictionary(keys::ModifiedRecipe)->dictionary(keys::MashSchedule), keys::Steps),
      1U);
  expect(*first.dictionary(keys::OriginalRecipe),
         "FinalBatchVolume -> 20000 | VolumeToFermenter -> 18000");
  expect(*first.dictionary(keys::Actuals),
         R"(PreBoilHydroReading -> 1.040 | OGHydroReading -> 1.050 |
      FGHydroReading -> 1.000 | PreBoilTemp -> 15.0 | VolumeAtPitching -> 19000)");
  const PlistDictionary& second = *read.array(keys::Batches)->find(1)->dictionary();
  expect(second, "BatchTitle -> Batch 2 of Old Peculiar");
  EXPECT_EQ(second.stringValue(keys::UUID).size(), 36U);
  EXPECT_FALSE(second.dictionary(keys::OriginalRecipe)->contains(keys::Batches));
  expect(*second.dictionary(keys::Actuals), "OGTemp -> 15.0 | FGHydroReading -> 1.000");
}

TEST_F(NativeFileTest, MovesMeasurementsAndFillsInTheRest) {
  PlistDictionary batch =
      dictionaryOf(R"({"PreBoilHydroReading": "1.040", "MeasuredPreBoil Grav": "1.041",
      "MeasuredFG": "1.012", "FGTemp": "18", "RealAttenuation": "61", "Actual Mash Efficiency": "77", "ABV": "5.5",
      "ModifiedRecipe": {"ExpectedColor": "12", "ExpectedIBU": "30", "FinalWortVolume": "7"}})");
  WMR::createActualsBlockForExistingBatch(batch);
  expect(*batch.dictionary(keys::Actuals),
         R"(PreBoilHydroReading -> 1.040 | PreBoilGrav -> 1.041 | FG -> 1.012 |
      FGTemp -> 18 | OGTemp -> absent | RealAttenuation -> 61 | ApparentAttenuation -> 0.0 |
      ActualMashEfficiency -> 77 | ABV -> 5.5 | ABW -> absent | Color -> 12 | IBU -> 30 | FinalWortVolume -> 7)");
  EXPECT_FALSE(batch.contains(keys::RealAttenuation) ||
               batch.contains(KeyName("MeasuredPreBoil Grav")));
  PlistDictionary unmeasured{{keys::OGTemp, "30"}};
  WMR::createActualsBlockForExistingBatch(unmeasured);
  expect(*unmeasured.dictionary(keys::Actuals),
         R"(OGHydroReading -> 1.000 | OG -> 1.000 | OGTemp -> 15.0 |
      HydrometerCalibratedAt -> 15.0 | ABV -> 0.0 | ABW -> 0.0 | Color -> absent)");
  EXPECT_FALSE(unmeasured.contains(keys::OGTemp));
  PlistDictionary done{{keys::Actuals, PlistDictionary()}, {keys::OGTemp, "30"}};
  WMR::createActualsBlockForExistingBatch(done);
  EXPECT_TRUE(done.contains(keys::OGTemp));

  PlistDictionary empty;
  (void)WMR::checkAllKeysExistInBatch_ofParentRecipe(empty, {{keys::RecipeTitle, "Ale"},
                                                             {keys::Batches, PlistArray{1, 2}},
                                                             {keys::FinalWortVolume, "7"}});
  expect(empty, "BatchTitle -> Batch 2 of Ale | PackagingNotes -> ''");
  EXPECT_EQ(*empty.find(keys::MTThermalMass),
            *ZYMProfiles::sharedInstance().defaultProfile().find(keys::MTThermalMass));
  EXPECT_FALSE(empty.dictionary(keys::ModifiedRecipe)->contains(keys::Batches));
  EXPECT_TRUE(empty.date(keys::DateLastModified));
}

// Cut anywhere, a file is what it was or a failure with a reason.
TEST_F(NativeFileTest, SurviveEveryCut) {
  const auto list = [](NSPropertyListFormat format) {
    return *NSPropertyListSerialization::dataWithPropertyList_format(oldRecipe(), format);
  };
  const std::string package = R"({"IngredientType": "Hop", "Ingredients": [{"UUID": "X"}]})";
  const std::pair<std::string, decltype(&WMR::parseFileData)> files[] = {
      {list(NSPropertyListFormat::XMLFormat_v1_0), &WMR::parseFileData},
      {list(NSPropertyListFormat::BinaryFormat_v1_0), &WMR::parseFileData},
      {package, &ZYMIngFile::parseFileData}};
  for (const auto& [whole, read] : files) {
    for (std::size_t length = 0; length < whole.size(); ++length) {
      NSError error;
      const auto found = read(NSData(whole.substr(0, length)), &error);
      ASSERT_EQ(found.has_value(), error.localizedDescription.empty()) << length;
      ASSERT_TRUE(!found || found->size() == read(NSData(whole), nullptr)->size()) << length;
    }
  }
}

TEST_F(NativeFileTest, CarriesIngredients) {
  const auto packageOf = [](std::initializer_list<PlistValue> records) {
    return ZYMIngFile::packageIngredients(records);
  };
  const struct {
    KeyName key;
    std::string_view type;
  } kinds[] = {{keys::IsGrain, "Fermentable"},
               {keys::Alpha, "Hop"},
               {keys::Attenuation, "Yeast"},
               {keys::Name, "Other"}};
  for (const auto& kind : kinds) {
    EXPECT_EQ(packageOf({PlistDictionary{{keys::Attenuation, ""}, {kind.key, ""}}, 1})
                  .stringValue(keys::IngredientType),
              kind.key.text() == "Name" ? "Yeast" : kind.type);
    EXPECT_EQ(packageOf({PlistDictionary{{kind.key, ""}}}).stringValue(keys::IngredientType),
              kind.type);
  }
  EXPECT_EQ(packageOf({}), PlistDictionary());
  EXPECT_EQ(ZYMIngFile::dataForItem({})->view(), "{}");

  const PlistDictionary hop{{keys::UUID, "NEW"}, {keys::Variety, "Ours"}, {keys::Alpha, "3"}};
  const std::string path =
      folder.file("hops.ing", ZYMIngFile::dataForItem(packageOf({hop, PlistDictionary()}))->view());
  const auto importPackage = [&](const std::string& file) {
    auto operation = std::make_unique<ZYMFileImportOperation>(file);
    const testing::Posts posts{ZYMImportOperationSucceededNotification};
    operation->start();
    EXPECT_THAT(posts.names, SizeIs(1)) << operation->failureReason().value_or("");
    return operation->ingredientCount();
  };
  EXPECT_EQ(importPackage(path), 2U);
  EXPECT_EQ(importPackage(path), 2U);
  EXPECT_EQ(ZYMHops::sharedInstance().itemWithUUID("NEW")->stringValue(keys::Variety), "Ours");
  EXPECT_EQ(importPackage(folder.file("a.ing", R"({"IngredientType":"Malt","Ingredients":[{}]})")),
            0U);
  EXPECT_EQ(importPackage(folder.file("b.ing", R"({"IngredientType":"Hop","Ingredients":{}})")),
            0U);
  ZYMFileImportOperation dryRun(path);
  EXPECT_EQ(dryRun.packageInFile()->stringValue(keys::IngredientType), "Hop");
  EXPECT_FALSE(dryRun.recipeInFile());
  EXPECT_EQ(dryRun.failureReason(), "ingredients, and no recipe");
}

}  // namespace
}  // namespace zym
