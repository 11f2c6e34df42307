// The seed data and the style lists that come with the program.

#include "tests/support/Store.h"
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

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

/// A doubled word of more than two letters, or empty.
std::string doubledWordOf(const std::string& name) {
  static const std::regex word("[^ ,/()-]{3,}");
  const std::string text = lower(name);
  std::set<std::string> seen;
  for (std::sregex_iterator at(text.begin(), text.end(), word), end; at != end; ++at) {
    if (!seen.insert(at->str()).second) return at->str();
  }
  return {};
}

/// Degrees Lovibond before an "L" in the name.
std::optional<double> degreesIn(const std::string& name) {
  static const std::regex degrees(R"((\d+)L\b)");
  std::smatch found;
  return std::regex_search(name, found, degrees) ? std::optional(std::stod(found[1].str()))
                                                 : std::nullopt;
}

class SeedData : public testing::WithStore {
 protected:
  SeedData() { model().installInitialState(); }
  ~SeedData() override { ZYMStyles::tearDown(); }

  static void expectBetween(double low, double high, const PlistDictionary& record, KeyName key) {
    ASSERT_TRUE(record.string(key)) << key.text();
    EXPECT_GE(record.doubleValue(key), low) << key.text() << " of " << nameOf(record);
    EXPECT_LE(record.doubleValue(key), high) << key.text() << " of " << nameOf(record);
  }
  template <class Check>
  static void forEach(ZYMCachingModel& library, Check check) {
    const PlistArray items = library.allItems();
    for (const PlistDictionary& item : PlistRows(&items)) {
      if (!nameOf(item).starts_with(" ")) check(item, nameOf(item));
    }
  }
  static std::string nameOf(const PlistDictionary& record) {
    for (const KeyName key :
         {keys::Ingredient, keys::Variety, keys::Name, keys::ScheduleName, keys::ProfileName}) {
      if (record.contains(key)) return std::string(record.stringValue(key));
    }
    return "?";
  }

  ZYMFermentables& fermentables = ZYMFermentables::sharedInstance();
  ZYMHops& hops = ZYMHops::sharedInstance();
  ZYMYeasts& yeasts = ZYMYeasts::sharedInstance();
  ZYMOtherIngredients& others = ZYMOtherIngredients::sharedInstance();
  ZYMWaters& waters = ZYMWaters::sharedInstance();
  ZYMMashSchedules& schedules = ZYMMashSchedules::sharedInstance();
  ZYMProfiles& profiles = ZYMProfiles::sharedInstance();
};

TEST_F(SeedData, EveryLibraryIsFilledUnderNamesOfItsOwn) {
  const std::pair<ZYMCachingModel&, std::size_t> libraries[] = {
      {fermentables, 900}, {hops, 200},     {yeasts, 300}, {others, 80},
      {waters, 30},        {schedules, 12}, {profiles, 6}, {ZYMSuppliers::sharedInstance(), 0}};
  std::set<std::string> uuids;
  const auto isNew = [&](const PlistDictionary& record) {
    return uuids.insert(std::string(record.stringValue(keys::UUID))).second;
  };
  for (const auto& [library, atLeast] : libraries) {
    EXPECT_GE(library.allItems().size(), atLeast) << library.entityClass();
    std::set<std::string> names;
    forEach(library, [&](const PlistDictionary& item, const std::string& name) {
      EXPECT_TRUE(names.insert(lower(name)).second) << name;
      EXPECT_EQ(doubledWordOf(name), "") << name;
      EXPECT_TRUE(isNew(item)) << name;
      EXPECT_EQ(item.stringValue(keys::UUID).size(), 36U);
      for (const PlistDictionary& step : item.rows(keys::Steps)) EXPECT_TRUE(isNew(step)) << name;
    });
  }
}

// Recipes refer to seed records by these for ever.
TEST_F(SeedData, IdentitiesNeverChange) {
  const std::tuple<ZYMCachingModel&, const char*, const char*> cases[] = {
      {fermentables, "B0CDACB8-6DFF-5BB9-A13F-8DEB6FCFCD31", "Pale Malt"},
      {fermentables, "6051FD87-9B2E-5D6F-B4C6-AA8DE07E086A", "US Caramel 60"},
      {hops, "2E2BA8EE-94FD-5F9E-9A5D-9BB5E065F730", "Fuggle"},
      {yeasts, "3530FA9D-27ED-58B1-B38B-03AF58AC0CC2", "Safale US-05"},
      {waters, "B60B30EE-48C7-5076-87A4-1785AFDC2357", "Burton On Trent"},
      {schedules, "B3E356E2-5A6D-5ACE-BFB5-969587AFFC69", "Double Decoction"}};
  for (const auto& [library, uuid, name] : cases) {
    EXPECT_EQ(nameOf(library.itemWithUUID(uuid).value_or(PlistDictionary())), name);
  }
  EXPECT_EQ(yeasts.noChosenYeast().stringValue(keys::Name), " No Chosen Yeast");
  EXPECT_EQ(schedules.noChosenSchedule()->stringValue(keys::ScheduleName), " No Chosen Schedule");
  EXPECT_EQ(waters.summariesforAllItems().front().name, " No Water Profile Chosen");
}

// What an import makes of the commonest names.
TEST_F(SeedData, WhatImportsLookForIsThere) {
  const std::tuple<ZYMCachingModel&, const char*, const char*> cases[] = {
      {fermentables, "US Caramel 60", "US Caramel 60"},
      {fermentables, "UK Pale Malt", "UK Pale Malt"},
      {fermentables, "Corn Sugar/Dextrose", "Corn Sugar/Dextrose"},
      {fermentables, "US Caramel/Crystal Malt - 40L", "Caramel/Crystal Malt - 40L"},
      {fermentables, "Extract - US Light Dry Extract", "Extract - Light Dry Malt"},
      {fermentables, "Sugar - Belgium Candi Sugar, Clear", "Sugar - Belgian Candi - Clear"},
      {hops, "Germany Hallertauer", "Hallertauer"},
      {hops, "Mt. Hood", "Mount Hood"},
      {yeasts, "Safale American", "Safale American"},
      {yeasts, "White Labs WLP001 - California Ale Yeast", "WLP001 California Ale"}};
  for (const auto& [library, text, found] : cases) {
    EXPECT_EQ(
        nameOf(library.ingredientWithNameMostSimilarToString_matchingKeysAndValues(text, nullptr)),
        found);
  }
}

// Letters that repeat can make another name score above the name itself.
TEST_F(SeedData, EveryNameFindsItself) {
  for (ZYMCachingModel* library :
       std::initializer_list<ZYMCachingModel*>{&fermentables, &hops, &yeasts, &others}) {
    const PlistArray items = library->allItems();
    for (std::size_t i = 0; i < items.size(); ++i) {
      const std::string name = nameOf(*items.find(i)->dictionary());
      EXPECT_EQ(ZYMCachingModel::indexOfMostSimilarObjectToString_inArray_forKey(
                    name, &items, library->nameKeyInRecords()),
                static_cast<std::int64_t>(i))
          << name;
    }
  }
}

TEST_F(SeedData, NumbersArePlausible) {
  const std::tuple<ZYMCachingModel&, KeyName, double, double> cases[] = {
      {fermentables, keys::Extract, 0, 100},     {fermentables, keys::Color, 0, 750},
      {fermentables, keys::Moisture, 0, 15},     {hops, keys::Alpha, 1, 22},
      {yeasts, keys::Attenuation, 0, 100},       {profiles, keys::ExtractEfficiency, 50, 95},
      {profiles, keys::PreBoilVolume, 5000, 1e6}};
  for (const auto& [library, key, low, high] : cases) {
    forEach(library, [&](const PlistDictionary& item, const std::string& name) {
      expectBetween(low, high, item, key);
      const double colour = item.doubleValue(keys::Color);
      EXPECT_EQ(colour, degreesIn(name).value_or(colour)) << name;
      double last = 30;
      for (const PlistDictionary& step : item.rows(keys::Steps)) {
        expectBetween(last, 79, step, keys::Temperature);
        last = step.doubleValue(keys::Temperature);
      }
    });
  }
}

TEST_F(SeedData, WatersBalanceAndDiffer) {
  // By the weight of one charge, positive or negative.
  constexpr std::pair<KeyName, double> ions[] = {
      {keys::Calcium, 20.04},  {keys::Magnesium, 12.15}, {keys::Sodium, 22.99},
      {keys::Sulfate, -48.03}, {keys::Chloride, -35.45}, {keys::Carbonate, -61.02}};
  std::set<std::string> seen;
  forEach(waters, [&](const PlistDictionary& water, const std::string& name) {
    double positive = 0;
    double balance = 0;
    std::string profile;
    for (const auto& [key, weight] : ions) {
      expectBetween(0, 1000, water, key);
      positive += std::max(0.0, water.doubleValue(key) / weight);
      balance += water.doubleValue(key) / weight;
      profile.append(water.stringValue(key)) += ' ';
    }
    EXPECT_LE(std::abs(balance), 0.05 * positive) << name;
    EXPECT_TRUE(seen.insert(profile).second) << name;
  });
}

TEST_F(SeedData, StylesAreCompleteWithLowBelowHigh) {
  constexpr std::pair<KeyName, KeyName> bounds[] = {{keys::MinOG, keys::MaxOG},
                                                    {keys::MinFG, keys::MaxFG},
                                                    {keys::MinIBU, keys::MaxIBU},
                                                    {keys::MinColor, keys::MaxColor},
                                                    {keys::MinABV, keys::MaxABV}};
  ZYMStyles& styles = ZYMStyles::sharedInstance();
  for (const auto& [guidelines, count] : {std::pair{0, 98U}, std::pair{1, 142U}}) {
    const PlistArray all = styles.allStylesInGuidelines(guidelines);
    EXPECT_EQ(all.size(), count);
    for (const PlistDictionary& style : PlistRows(&all)) {
      EXPECT_FALSE(style.stringValue(keys::Category).empty());
      for (const auto& [low, high] : bounds) {
        ASSERT_TRUE(style.string(low) && style.string(high)) << nameOf(style);
        EXPECT_LE(style.doubleValue(low), style.doubleValue(high)) << nameOf(style);
      }
    }
  }
  EXPECT_EQ(styles.styleWithName_inGuidelines("Saison", 1)->doubleValue(keys::MaxABV), 7);
  EXPECT_EQ(styles.styleWithName_inGuidelines("Dry Stout", 0)->stringValue(keys::MinIBU), "30.0");
}

}  // namespace
}  // namespace zym
