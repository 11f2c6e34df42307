// The seed data and the style lists that come with the program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

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
using ::testing::Lt;

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

bool names(const std::string& text, const char* pattern) {
  return std::regex_search(text, std::regex(pattern, std::regex::icase));
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
       {Library{ZYMFermentables::sharedInstance(), 900}, Library{ZYMHops::sharedInstance(), 200},
        Library{ZYMYeasts::sharedInstance(), 300},
        Library{ZYMOtherIngredients::sharedInstance(), 80},
        Library{ZYMWaters::sharedInstance(), 30}, Library{ZYMMashSchedules::sharedInstance(), 12},
        Library{ZYMProfiles::sharedInstance(), 6}, Library{ZYMSuppliers::sharedInstance(), 0}}) {
    const PlistArray items = library.model.allItems();
    EXPECT_GE(items.size(), library.atLeast) << library.model.entityClass();
    std::set<std::string> names;
    for (const PlistDictionary& item : PlistRows(&items)) {
      EXPECT_TRUE(names.insert(lower(nameOf(item))).second) << nameOf(item);
      EXPECT_EQ(doubledWordOf(nameOf(item)), "") << nameOf(item);
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
        Known{ZYMYeasts::sharedInstance(), "3530FA9D-27ED-58B1-B38B-03AF58AC0CC2", "Safale US-05"},
        Known{ZYMWaters::sharedInstance(), "B60B30EE-48C7-5076-87A4-1785AFDC2357",
              "Burton On Trent"},
        Known{ZYMMashSchedules::sharedInstance(), "B3E356E2-5A6D-5ACE-BFB5-969587AFFC69",
              "Double Decoction"}}) {
    const auto item = known.library.itemWithUUID(known.uuid);
    ASSERT_TRUE(item) << known.name;
    EXPECT_EQ(nameOf(*item), known.name);
  }
}

// What an import makes of the commonest names.
TEST_F(SeedData, WhatImportsLookForIsThere) {
  struct Wanted {
    ZYMCachingModel& library;
    const char* text;
    const char* found;
  };
  for (const Wanted& wanted :
       {Wanted{ZYMFermentables::sharedInstance(), "US Caramel 60", "US Caramel 60"},
        Wanted{ZYMFermentables::sharedInstance(), "UK Pale Malt", "UK Pale Malt"},
        Wanted{ZYMFermentables::sharedInstance(), "Corn Sugar/Dextrose", "Corn Sugar/Dextrose"},
        Wanted{ZYMFermentables::sharedInstance(), "US Caramel/Crystal Malt - 40L",
               "Caramel/Crystal Malt - 40L"},
        Wanted{ZYMFermentables::sharedInstance(), "Extract - US Light Dry Extract",
               "Extract - Light Dry Malt"},
        Wanted{ZYMFermentables::sharedInstance(), "Sugar - Belgium Candi Sugar, Clear",
               "Sugar - Belgian Candi - Clear"},
        Wanted{ZYMHops::sharedInstance(), "Germany Hallertauer", "Hallertauer"},
        Wanted{ZYMHops::sharedInstance(), "Mt. Hood", "Mount Hood"},
        Wanted{ZYMYeasts::sharedInstance(), "Safale American", "Safale American"},
        Wanted{ZYMYeasts::sharedInstance(), "White Labs WLP001 - California Ale Yeast",
               "WLP001 California Ale"}}) {
    EXPECT_EQ(wanted.library
                  .ingredientWithNameMostSimilarToString_matchingKeysAndValues(wanted.text, nullptr)
                  .stringValue(wanted.library.nameKeyInRecords()),
              wanted.found);
  }
}

// Names and figures as recipe files give them. A figure that its own name belies is left out, and
// one that no hop or yeast has: a slip of the decimal point in the file.
TEST_F(SeedData, NamesInFilesFindTheirLike) {
  const char* given = std::getenv("ZYM_FACTS");
  std::ifstream file((given ? std::filesystem::path(given)
                            : std::filesystem::path(ZYM_RESOURCES) / "../../../shared/facts") /
                     "names_in_files.tsv");
  if (!file) GTEST_SKIP() << "the names are not here";
  struct Kind {
    ZYMCachingModel& library;
    KeyName figure;
    double least;
  };
  const std::map<std::string, Kind> kinds{
      {"Fermentable", {ZYMFermentables::sharedInstance(), keys::Color, 0}},
      {"Hop", {ZYMHops::sharedInstance(), keys::Alpha, 2}},
      {"Yeast", {ZYMYeasts::sharedInstance(), keys::Attenuation, 50}}};
  double total = 0;
  double alike = 0;
  std::string apart;
  for (std::string line; std::getline(file, line);) {
    std::istringstream cells(line);
    std::string kind, name, times, text;
    std::getline(
        std::getline(std::getline(std::getline(cells, kind, '\t'), name, '\t'), times, '\t'), text);
    const auto known = kinds.find(kind);
    if (known == kinds.end()) continue;
    const auto& [library, key, least] = known->second;
    const PlistDictionary found =
        library.ingredientWithNameMostSimilarToString_matchingKeysAndValues(name, nullptr);
    if (kind == "Yeast") {
      EXPECT_EQ(found.stringValue(keys::BeerType) == "Lager", names(name, "lager|pils|urq"))
          << name << " finds " << nameOf(found);
    }
    if (text.empty()) continue;
    const double figure = std::stod(text);
    const auto isNear = [&](double other) {
      return std::abs(other - figure) <= (kind == "Yeast" ? 5 : std::max(1.5, 0.35 * figure));
    };
    if (figure < least || !isNear(degreesIn(name).value_or(figure))) continue;
    ++total;
    if (isNear(found.doubleValue(key))) {
      ++alike;
    } else {
      apart += name + " (" + text + ") finds " + nameOf(found) + "\n";
    }
  }
  EXPECT_GE(alike, 0.95 * total) << apart;
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
    expectBetween(0, 750, item, keys::Color);
    expectBetween(0, 15, item, keys::Moisture);
    EXPECT_TRUE(item.boolValue(keys::IsGrain) || !item.boolValue(keys::MustBeMashed))
        << nameOf(item);
    const double colour = item.doubleValue(keys::Color);
    EXPECT_EQ(colour, degreesIn(nameOf(item)).value_or(colour)) << nameOf(item);
  }
  const PlistArray hops = ZYMHops::sharedInstance().allItems();
  for (const PlistDictionary& item : PlistRows(&hops)) expectBetween(1, 22, item, keys::Alpha);
  const PlistArray yeasts = ZYMYeasts::sharedInstance().allItems();
  for (const PlistDictionary& item : PlistRows(&yeasts)) {
    const bool isBacteria = names(nameOf(item), "lacto|pedio|bacteria");
    expectBetween(isBacteria ? 0 : 50, isBacteria ? 0 : 100, item, keys::Attenuation);
  }
  const PlistArray waters = ZYMWaters::sharedInstance().allItems();
  for (const PlistDictionary& item : PlistRows(&waters)) {
    for (const KeyName ion : {keys::Calcium, keys::Magnesium, keys::Sodium, keys::Sulfate,
                              keys::Chloride, keys::Carbonate}) {
      expectBetween(0, 1000, item, ion);
    }
  }
}

// What its maker calls by the name of a generic malt is mashed as that.
TEST_F(SeedData, MaltsAreMashedAsTheirGenericTwins) {
  const PlistArray fermentables = ZYMFermentables::sharedInstance().allItems();
  for (const char* word : {"Munich", "Amber", "Brown", "Biscuit", "Vienna", "Pilsner"}) {
    for (const PlistDictionary& item : PlistRows(&fermentables)) {
      const std::string name = nameOf(item);
      if (!item.boolValue(keys::IsGrain) || !names(name, word)) continue;
      const bool isCaramel = names(name, "cara(?!brown)|goldswaen");
      EXPECT_EQ(item.boolValue(keys::MustBeMashed), !isCaramel) << name;
    }
  }
}

TEST_F(SeedData, AttenuationsAreTheMakersOwn) {
  const PlistArray yeasts = ZYMYeasts::sharedInstance().allItemsWithoutNoChosenYeastOption();
  std::map<double, double> shares;
  for (const PlistDictionary& yeast : PlistRows(&yeasts)) {
    shares[yeast.doubleValue(keys::Attenuation)] += 1;
    if (names(nameOf(yeast), "lager|pils|urquell|bock")) {
      EXPECT_EQ(yeast.stringValue(keys::BeerType), words::Lager) << nameOf(yeast);
    }
  }
  shares.erase(75);  // 73 to 77 is what makers tell of their plain yeasts
  for (const auto& [attenuation, count] : shares) {
    EXPECT_LT(count, 0.1 * static_cast<double>(yeasts.size())) << attenuation;
  }
}

// A variety under two spellings would have two figures.
TEST_F(SeedData, EveryHopIsThereOnce) {
  const PlistArray hops = ZYMHops::sharedInstance().allItems();
  std::set<std::string> varieties;
  for (const PlistDictionary& hop : PlistRows(&hops)) {
    std::string name = std::regex_replace(lower(nameOf(hop)), std::regex("[^a-z0-9\x80-\xff]"), "");
    name = std::regex_replace(name, std::regex("^(mount|mt)|s$"), "");
    EXPECT_TRUE(varieties.insert(name).second) << nameOf(hop);
  }
}

TEST_F(SeedData, WatersBalanceAndTargetsDiffer) {
  constexpr std::pair<KeyName, double> cations[] = {
      {keys::Calcium, 20.04}, {keys::Magnesium, 12.15}, {keys::Sodium, 22.99}};
  constexpr std::pair<KeyName, double> anions[] = {
      {keys::Sulfate, 48.03}, {keys::Chloride, 35.45}, {keys::Carbonate, 61.02}};
  const auto charge = [](const PlistDictionary& water, const auto& ions) {
    double sum = 0;
    for (const auto& [key, weight] : ions) sum += water.doubleValue(key) / weight;
    return sum;
  };
  const PlistArray waters = ZYMWaters::sharedInstance().allItemsWithoutNoChosenWaterOption();
  std::set<std::string> profiles;
  for (const PlistDictionary& water : PlistRows(&waters)) {
    const double positive = charge(water, cations);
    EXPECT_LE(std::abs(positive - charge(water, anions)), 0.05 * positive) << nameOf(water);
    std::string profile;
    for (const auto& [key, weight] : cations) profile.append(water.stringValue(key)) += ' ';
    for (const auto& [key, weight] : anions) profile.append(water.stringValue(key)) += ' ';
    EXPECT_TRUE(profiles.insert(profile).second) << nameOf(water);
  }
  const auto target = [](const char* name) {
    return ZYMWaters::sharedInstance().waterWithName(name).value();
  };
  EXPECT_GT(target("Target - Pale Ale").doubleValue(keys::Sulfate),
            2 * target("Target - Pale Ale").doubleValue(keys::Chloride));
  EXPECT_THAT(charge(target("Target - Pilsner"), cations), Lt(2));
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
      if (style.stringValue(keys::Type) == "Beer") {
        expectBetween(1, 4, style, keys::CarbonationVolumes);
      } else {
        EXPECT_THAT(style.stringValue(keys::Type), ::testing::AnyOf("Mead", "Cider"));
      }
      for (const auto& [low, high] : bounds) {
        ASSERT_TRUE(style.string(low) && style.string(high)) << nameOf(style);
        EXPECT_LE(style.doubleValue(low), style.doubleValue(high)) << nameOf(style);
      }
    }
  }
  const auto saison = ZYMStyles::sharedInstance().styleWithName_inGuidelines("Saison", 1);
  EXPECT_EQ(saison->doubleValue(keys::MinABV), 5);
  EXPECT_EQ(saison->doubleValue(keys::MaxABV), 7);
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
