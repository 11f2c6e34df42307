#include "tests/support/Store.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/ZYMOtherIngredients.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/ZYMSuppliers.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/store/ZYMLibraryRegistry.h"

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
};

TEST_F(Libraries, NewRecordsHaveTheirDefaults) {
  const PlistDictionary expected = document("new-records.json");
  const std::tuple<ZYMCachingModel&, const char*, const char*> cases[] = {
      {ZYMFermentables::sharedInstance(), "Fermentables", "Neue Zutat"},
      {ZYMHops::sharedInstance(), "Hops", "Neuer Hopfen"},
      {ZYMYeasts::sharedInstance(), "Yeasts", "Neue Hefe"},
      {ZYMOtherIngredients::sharedInstance(), "OtherIngredients", "Neue Zutat"},
      {ZYMSuppliers::sharedInstance(), "Suppliers", "Neuer Lieferant"},
      {ZYMWaters::sharedInstance(), "Waters", "Neues Wasser"},
      {ZYMMashSchedules::sharedInstance(), "MashSchedules", "Neuer Maischplan"},
      {ZYMProfiles::sharedInstance(), "Profiles", "Neues Profil"}};
  for (const auto& [library, name, german] : cases) {
    PlistDictionary made;
    library.prepareNewItem(made);
    EXPECT_EQ(made, *expected.dictionary(KeyName(name)));
    useLocale("de_DE");
    library.prepareNewItem(made);
    useLocale("en_US");
    EXPECT_EQ(made.stringValue(library.nameKeyInRecords()), german);
  }
}

TEST_F(Libraries, AreRegisteredWithTheirSeedFiles) {
  std::string rows;
  for (const ZYMLibraryRegistry::Library& row : ZYMLibraryRegistry::sharedInstance().libraries()) {
    rows.append(row.entity).append("/").append(row.ingredientType).append("/").append(row.seed);
    rows.append("/").append(row.installedVersion.text()).append("\n");
    EXPECT_EQ(row.sharedInstance().entityClass(), row.entity);
  }
  EXPECT_EQ(rows, R"(ZYMFermentableEntity/Fermentable/Fermentables/FermentablesVersion
ZYMHopEntity/Hop/Hops/HopsVersion
ZYMOtherIngredientEntity/Other/OtherIngredients/OtherIngredientsVersion
ZYMYeastEntity/Yeast/Yeasts/YeastsVersion
ZYMMashScheduleEntity//Mash Schedules/MashSchedulesVersion
ZYMProfileEntity//Profiles/ProfilesVersion
ZYMWaterEntity//Waters/WatersVersion
ZYMSupplierEntity//Retailers/RetailersVersion
)");
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
  add(yeasts, {"Wyeast 1056", " None", "Nottingham"});
  EXPECT_EQ(yeasts.noChosenYeast().stringValue(keys::Name), " None");
  EXPECT_THAT(texts(yeasts.allItemsWithoutNoChosenYeastOption(), keys::Name),
              ElementsAre("Nottingham", "Wyeast 1056"));
  EXPECT_THAT(namesOf(yeasts.summariesforAllItemsWithoutNoChosenYeastOption()),
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
  EXPECT_THAT(namesOf(waters.summariesForAllItemsWithoutNoChosenWaterOption()),
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

TEST_F(MashSchedules, StepsComeLastAndAreReplacedAndCopied) {
  const std::string uuid = made();
  const NSDate before = *schedules.itemWithUUID(uuid)->date(keys::DateLastModified);
  const PlistDictionary step = *schedules.addNewStepToMashScheduleWithUUID(uuid);
  EXPECT_EQ(shown(step, {keys::StepType, keys::Temperature, keys::Duration}),
            "Rest at 60.000000 0.000000");
  const std::vector<std::string> steps = stepUUIDs(uuid);
  EXPECT_THAT(steps, SizeIs(4));
  EXPECT_EQ(steps.back(), step.stringValue(keys::UUID));
  EXPECT_GT(*schedules.itemWithUUID(uuid)->date(keys::DateLastModified), before);
  EXPECT_FALSE(schedules.addNewStepToMashScheduleWithUUID("unknown"));
  EXPECT_FALSE(schedules.allStepsForMashScheduleWithUUID("unknown"));

  const PlistDictionary copy = *schedules.duplicateItemWithUUID(uuid);
  EXPECT_EQ(copy.stringValue(keys::ScheduleName), "New Schedule-copy");
  std::vector<std::string> own = stepUUIDs(copy.stringValue(keys::UUID));
  EXPECT_EQ(own.size(), 4U);
  own.insert(own.end(), steps.begin(), steps.end());
  EXPECT_EQ(std::set<std::string>(own.begin(), own.end()).size(), 8U) << "each of its own";

  const PlistArray stored = *schedules.allStepsForMashScheduleWithUUID(uuid);
  const PlistArray replaced{*stored.find(2), *stored.find(0)};
  schedules.updateSteps_inMashScheduleWithUUID(&replaced, uuid);
  EXPECT_THAT(stepUUIDs(uuid), ElementsAre(steps[2], steps[0]));
}

TEST_F(MashSchedules, TheOptionOfNoChoice) {
  EXPECT_FALSE(schedules.noChosenSchedule());
  EXPECT_THROW((void)schedules.allItemsWithoutNoChosenScheduleOption(), NSException);
  add(schedules, {"Single", " No Chosen Schedule"});
  EXPECT_EQ(schedules.noChosenSchedule()->stringValue(keys::ScheduleName), " No Chosen Schedule");
  EXPECT_THAT(namesOf(schedules.summariesforAllItemsWithoutNoChosenScheduleOption()),
              ElementsAre("Single"));
}

TEST_F(MashSchedules, TypesOfStepHaveShortForms) {
  std::string shortForms;
  for (const std::string_view type : words::stepTypes) {
    const std::string shortForm = ZYMMashSchedules::abbreviateStepType(type);
    EXPECT_EQ(ZYMMashSchedules::unabbreviateStepType(shortForm), type);
    shortForms += shortForm + "/";
  }
  EXPECT_EQ(shortForms,
            "Strike and dough in/Rest at/Raise by infusion to/Decoct raise mash to/"
            "Raise and mash out at/Raise by heating to/");
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
  PlistDictionary recipe = R"({"Notes": "n"})"_json;
  PlistDictionary profile = R"({
      "PreBoilVolume": "1", "PostBoilVolume": "2", "VolumeToFermenter": "3",
      "VolumeWaterAdded": "4", "VolumeAtPitching": "5", "FinishedBatchVolume": "6",
      "PreferredRecipeType": "Extract", "ExtractEfficiency": "70", "BoilDuration": "80",
      "PreferredMashSchedule": "gone", "PreferredTargetWaterUUID": "gone",
      "PreferredBaseWaterUUID": "Burton"})"_json;
  EXPECT_THROW(ZYMProfiles::updateRecipe_withProfile(recipe, profile), NSException);
  add(ZYMWaters::sharedInstance(), {"Burton", "Aachen"});
  add(ZYMMashSchedules::sharedInstance(), {"Single", " None"});
  ZYMProfiles::updateRecipe_withProfile(recipe, profile);
  EXPECT_EQ(recipe.dictionary(keys::MashSchedule)->stringValue(keys::ScheduleName), " None");
  recipe.remove(keys::MashSchedule);
  PlistDictionary expected = R"({
      "Notes": "n", "PreBoilWortVolume": "1", "FinalWortVolume": "2", "VolumeToFermenter": "3",
      "VolumeWaterAdded": "4", "VolumeAtPitching": "5", "FinalBatchVolume": "6",
      "MashType": "Extract", "MashEfficiency": "70", "BoilDuration": "80",
      "TargetWaterProfileUsedUUID": "Aachen", "BaseWaterProfileUsedUUID": "Burton"})"_json;
  expected.set(keys::Profile, profile);
  EXPECT_EQ(recipe, expected);
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
