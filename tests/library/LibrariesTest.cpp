#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/Store.h"
#include "zymcore/documents/RecordKeys.h"
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
#include "zymcore/platform/values/NSException.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMInventoryEntity.h"
#include "zymcore/store/entities/ZYMMashStepEntity.h"
#include "zymcore/store/entities/ZYMProfileEntity.h"
#include "zymcore/store/entities/ZYMWaterEntity.h"

namespace zym {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Libraries : public testing::WithStore {
 protected:
  static PlistDictionary withoutIdentity(PlistDictionary record) {
    record.remove(keys::UUID);
    record.remove(keys::DateLastModified);
    return record;
  }
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
  EXPECT_EQ(withoutIdentity(ZYMFermentables::sharedInstance().createItem()),
            (PlistDictionary{{keys::Ingredient, "New Ingredient"},
                             {keys::Extract, "75.000000"},
                             {keys::Moisture, "0.000000"},
                             {keys::Color, "0.000000"},
                             {keys::IsGrain, "1"},
                             {keys::MustBeMashed, "1"},
                             {keys::Description, ""}}));
  EXPECT_EQ(withoutIdentity(ZYMHops::sharedInstance().createItem()),
            (PlistDictionary{
                {keys::Variety, "New Hop"}, {keys::Alpha, "0.000000"}, {keys::Description, ""}}));
  EXPECT_EQ(withoutIdentity(ZYMYeasts::sharedInstance().createItem()),
            (PlistDictionary{{keys::Name, "New Yeast"},
                             {keys::Attenuation, "75.000000"},
                             {keys::BeerType, "Ale"},
                             {keys::YeastType, "Liquid"},
                             {keys::Description, ""}}));
  EXPECT_EQ(withoutIdentity(ZYMOtherIngredients::sharedInstance().createItem()),
            (PlistDictionary{{keys::Ingredient, "New Ingredient"}, {keys::Description, ""}}));
  EXPECT_EQ(withoutIdentity(ZYMSuppliers::sharedInstance().createSupplier()),
            (PlistDictionary{{keys::Name, "New Supplier"},
                             {keys::Email, ""},
                             {keys::Location, ""},
                             {keys::Phone, ""},
                             {keys::Homepage, ""}}));
  const PlistDictionary water = ZYMWaters::sharedInstance().createItem();
  EXPECT_FALSE(water.contains(keys::Notes));
  EXPECT_EQ(
      withoutIdentity(*ZYMWaters::sharedInstance().itemWithUUID(water.stringValue(keys::UUID))),
      (PlistDictionary{{keys::Name, "New Water"},
                       {keys::Calcium, "0.000000"},
                       {keys::Carbonate, "0.000000"},
                       {keys::Chloride, "0.000000"},
                       {keys::Magnesium, "0.000000"},
                       {keys::Sodium, "0.000000"},
                       {keys::Sulfate, "0.000000"},
                       {keys::Notes, ""}}));
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
  yeasts.addItemsFromArray({PlistDictionary{{keys::UUID, "1"}, {keys::Name, "US-05"}},
                            PlistDictionary{{keys::UUID, "2"}, {keys::Name, "US-05"}},
                            PlistDictionary{{keys::UUID, "3"}, {keys::Name, "S-04"}}});
  EXPECT_FALSE(yeasts.yeastForName("US-05"));
  EXPECT_EQ(yeasts.yeastForName("S-04")->stringValue(keys::UUID), "3");
  EXPECT_FALSE(yeasts.yeastForName("s-04"));
  ZYMWaters& waters = ZYMWaters::sharedInstance();
  waters.addItemsFromArray({PlistDictionary{{keys::UUID, "1"}, {keys::Name, "Burton"}},
                            PlistDictionary{{keys::UUID, "2"}, {keys::Name, "Burton"}}});
  EXPECT_EQ(waters.waterWithName("Burton")->stringValue(keys::Name), "Burton");
  EXPECT_FALSE(waters.waterWithName("burton"));
}

TEST_F(Libraries, AListOfWatersLeavesNamelessOnesAlone) {
  add(ZYMWaters::sharedInstance(), {" None", "Burton"});
  (void)ZYMWaterEntity::insertInContext(context());
  model().save();
  EXPECT_THAT(names(ZYMWaters::sharedInstance().summariesForAllItemsWithoutNoChosenWaterOption()),
              ElementsAre(" None", "Burton"));
  EXPECT_FALSE(context().hasChanges());
}

TEST_F(Libraries, StockHasTheNameThatTheLibraryGivesItNow) {
  add(ZYMHops::sharedInstance(), {"Fuggle"});
  PlistDictionary record{
      {keys::UUID, "Fuggle"}, {keys::IngredientType, words::Hop}, {keys::Ingredient, "old name"}};
  ZYMInventoryEntity& item = ZYMInventoryEntity::insertInContext(context());
  item.updateWithDictionaryRepresentation(record);
  EXPECT_EQ(item.dictionaryRepresentation()->stringValue(keys::Ingredient), "Fuggle");
  PlistDictionary hop = *ZYMHops::sharedInstance().itemWithUUID("Fuggle");
  hop.set(keys::Variety, "Styrian");
  ZYMHops::sharedInstance().updateItem(hop);
  EXPECT_EQ(item.dictionaryRepresentation()->stringValue(keys::Ingredient), "Styrian");
  item.setValue_forKey(words::Yeast, attributes::ingredientType);
  EXPECT_EQ(item.dictionaryRepresentation()->stringValue(keys::Ingredient), "");
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
  for (const auto& [uuid, name] : {std::pair("A", "Saaz"), std::pair("B", "Fuggle")}) {
    stock.addItemsFromArray({PlistDictionary{
        {keys::UUID, uuid}, {keys::IngredientType, words::Hop}, {keys::Ingredient, name}}});
    PlistDictionary hop = *ZYMHops::sharedInstance().itemWithUUID(uuid);
    hop.set(keys::Variety, name == std::string("Saaz") ? "Northern Brewer" : "Tettnang");
    ZYMHops::sharedInstance().updateItem(hop);
  }
  EXPECT_EQ(stock.ingredientWithNameMostSimilarToString_matchingKeysAndValues("Northern", nullptr)
                .stringValue(keys::UUID),
            "A");
  EXPECT_EQ(
      stock.ingredientsWithNamesMostSimilarToStrings({"Tettnanger"}).at(0).stringValue(keys::UUID),
      "B");
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

TEST_F(MashSchedules, StepsAreReplacedAlwaysAsAnUndoStep) {
  const std::string uuid = made();
  PlistArray steps = *schedules.allStepsForMashScheduleWithUUID(uuid);
  const std::vector<std::string> before = stepUUIDs(uuid);
  undoManager().removeAllActions();
  schedules.updateSteps_inMashScheduleWithUUID(nullptr, uuid);
  schedules.updateSteps_inMashScheduleWithUUID(&steps, "unknown");
  EXPECT_FALSE(undoManager().canUndo());
  schedules.updateSteps_inMashScheduleWithUUID(&steps, uuid);

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
  for (const std::string_view type : words::stepTypes) {
    EXPECT_EQ(ZYMMashSchedules::unabbreviateStepType(ZYMMashSchedules::abbreviateStepType(type)),
              type);
  }
  EXPECT_EQ(ZYMMashSchedules::abbreviateStepType("Raise to and Mash out at"),
            "Raise and mash out at");
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
  PlistDictionary bare = profiles.createItem();
  EXPECT_EQ(*bare.string(keys::PreferredMashSchedule), "");
  EXPECT_EQ(*bare.string(keys::PreferredBaseWaterUUID), "");
  add(ZYMWaters::sharedInstance(), {"Burton", "Aachen"});
  add(ZYMMashSchedules::sharedInstance(), {"Single"});
  const PlistDictionary temporary = ZYMProfiles::tempProfile();
  EXPECT_EQ(temporary.stringValue(keys::PreferredTargetWaterUUID), "Aachen");
  EXPECT_EQ(temporary.stringValue(keys::PreferredMashSchedule), "Single");
  EXPECT_EQ(temporary.stringValue(keys::PreBoilVolume), "24000");
  EXPECT_EQ(temporary.stringValue(keys::Version), "2");
  EXPECT_EQ(profiles.allItems().size(), 1U);
  EXPECT_EQ(profiles.createItem().stringValue(keys::PreferredBaseWaterUUID), "Aachen");
}

TEST_F(Profiles, ARecipeMayBeGivenItsOwnProfile) {
  add(ZYMWaters::sharedInstance(), {"Burton"});
  const PlistDictionary profile{{keys::ProfileName, std::string(100, 'p')},
                                {keys::PreBoilVolume, std::string(100, '1')},
                                {keys::PreferredBaseWaterUUID, std::string(100, 'b')}};
  PlistDictionary recipe{{keys::Profile, profile}};
  ZYMProfiles::updateRecipe_withProfile(recipe, *recipe.dictionary(keys::Profile));
  EXPECT_EQ(*recipe.dictionary(keys::Profile), profile);
  EXPECT_EQ(recipe.stringValue(keys::PreBoilWortVolume), std::string(100, '1'));
  EXPECT_EQ(recipe.stringValue(keys::BaseWaterProfileUsedUUID), "Burton");
}

TEST_F(Profiles, ReadingRepairsWhatIsNoText) {
  add(ZYMWaters::sharedInstance(), {"Burton"});
  PlistDictionary profile = profiles.createItem();
  const std::string uuid(profile.stringValue(keys::UUID));
  auto* object = static_cast<ZYMEntity*>(
      ZYMEntityFetch::onlyObjectWithUUID(ZYMProfileEntity::entityName, nullptr, uuid));
  object->setValue_forKey(std::nullopt, KeyName{"boilDuration"});
  EXPECT_EQ(profiles.itemWithUUID(uuid)->stringValue(keys::BoilDuration), "0");
  EXPECT_EQ(*object->stringForKey(KeyName{"boilDuration"}), "0");
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
  PlistDictionary profile{{keys::PreferredTargetWaterUUID, "own"},
                          {keys::PreferredBaseWaterUUID, "own"}};
  PlistDictionary recipe{{keys::PreBoilWortVolume, "1"},
                         {keys::FinalWortVolume, "2"},
                         {keys::FinalBatchVolume, "6"},
                         {keys::MashEfficiency, "70"},
                         {keys::MashSchedule, PlistDictionary{{keys::UUID, "S"}}},
                         {keys::TargetWaterProfileUsedUUID, "t"},
                         {keys::BaseWaterProfileUsedUUID, "b"}};
  ZYMProfiles::updateProfile_withRecipe(profile, recipe);
  EXPECT_EQ(profile, (PlistDictionary{{keys::PreferredTargetWaterUUID, "own"},
                                      {keys::PreferredBaseWaterUUID, "b"},
                                      {keys::PreBoilVolume, "1"},
                                      {keys::PostBoilVolume, "2"},
                                      {keys::FinishedBatchVolume, "6"},
                                      {keys::ExtractEfficiency, "70"},
                                      {keys::PreferredMashSchedule, "S"}}));
  recipe.set(keys::PreferredTargetWaterUUID, "any");
  recipe.remove(keys::BaseWaterProfileUsedUUID);
  profile.set(keys::PreferredBaseWaterUUID, "own");
  ZYMProfiles::updateProfile_withRecipe(profile, recipe);
  EXPECT_EQ(profile.stringValue(keys::PreferredTargetWaterUUID), "t");
  EXPECT_EQ(profile.stringValue(keys::PreferredBaseWaterUUID), "own");
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
