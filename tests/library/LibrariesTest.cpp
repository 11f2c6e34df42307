#include "tests/support/Json.h"
#include "tests/support/Store.h"
#include "tests/support/Test.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/ZYMOtherIngredients.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/ZYMSuppliers.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/store/ZYMLibraryRegistry.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMInventoryEntity.h"
#include "zymcore/store/entities/ZYMMashStepEntity.h"
#include "zymcore/store/entities/ZYMProfileEntity.h"
#include "zymcore/store/entities/ZYMWaterEntity.h"

namespace zym {
namespace {

class Libraries : public testing::WithStore {
 protected:
  static void add(ZYMCachingModel& library, std::initializer_list<const char*> names) {
    PlistArray items;
    for (const char* name : names) {
      items.append(PlistDictionary{{library.nameKeyInRecords(), name}, {keys::UUID, name}});
    }
    library.addItemsFromArray(items);
  }
  static std::vector<std::string> names(const std::vector<ZYMSummary>& rows) {
    std::vector<std::string> result;
    for (const ZYMSummary& row : rows) result.push_back(row.name);
    return result;
  }
  static std::vector<std::string> texts(const PlistArray& records, KeyName key) {
    std::vector<std::string> result;
    for (const PlistDictionary& record : PlistRows(&records))
      result.emplace_back(record.stringValue(key));
    return result;
  }
};

TEST_F(Libraries, NewRecordsHaveTheirDefaults) {
  (void)context();
  std::string translations;
  for (const std::string text :
       {"Ingredient", "Hop", "Yeast", "Supplier", "Water", "Schedule", "Profile"}) {
    translations += "<key>New " + text + "</key><string>neu</string>";
  }
  const TemporaryFolder german;
  (void)german.file("de.lproj/Localizable.strings",
                    "<plist><dict>" + translations + "</dict></plist>");
  NSBundle::setMainBundle(NSBundle(german.path(), "org.zymcore.tests", "1"));
  struct Case {
    ZYMCachingModel& library;
    PlistDictionary expected;
  };
  for (const Case& c : {
           Case{ZYMFermentables::sharedInstance(), R"({
               "Ingredient": "New Ingredient", "Extract": "75.000000", "Moisture": "0.000000",
               "Color": "0.000000", "IsGrain": "1", "MustBeMashed": "1", "Description": ""})"_json},
           Case{ZYMHops::sharedInstance(),
                R"({"Variety": "New Hop", "Alpha": "0.000000", "Description": ""})"_json},
           Case{ZYMYeasts::sharedInstance(), R"({
               "Name": "New Yeast", "Attenuation": "75.000000", "BeerType": "Ale",
               "YeastType": "Liquid", "Description": ""})"_json},
           Case{ZYMOtherIngredients::sharedInstance(),
                R"({"Ingredient": "New Ingredient", "Description": ""})"_json},
           Case{ZYMSuppliers::sharedInstance(), R"({"Name": "New Supplier", "Email": "",
               "Location": "", "Phone": "", "Homepage": ""})"_json},
           Case{ZYMWaters::sharedInstance(), R"({
               "Name": "New Water", "Calcium": "0.000000", "Carbonate": "0.000000",
               "Chloride": "0.000000", "Magnesium": "0.000000", "Sodium": "0.000000",
               "Sulfate": "0.000000"})"_json},
           Case{ZYMMashSchedules::sharedInstance(),
                R"({"ScheduleName": "New Schedule", "Version": "3", "Steps": []})"_json},
           Case{ZYMProfiles::sharedInstance(), R"({
               "ProfileName": "New Profile", "Version": "2", "PreBoilVolume": "24000",
               "PostBoilVolume": "22000", "VolumeToFermenter": "20000", "VolumeWaterAdded": "0",
               "VolumeAtPitching": "20000", "FinishedBatchVolume": "19000",
               "PreferredRecipeType": "Full Mash", "PreferredSpargeMethod": "Fly Sparge",
               "MTThermalMass": "1000", "WaterGrainRatio": "2", "ExtractEfficiency": "75",
               "BoilDuration": "90", "PreferredMashSchedule": "", "PreferredBaseWaterUUID": "",
               "PreferredTargetWaterUUID": ""})"_json},
       }) {
    for (const char* locale : {"en_US", "de_DE"}) {
      useLocale(locale);
      PlistDictionary expected = c.expected;
      if (locale[0] == 'd') expected.set(c.library.nameKeyInRecords(), "neu");
      PlistDictionary made;
      c.library.prepareNewItem(made);
      EXPECT_EQ(made, expected) << c.library.entityClass();
    }
  }
}

TEST_F(Libraries, AreRegisteredWithTheirSeedFiles) {
  std::vector<std::string> rows;
  for (const ZYMLibraryRegistry::Library& row : ZYMLibraryRegistry::sharedInstance().libraries()) {
    rows.push_back(std::string(row.entity) + "/" + std::string(row.ingredientType) + "/" +
                   std::string(row.seed) + "/" + std::string(row.installedVersion.text()));
    EXPECT_EQ(row.sharedInstance().entityClass(), row.entity);
  }
  EXPECT_THAT(rows,
              ElementsAre("ZYMFermentableEntity/Fermentable/Fermentables/FermentablesVersion",
                          "ZYMHopEntity/Hop/Hops/HopsVersion",
                          "ZYMOtherIngredientEntity/Other/OtherIngredients/OtherIngredientsVersion",
                          "ZYMYeastEntity/Yeast/Yeasts/YeastsVersion",
                          "ZYMMashScheduleEntity//Mash Schedules/MashSchedulesVersion",
                          "ZYMProfileEntity//Profiles/ProfilesVersion",
                          "ZYMWaterEntity//Waters/WatersVersion",
                          "ZYMSupplierEntity//Retailers/RetailersVersion"));
}

TEST_F(Libraries, Suppliers) {
  ZYMSuppliers& suppliers = ZYMSuppliers::sharedInstance();
  PlistDictionary supplier = suppliers.createSupplier();
  supplier.set(keys::Name, "Malt & Co");
  suppliers.updateSupplier(supplier);
  const std::string uuid(supplier.stringValue(keys::UUID));
  EXPECT_THAT(suppliers.summariesForAllSuppliers(), ElementsAre(ZYMSummary{"Malt & Co", uuid}));
  suppliers.removeSupplierWithUUID(uuid);
  EXPECT_THAT(suppliers.summariesForAllSuppliers(), IsEmpty());
}

TEST_F(Libraries, TheFirstByNameStandsForNoChoice) {
  ZYMYeasts& yeasts = ZYMYeasts::sharedInstance();
  EXPECT_THROW((void)yeasts.noChosenYeast(), NSException);
  EXPECT_THROW((void)yeasts.allItemsWithoutNoChosenYeastOption(), NSException);
  EXPECT_THROW((void)yeasts.summariesforAllItemsWithoutNoChosenYeastOption(), NSException);
  add(yeasts, {"Wyeast 1056", " None", "Nottingham"});
  EXPECT_EQ(yeasts.noChosenYeast().stringValue(keys::Name), " None");
  EXPECT_THAT(texts(yeasts.allItemsWithoutNoChosenYeastOption(), keys::Name),
              ElementsAre("Nottingham", "Wyeast 1056"));
  EXPECT_THAT(names(yeasts.summariesforAllItemsWithoutNoChosenYeastOption()),
              ElementsAre("Nottingham", "Wyeast 1056"));
}

TEST_F(Libraries, NamesAreLookedUpInTwoWays) {
  ZYMYeasts& yeasts = ZYMYeasts::sharedInstance();
  ZYMWaters& waters = ZYMWaters::sharedInstance();
  for (const char* uuid : {"1", "2"}) {
    const PlistArray one{PlistDictionary{{keys::UUID, uuid}, {keys::Name, "Twice"}}};
    yeasts.addItemsFromArray(one);
    waters.addItemsFromArray(one);
  }
  add(yeasts, {"S-04"});
  EXPECT_FALSE(yeasts.yeastForName("Twice"));
  EXPECT_EQ(yeasts.yeastForName("S-04")->stringValue(keys::UUID), "S-04");
  EXPECT_FALSE(yeasts.yeastForName("s-04"));
  EXPECT_EQ(waters.waterWithName("Twice")->stringValue(keys::Name), "Twice");
  EXPECT_FALSE(waters.waterWithName("twice"));

  (void)ZYMWaterEntity::insertInContext(context());  // one without a name, which it keeps
  model().save();
  EXPECT_THAT(names(waters.summariesForAllItemsWithoutNoChosenWaterOption()),
              ElementsAre("Twice", "Twice"));
  EXPECT_FALSE(context().hasChanges());
}

// Stock shows the name that the library has now, and is looked for by that.
TEST_F(Libraries, StockIsFoundByTheNameThatItShows) {
  class Stock final : public ZYMCachingModel {
   public:
    Stock() : ZYMCachingModel(keys::Ingredient) {}
    [[nodiscard]] std::string_view entityClass() const override {
      return ZYMInventoryEntity::entityName;
    }
  } stock;
  add(ZYMHops::sharedInstance(), {"A", "B"});
  for (const auto& [uuid, before, after] :
       {std::tuple("A", "Saaz", "Northern Brewer"), std::tuple("B", "Fuggle", "Tettnang")}) {
    stock.addItemsFromArray({PlistDictionary{
        {keys::UUID, uuid}, {keys::IngredientType, words::Hop}, {keys::Ingredient, before}}});
    EXPECT_EQ(stock.itemWithUUID(uuid)->stringValue(keys::Ingredient), uuid);
    PlistDictionary hop = *ZYMHops::sharedInstance().itemWithUUID(uuid);
    hop.set(keys::Variety, after);
    ZYMHops::sharedInstance().updateItem(hop);
    EXPECT_EQ(stock.itemWithUUID(uuid)->stringValue(keys::Ingredient), after);
  }
  EXPECT_EQ(stock.ingredientWithNameMostSimilarToString_matchingKeysAndValues("Northern", nullptr)
                .stringValue(keys::UUID),
            "A");
  EXPECT_EQ(
      stock.ingredientsWithNamesMostSimilarToStrings({"Tettnanger"}).at(0).stringValue(keys::UUID),
      "B");
  ZYMInventoryEntity::onlyObjectWithUUID(nullptr, "A")
      ->setValue_forKey(words::Yeast, attributes::ingredientType);
  EXPECT_EQ(stock.itemWithUUID("A")->stringValue(keys::Ingredient), "");
}

class MashSchedules : public Libraries {
 protected:
  static std::vector<std::string> stepUUIDs(std::string_view schedule) {
    return texts(*ZYMMashSchedules::sharedInstance().allStepsForMashScheduleWithUUID(schedule),
                 keys::UUID);
  }
  std::string made() {
    PlistDictionary schedule = schedules.createItem();
    EXPECT_EQ(schedule.stringValue(keys::Version), "3");
    EXPECT_TRUE(schedule.array(keys::Steps)->empty());
    std::string uuid(schedule.stringValue(keys::UUID));
    EXPECT_FALSE(schedules.itemWithUUID(uuid)->contains(keys::Version));
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(schedules.addNewStepToSchedule(schedule));
    return uuid;
  }
  ZYMMashSchedules& schedules = ZYMMashSchedules::sharedInstance();
};

TEST_F(MashSchedules, ANewStepComesLast) {
  const std::string uuid = made();
  const NSDate before = *schedules.itemWithUUID(uuid)->date(keys::DateLastModified);
  const PlistDictionary step = *schedules.addNewStepToMashScheduleWithUUID(uuid);
  EXPECT_EQ(step.stringValue(keys::StepType), "Rest at");
  EXPECT_EQ(step.stringValue(keys::Temperature), "60.000000");
  EXPECT_EQ(step.stringValue(keys::Duration), "0.000000");
  EXPECT_THAT(stepUUIDs(uuid), SizeIs(4));
  EXPECT_EQ(stepUUIDs(uuid).back(), step.stringValue(keys::UUID));
  EXPECT_GT(*schedules.itemWithUUID(uuid)->date(keys::DateLastModified), before);
  EXPECT_FALSE(schedules.addNewStepToMashScheduleWithUUID("unknown"));
  EXPECT_FALSE(schedules.allStepsForMashScheduleWithUUID("unknown"));
}

TEST_F(MashSchedules, StepsAreReplaced) {
  const std::string uuid = made();
  const PlistArray steps = *schedules.allStepsForMashScheduleWithUUID(uuid);
  const std::vector<std::string> before = stepUUIDs(uuid);
  const PlistArray reversed{*steps.find(2), *steps.find(1), *steps.find(0)};
  schedules.updateSteps_inMashScheduleWithUUID(&reversed, uuid);
  EXPECT_THAT(stepUUIDs(uuid), ElementsAre(before[2], before[1], before[0]));
  const PlistArray none;
  schedules.updateSteps_inMashScheduleWithUUID(&none, uuid);
  EXPECT_THAT(stepUUIDs(uuid), IsEmpty());
  EXPECT_EQ(ZYMMashStepEntity::findAllObjects()->size(), 3U);
}

TEST_F(MashSchedules, ACopyHasStepsOfItsOwn) {
  const std::string uuid = made();
  const PlistDictionary copy = *schedules.duplicateItemWithUUID(uuid);
  EXPECT_EQ(copy.stringValue(keys::ScheduleName), "New Schedule-copy");
  const std::vector<std::string> own = stepUUIDs(copy.stringValue(keys::UUID));
  EXPECT_THAT(own, SizeIs(3));
  for (const std::string& step : stepUUIDs(uuid))
    EXPECT_THAT(own, ::testing::Not(::testing::Contains(step)));
  EXPECT_THAT(stepUUIDs(uuid), SizeIs(3));
}

TEST_F(MashSchedules, TheOptionOfNoChoice) {
  EXPECT_FALSE(schedules.noChosenSchedule());
  EXPECT_THROW((void)schedules.allItemsWithoutNoChosenScheduleOption(), NSException);
  add(schedules, {"Single", " No Chosen Schedule"});
  EXPECT_EQ(schedules.noChosenSchedule()->stringValue(keys::ScheduleName), " No Chosen Schedule");
  EXPECT_THAT(names(schedules.summariesforAllItemsWithoutNoChosenScheduleOption()),
              ElementsAre("Single"));
}

TEST_F(MashSchedules, TypesOfStepHaveShortForms) {
  std::vector<std::string> shortForms;
  for (const std::string_view type : words::stepTypes) {
    shortForms.push_back(ZYMMashSchedules::abbreviateStepType(type));
    EXPECT_EQ(ZYMMashSchedules::unabbreviateStepType(shortForms.back()), type);
  }
  EXPECT_THAT(shortForms,
              ElementsAre("Strike and dough in", "Rest at", "Raise by infusion to",
                          "Decoct raise mash to", "Raise and mash out at", "Raise by heating to"));
  EXPECT_EQ(ZYMMashSchedules::abbreviateStepType("Sing"), "Sing");
  EXPECT_EQ(ZYMMashSchedules::unabbreviateStepType("Sing"), "Sing");
}

class Profiles : public Libraries {
 protected:
  static std::string preferred() {
    return defaults().stringForKey(keys::UUIDForDefaultProfile).value_or("none");
  }
  ZYMProfiles& profiles = ZYMProfiles::sharedInstance();
};

TEST_F(Profiles, TheDefaultIsFoundOrMade) {
  EXPECT_THROW((void)ZYMProfiles::tempProfile(), NSException);  // no water
  add(ZYMWaters::sharedInstance(), {"Burton"});
  const PlistDictionary made = profiles.defaultProfile();
  EXPECT_EQ(preferred(), made.stringValue(keys::UUID));
  profiles.removeItemWithUUID(preferred());
  profiles.addItemsFromArray({PlistDictionary{{keys::UUID, "b"}, {keys::ProfileName, "Big"}},
                              PlistDictionary{{keys::UUID, "a"}, {keys::ProfileName, "A"}}});
  EXPECT_EQ(profiles.defaultProfile().stringValue(keys::UUID), "a");
  EXPECT_EQ(preferred(), "a");
  set(keys::UUIDForDefaultProfile, "b");
  EXPECT_EQ(profiles.defaultProfile().stringValue(keys::ProfileName), "Big");
  set(keys::UUIDForDefaultProfile, PlistArray{"b"});
  EXPECT_EQ(profiles.defaultProfile().stringValue(keys::ProfileName), "A");
}

TEST_F(Profiles, NewOnesPreferWhatIsFirst) {
  add(ZYMWaters::sharedInstance(), {"Burton", "Aachen"});
  add(ZYMMashSchedules::sharedInstance(), {"Single"});
  const PlistDictionary temporary = ZYMProfiles::tempProfile();
  EXPECT_TRUE(profiles.allItems().empty());
  for (const PlistDictionary& made : {temporary, profiles.createItem()}) {
    EXPECT_EQ(made.stringValue(keys::PreferredTargetWaterUUID), "Aachen");
    EXPECT_EQ(made.stringValue(keys::PreferredBaseWaterUUID), "Aachen");
    EXPECT_EQ(made.stringValue(keys::PreferredMashSchedule), "Single");
  }
  EXPECT_EQ(temporary.stringValue(keys::PreBoilVolume), "24000");
}

TEST_F(Profiles, ReadingRepairsWhatIsNoText) {
  add(ZYMWaters::sharedInstance(), {"Burton"});
  const std::string uuid(profiles.createItem().stringValue(keys::UUID));
  ZYMProfileEntity& object = *ZYMProfileEntity::onlyObjectWithUUID(nullptr, uuid);
  object.setValue_forKey(std::nullopt, KeyName{"boilDuration"});
  EXPECT_EQ(profiles.itemWithUUID(uuid)->stringValue(keys::BoilDuration), "0");
  EXPECT_EQ(*object.stringForKey(KeyName{"boilDuration"}), "0");
}

TEST_F(Profiles, ARecipeTakesWhatItsProfilePrefers) {
  PlistDictionary recipe{{keys::Notes, "n"}};
  PlistDictionary profile{{keys::PreBoilVolume, "1"},
                          {keys::PostBoilVolume, "2"},
                          {keys::VolumeToFermenter, "3"},
                          {keys::VolumeWaterAdded, "4"},
                          {keys::VolumeAtPitching, "5"},
                          {keys::FinishedBatchVolume, "6"},
                          {keys::PreferredRecipeType, "Extract"},
                          {keys::ExtractEfficiency, "70"},
                          {keys::BoilDuration, "80"},
                          {keys::PreferredMashSchedule, "gone"},
                          {keys::PreferredTargetWaterUUID, "gone"},
                          {keys::PreferredBaseWaterUUID, "Burton"}};
  EXPECT_THROW(ZYMProfiles::updateRecipe_withProfile(recipe, profile), NSException);
  add(ZYMWaters::sharedInstance(), {"Burton", "Aachen"});
  add(ZYMMashSchedules::sharedInstance(), {"Single", " None"});
  ZYMProfiles::updateRecipe_withProfile(recipe, profile);
  EXPECT_EQ(recipe.dictionary(keys::MashSchedule)->stringValue(keys::ScheduleName), " None");
  recipe.remove(keys::MashSchedule);
  EXPECT_EQ(recipe, (PlistDictionary{{keys::Notes, "n"},
                                     {keys::Profile, profile},
                                     {keys::PreBoilWortVolume, "1"},
                                     {keys::FinalWortVolume, "2"},
                                     {keys::VolumeToFermenter, "3"},
                                     {keys::VolumeWaterAdded, "4"},
                                     {keys::VolumeAtPitching, "5"},
                                     {keys::FinalBatchVolume, "6"},
                                     {keys::MashType, "Extract"},
                                     {keys::MashEfficiency, "70"},
                                     {keys::BoilDuration, "80"},
                                     {keys::TargetWaterProfileUsedUUID, "Aachen"},
                                     {keys::BaseWaterProfileUsedUUID, "Burton"}}));
}

TEST_F(Profiles, OfTheWatersOfARecipeOnlyTheBaseGoesToAProfile) {
  PlistDictionary profile =
      R"({"PreferredTargetWaterUUID": "own", "PreferredBaseWaterUUID": "own"})"_json;
  PlistDictionary recipe = R"({
      "PreBoilWortVolume": "1", "FinalWortVolume": "2", "FinalBatchVolume": "6",
      "MashEfficiency": "70", "MashSchedule": {"UUID": "S"}, "TargetWaterProfileUsedUUID": "t",
      "BaseWaterProfileUsedUUID": "b"})"_json;
  ZYMProfiles::updateProfile_withRecipe(profile, recipe);
  PlistDictionary expected = R"({
      "PreferredTargetWaterUUID": "own", "PreferredBaseWaterUUID": "b", "PreBoilVolume": "1",
      "PostBoilVolume": "2", "FinishedBatchVolume": "6", "ExtractEfficiency": "70",
      "PreferredMashSchedule": "S"})"_json;
  EXPECT_EQ(profile, expected);
  recipe.set(keys::PreferredTargetWaterUUID, "any");
  recipe.remove(keys::BaseWaterProfileUsedUUID);
  expected.set(keys::PreferredTargetWaterUUID, "t");
  ZYMProfiles::updateProfile_withRecipe(profile, recipe);
  EXPECT_EQ(profile, expected);
}

TEST_F(Profiles, AreSimilarWithinFortyNineMillilitres) {
  const auto similar = [](const char* volume, const char* uuid) {
    const PlistDictionary own{
        {keys::UUID, "A"}, {keys::PreBoilVolume, "20000"}, {keys::ProfileName, "a"}};
    const PlistDictionary other{
        {keys::UUID, uuid}, {keys::PreBoilVolume, volume}, {keys::ProfileName, "b"}};
    return ZYMProfiles::isProfile_similarToProfile(own, other) &&
           ZYMProfiles::isProfile_similarToProfile(other, own);
  };
  EXPECT_TRUE(similar("20048.9", "A"));
  EXPECT_FALSE(similar("20049", "A"));
  EXPECT_FALSE(similar("19951", "A"));
  EXPECT_FALSE(similar("20000", "B"));
  EXPECT_FALSE(ZYMProfiles::isProfile_similarToProfile({}, {}));
}

}  // namespace
}  // namespace zym
