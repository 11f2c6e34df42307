#include "tests/support/Child.h"
#include "tests/support/Store.h"
#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/store/ZYMCachingModel.h"
#include "zymcore/store/ZYMLibraryRegistry.h"

namespace zym {
namespace {

const KeyName HopsVersion{"HopsVersion"};

ZYMCachingModel& library(std::string_view entity) {
  return *ZYMLibraryRegistry::sharedInstance().libraryOfEntity(entity);
}

/// Seed files of a test's own, beside the host's object model.
class InitialState : public testing::WithStore {
 protected:
  InitialState() {
    std::filesystem::create_directories(resources);
    std::filesystem::copy(std::string(ZYM_RESOURCES) + "/WortmeisterCoreDataModel.momd", resources);
    NSBundle::setMainBundle(NSBundle(resources, "org.example", "1"));
    write("Hops", {{KeyName{"Version"}, "1.0"},
                   {KeyName{"Hops"}, PlistDictionary{{KeyName{"x"}, hop("F", "Fuggle")},
                                                     {KeyName{"y"}, hop("G", "Goldings")}}}});
    write("Waters", {{KeyName{"Version"}, "1.0"},
                     {KeyName{"Waters"}, PlistArray{hop("W", "Burton"), 7,
                                                    PlistDictionary{{keys::Name, "no uuid"}}}}});
  }
  static PlistDictionary hop(const char* uuid, const char* name) {
    return {{keys::UUID, uuid}, {keys::Variety, name}, {keys::Name, name}};
  }
  void write(const std::string& name, const PlistDictionary& content) const {
    std::ofstream(resources + "/" + name + ".plist")
        << *NSPropertyListSerialization::dataWithPropertyList_format(
               content, NSPropertyListFormat::BinaryFormat_v1_0);
  }
  static std::vector<std::string> hops() {
    return namesOf(library("ZYMHopEntity").summariesforAllItems());
  }
  const std::string resources = folder / "resources";
};

TEST_F(InitialState, FillsTheLibrariesAndRemembersTheVersions) {
  set(KeyName{"YeastsVersion"}, "5");
  (void)context();
  const testing::Posts posts{CoreDataModelReloadNowNotification};
  model().installInitialState();
  EXPECT_THAT(hops(), ElementsAre("Fuggle", "Goldings"));
  EXPECT_EQ(library("ZYMWaterEntity").allItems().size(), 1U);
  EXPECT_TRUE(library("ZYMSupplierEntity").allItems().empty());
  EXPECT_EQ(defaults().stringForKey(HopsVersion), "1.0");
  EXPECT_FALSE(defaults().objectForKey(KeyName{"YeastsVersion"}));  // its file is missing
  EXPECT_EQ(posts.names.size(), 1U);
}

TEST_F(InitialState, OnlyALibraryOfAnotherVersionIsInstalledAgain) {
  for (const char* name :
       {"Fermentables", "OtherIngredients", "Yeasts", "Mash Schedules", "Profiles", "Retailers"}) {
    write(name, {{KeyName{"Version"}, "1"}});
  }
  model().installInitialState();
  PlistDictionary edited = *library("ZYMHopEntity").itemWithUUID("F");
  edited.set(keys::Variety, "My Fuggle");
  library("ZYMHopEntity").updateItem(edited);
  PlistDictionary water = *library("ZYMWaterEntity").itemWithUUID("W");
  water.set(keys::Notes, "mine");
  library("ZYMWaterEntity").updateItem(water);

  const testing::Posts posts{CoreDataModelReloadNowNotification};
  model().checkVersionsAndUpdateIfNecessary();
  EXPECT_THAT(hops(), ElementsAre("Goldings", "My Fuggle"));
  EXPECT_THAT(posts.names, IsEmpty());

  write("Hops", {{KeyName{"Version"}, "1.00"},
                 {KeyName{"Hops"}, PlistDictionary{{KeyName{"x"}, hop("F", "Fuggle")}}}});
  model().checkVersionsAndUpdateIfNecessary();
  EXPECT_THAT(hops(), ElementsAre("Fuggle", "Goldings"));  // what isn't listed any more stays
  EXPECT_EQ(library("ZYMWaterEntity").itemWithUUID("W")->stringValue(keys::Notes), "mine");
  EXPECT_EQ(posts.names.size(), 1U);
  EXPECT_EQ(defaults().stringForKey(HopsVersion), "1.00");
}

TEST_F(InitialState, AMissingFileCountsAsNotInstalledEachTime) {
  model().installInitialState();
  const testing::Posts posts{CoreDataModelReloadNowNotification};
  model().checkVersionsAndUpdateIfNecessary();
  model().checkVersionsAndUpdateIfNecessary();
  EXPECT_EQ(posts.names.size(), 2U);
}

TEST_F(InitialState, BadSeedFilesLeaveASoundStore) {
  const PlistArray twins{hop("T", "one"), hop("T", "two")};
  for (const PlistDictionary& bad :
       {PlistDictionary{{KeyName{"Hops"}, "text"}, {KeyName{"Version"}, 7}},
        PlistDictionary{{KeyName{"Hop"}, PlistArray()}},
        PlistDictionary{{KeyName{"Hops"}, PlistDictionary{{KeyName{"x"}, PlistArray()}}}},
        PlistDictionary{{KeyName{"Hops"}, twins}, {KeyName{"Version"}, "2"}}}) {
    write("Hops", bad);
    model().checkVersionsAndUpdateIfNecessary();
  }
  EXPECT_THAT(hops(), ElementsAre("two"));  // one record, the last
  std::ofstream(resources + "/Hops.plist") << "no property list";
  model().checkVersionsAndUpdateIfNecessary();
  EXPECT_FALSE(defaults().objectForKey(HopsVersion));
  reopen();
  EXPECT_THAT(hops(), ElementsAre("two"));
}

// Each process that starts on a new folder would otherwise find no record and add its own.
TEST_F(InitialState, ProgramsThatStartTogetherFillTheStoreOnce) {
  NSBundle::setMainBundle(NSBundle(ZYM_RESOURCES, "org.zymcore.tests", "1"));
  std::vector<std::unique_ptr<Child>> programs;
  for (int i = 0; i < 6; ++i) {
    programs.push_back(std::make_unique<Child>([&](int pipe) {
      defaults().setPersistentFile(folder / "Preferences.plist");
      const testing::Posts posts{CoreDataModelDidSaveFailedNotification};
      const ZYMCoreDataModel::Lock lock = model().lockDataFolder();
      (void)model().mainObjectContext();
      if (model().firstRun()) {
        model().installInitialState();
      } else {
        model().checkVersionsAndUpdateIfNecessary();
      }
      Child::tell(pipe, model().firstRun() ? 1 : 0);
      Child::tell(pipe, std::ssize(posts.names));
    }));
  }
  std::int64_t firstRuns = 0;
  for (const auto& program : programs) {
    firstRuns += program->hear(120'000).value_or(100);
    EXPECT_EQ(program->hear(60'000), 0) << "failed saves";
  }
  EXPECT_EQ(firstRuns, 1);
  for (const ZYMLibraryRegistry::Library& library :
       ZYMLibraryRegistry::sharedInstance().libraries()) {
    std::set<std::string> uuids;
    const PlistArray items = library.sharedInstance().allItems();
    for (const PlistDictionary& item : PlistRows(&items)) {
      EXPECT_TRUE(uuids.insert(std::string(item.stringValue(keys::UUID))).second);
    }
  }
}

TEST_F(InitialState, AHundredThousandSeedRecords) {
  std::vector<PlistValue> records;
  for (int i = 0; i < 100000; ++i)
    records.emplace_back(PlistDictionary{{keys::UUID, std::to_string(i)}, {keys::Variety, "Hop"}});
  write("Hops", {{KeyName{"Version"}, "2"}, {KeyName{"Hops"}, PlistArray(std::move(records))}});
  model().checkVersionsAndUpdateIfNecessary();
  EXPECT_EQ(hops().size(), 100000U);
}

}  // namespace
}  // namespace zym
