// The seed data and the style lists that come with the program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "tests/support/Store.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/ZYMOtherIngredients.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/library/ZYMSuppliers.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/ZYMYeasts.h"

namespace zym {
namespace {

using ::testing::AllOf;
using ::testing::Ge;
using ::testing::Le;

class SeedData : public testing::WithStore {
 protected:
  SeedData() { model().installInitialState(); }
  ~SeedData() override { ZYMStyles::tearDown(); }

  static void expectBetween(double low, double high, const PlistDictionary& record, KeyName key) {
    ASSERT_TRUE(record.string(key)) << key.text();
    EXPECT_THAT(record.doubleValue(key), AllOf(Ge(low), Le(high)))
        << key.text() << " of " << nameOf(record);
  }
  static std::string nameOf(const PlistDictionary& record) {
    for (const KeyName key :
         {keys::Ingredient, keys::Variety, keys::Name, keys::ScheduleName, keys::ProfileName}) {
      if (record.contains(key)) return std::string(record.stringValue(key));
    }
    return "?";
  }
};

TEST_F(SeedData, EveryLibraryIsFilledUnderNamesOfItsOwn) {
  struct Library {
    ZYMCachingModel& model;
    std::size_t atLeast;
  };
  std::set<std::string> uuids;
  for (const Library& library :
       {Library{ZYMFermentables::sharedInstance(), 300}, Library{ZYMHops::sharedInstance(), 200},
        Library{ZYMYeasts::sharedInstance(), 250},
        Library{ZYMOtherIngredients::sharedInstance(), 80},
        Library{ZYMWaters::sharedInstance(), 30}, Library{ZYMMashSchedules::sharedInstance(), 12},
        Library{ZYMProfiles::sharedInstance(), 6}, Library{ZYMSuppliers::sharedInstance(), 0}}) {
    const PlistArray items = library.model.allItems();
    EXPECT_GE(items.size(), library.atLeast) << library.model.entityClass();
    std::set<std::string> names;
    for (const PlistDictionary& item : PlistRows(&items)) {
      EXPECT_TRUE(names.insert(nameOf(item)).second) << nameOf(item);
      EXPECT_TRUE(uuids.insert(std::string(item.stringValue(keys::UUID))).second) << nameOf(item);
      EXPECT_EQ(item.stringValue(keys::UUID).size(), 36U);
      for (const PlistDictionary& step : item.rows(keys::Steps)) {
        EXPECT_TRUE(uuids.insert(std::string(step.stringValue(keys::UUID))).second) << nameOf(item);
      }
    }
  }
}

// Recipes refer to seed records by these for ever.
TEST_F(SeedData, IdentitiesNeverChange) {
  struct Known {
    ZYMCachingModel& library;
    const char* uuid;
    const char* name;
  };
  for (const Known& known :
       {Known{ZYMFermentables::sharedInstance(), "B0CDACB8-6DFF-5BB9-A13F-8DEB6FCFCD31",
              "Pale Malt"},
        Known{ZYMFermentables::sharedInstance(), "6051FD87-9B2E-5D6F-B4C6-AA8DE07E086A",
              "US Caramel 60"},
        Known{ZYMHops::sharedInstance(), "2E2BA8EE-94FD-5F9E-9A5D-9BB5E065F730", "Fuggle"},
        Known{ZYMYeasts::sharedInstance(), "3530FA9D-27ED-58B1-B38B-03AF58AC0CC2",
              "Fermentis US-05 SafAle US-05"},
        Known{ZYMWaters::sharedInstance(), "B60B30EE-48C7-5076-87A4-1785AFDC2357",
              "Burton On Trent"},
        Known{ZYMMashSchedules::sharedInstance(), "B3E356E2-5A6D-5ACE-BFB5-969587AFFC69",
              "Double Decoction"}}) {
    const auto item = known.library.itemWithUUID(known.uuid);
    ASSERT_TRUE(item) << known.name;
    EXPECT_EQ(nameOf(*item), known.name);
  }
}

TEST_F(SeedData, WhatImportsLookForIsThere) {
  ZYMFermentables& fermentables = ZYMFermentables::sharedInstance();
  for (const char* name : {"US Caramel 60", "Pale Malt", "UK Pale Malt", "Corn Sugar/Dextrose",
                           "Extract - Light Dry Malt", "Sugar - Candi Sugar, Clear"}) {
    EXPECT_EQ(
        fermentables.ingredientWithNameMostSimilarToString_matchingKeysAndValues(name, nullptr)
            .stringValue(keys::Ingredient),
        name);
  }
}

// Letters that repeat can make another name score above the name itself.
TEST_F(SeedData, EveryNameFindsItself) {
  for (ZYMCachingModel* library : std::initializer_list<ZYMCachingModel*>{
           &ZYMFermentables::sharedInstance(), &ZYMHops::sharedInstance(),
           &ZYMYeasts::sharedInstance(), &ZYMOtherIngredients::sharedInstance()}) {
    const PlistArray items = library->allItems();
    for (std::size_t i = 0; i < items.size(); ++i) {
      const std::string name = nameOf(*items.find(i)->dictionary());
      const std::int64_t found = ZYMCachingModel::indexOfMostSimilarObjectToString_inArray_forKey(
          name, &items, library->nameKeyInRecords());
      EXPECT_EQ(found, static_cast<std::int64_t>(i))
          << name << " finds "
          << (found < 0 ? "nothing"
                        : nameOf(*items.find(static_cast<std::size_t>(found))->dictionary()));
    }
  }
}

TEST_F(SeedData, TheFirstByNameStandsForNoChoice) {
  EXPECT_EQ(ZYMYeasts::sharedInstance().noChosenYeast().stringValue(keys::Name),
            " No Chosen Yeast");
  EXPECT_EQ(ZYMMashSchedules::sharedInstance().noChosenSchedule()->stringValue(keys::ScheduleName),
            " No Chosen Schedule");
  EXPECT_EQ(ZYMWaters::sharedInstance().summariesforAllItems().front().name,
            " No Water Profile Chosen");
}

TEST_F(SeedData, NumbersArePlausible) {
  const PlistArray fermentables = ZYMFermentables::sharedInstance().allItems();
  for (const PlistDictionary& item : PlistRows(&fermentables)) {
    expectBetween(0, 100, item, keys::Extract);
    expectBetween(0, 700, item, keys::Color);
    expectBetween(0, 15, item, keys::Moisture);
    EXPECT_TRUE(item.boolValue(keys::IsGrain) || !item.boolValue(keys::MustBeMashed))
        << nameOf(item);
  }
  const PlistArray hops = ZYMHops::sharedInstance().allItems();
  for (const PlistDictionary& item : PlistRows(&hops)) expectBetween(1, 22, item, keys::Alpha);
  const PlistArray yeasts = ZYMYeasts::sharedInstance().allItems();
  for (const PlistDictionary& item : PlistRows(&yeasts))
    expectBetween(50, 100, item, keys::Attenuation);
  const PlistArray waters = ZYMWaters::sharedInstance().allItems();
  for (const PlistDictionary& item : PlistRows(&waters)) {
    for (const KeyName ion : {keys::Calcium, keys::Magnesium, keys::Sodium, keys::Sulfate,
                              keys::Chloride, keys::Carbonate}) {
      expectBetween(0, 1000, item, ion);
    }
  }
}

TEST_F(SeedData, SchedulesRiseInTemperature) {
  const PlistArray schedules =
      ZYMMashSchedules::sharedInstance().allItemsWithoutNoChosenScheduleOption();
  for (const PlistDictionary& schedule : PlistRows(&schedules)) {
    double last = 30;
    for (const PlistDictionary& step : schedule.rows(keys::Steps)) {
      EXPECT_NE(words::positionOf(step.stringValue(keys::StepType), words::stepTypes), NSNotFound);
      expectBetween(5, 90, step, keys::Duration);
      EXPECT_GT(step.doubleValue(keys::Temperature), last) << nameOf(schedule);
      last = step.doubleValue(keys::Temperature);
    }
    EXPECT_LT(last, 79);
    EXPECT_FALSE(schedule.array(keys::Steps)->empty()) << nameOf(schedule);
  }
}

TEST_F(SeedData, ProfilesLoseVolumeOnTheWay) {
  const PlistArray profiles = ZYMProfiles::sharedInstance().allItems();
  for (const PlistDictionary& p : PlistRows(&profiles)) {
    EXPECT_GT(p.doubleValue(keys::PreBoilVolume), p.doubleValue(keys::PostBoilVolume)) << nameOf(p);
    EXPECT_GE(p.doubleValue(keys::PostBoilVolume), p.doubleValue(keys::VolumeToFermenter))
        << nameOf(p);
    EXPECT_EQ(p.doubleValue(keys::VolumeToFermenter) + p.doubleValue(keys::VolumeWaterAdded),
              p.doubleValue(keys::VolumeAtPitching))
        << nameOf(p);
    EXPECT_GE(p.doubleValue(keys::VolumeAtPitching), p.doubleValue(keys::FinishedBatchVolume))
        << nameOf(p);
    expectBetween(50, 95, p, keys::ExtractEfficiency);
    EXPECT_TRUE(
        ZYMMashSchedules::sharedInstance().itemWithUUID(p.stringValue(keys::PreferredMashSchedule)))
        << nameOf(p);
    EXPECT_TRUE(
        ZYMWaters::sharedInstance().itemWithUUID(p.stringValue(keys::PreferredTargetWaterUUID)))
        << nameOf(p);
    EXPECT_NE(words::positionOf(p.stringValue(keys::PreferredRecipeType), words::mashTypes),
              NSNotFound);
    EXPECT_NE(words::positionOf(p.stringValue(keys::PreferredSpargeMethod), words::spargeMethods),
              NSNotFound);
  }
}

TEST_F(SeedData, StylesAreCompleteWithLowBelowHigh) {
  constexpr std::pair<KeyName, KeyName> bounds[] = {{keys::MinOG, keys::MaxOG},
                                                    {keys::MinFG, keys::MaxFG},
                                                    {keys::MinIBU, keys::MaxIBU},
                                                    {keys::MinColor, keys::MaxColor},
                                                    {keys::MinABV, keys::MaxABV}};
  std::set<std::string> uuids;
  for (const auto& [guidelines, count] : {std::pair{0, 98U}, std::pair{1, 142U}}) {
    const PlistArray styles = ZYMStyles::sharedInstance().allStylesInGuidelines(guidelines);
    EXPECT_EQ(styles.size(), count);
    for (const PlistDictionary& style : PlistRows(&styles)) {
      EXPECT_TRUE(uuids.insert(std::string(style.stringValue(keys::UUID))).second) << nameOf(style);
      EXPECT_FALSE(style.stringValue(keys::Category).empty());
      EXPECT_FALSE(style.stringValue(keys::Type).empty());
      for (const auto& [low, high] : bounds) {
        ASSERT_TRUE(style.string(low) && style.string(high)) << nameOf(style);
        EXPECT_LE(style.doubleValue(low), style.doubleValue(high)) << nameOf(style);
      }
    }
  }
  EXPECT_EQ(ZYMStyles::sharedInstance()
                .styleWithName_inGuidelines("Irish Stout", 1)
                ->stringValue(keys::MaxOG),
            "1.044");
  EXPECT_EQ(ZYMStyles::sharedInstance()
                .styleWithName_inGuidelines("Dry Stout", 0)
                ->stringValue(keys::MinIBU),
            "30.0");
}

}  // namespace
}  // namespace zym
