#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <thread>

#include "tests/support/Store.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/ZYMHopEntity.h"

namespace zym {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* saved = CoreDataModelDidSaveNotification;
constexpr const char* saveFailed = CoreDataModelDidSaveFailedNotification;
constexpr const char* firstRun = CoreDataModelFirstRunNotification;
constexpr const char* reload = CoreDataModelReloadNowNotification;

class CoreDataModel : public testing::WithStore {
 protected:
  static void addHop(const char* name) {
    PlistDictionary record{{keys::Variety, name}};
    ZYMHopEntity::insertInContext(context()).updateWithDictionaryRepresentation(record);
  }
  static std::size_t hops() { return ZYMHopEntity::findAllObjects()->size(); }
};

/// What is logged while it lives.
class Log {
 public:
  Log() {
    setNSLogSink([this](std::string_view line) { lines.emplace_back(line); });
  }
  ~Log() { setNSLogSink({}); }
  std::vector<std::string> lines;
};

/// Environment with folders of its own for a user.
class WithHome : public testing::WithDefaults {
 protected:
  WithHome() {
    setenv("HOME", home.path().c_str(), 1);
    setenv("XDG_DATA_HOME", (home / "data").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);
    NSBundle::setMainBundle(NSBundle(ZYM_RESOURCES, "org.example", "1"));
  }
  ~WithHome() override {
    ZYMCoreDataModel::tearDown();
    NSBundle::setMainBundle(NSBundle());
    if (before.empty())
      unsetenv("HOME");
    else
      setenv("HOME", before.c_str(), 1);
    unsetenv("XDG_DATA_HOME");
    unsetenv("XDG_CONFIG_HOME");
  }
  static ZYMCoreDataModel& model() { return ZYMCoreDataModel::sharedInstance(); }

  const std::string before = getenv("HOME") ? getenv("HOME") : "";
  const TemporaryFolder home;
};

TEST_F(CoreDataModel, AFirstRunIsToldOnce) {
  const testing::Posts posts{firstRun, reload};
  EXPECT_TRUE(model().mainObjectContext());
  EXPECT_THAT(posts.names, ElementsAre(reload, firstRun));
  EXPECT_TRUE(model().firstRun());
  (void)model().mainObjectContext();
  EXPECT_EQ(posts.names.size(), 2U);
  reopen();
  (void)model().mainObjectContext();
  EXPECT_FALSE(model().firstRun());
  EXPECT_EQ(posts.names.size(), 2U);
}

TEST_F(CoreDataModel, SavingTellsWhatHappened) {
  (void)model().mainObjectContext();
  const testing::Posts posts{saved, saveFailed};
  model().save();
  EXPECT_THAT(posts.names, IsEmpty());
  addHop("Fuggle");
  model().save();
  model().save();
  EXPECT_THAT(posts.names, ElementsAre(saved));
  reopen();
  EXPECT_EQ(hops(), 1U);
}

TEST_F(CoreDataModel, ASaveCancelsATimedOne) {
  (void)model().mainObjectContext();
  const auto timer = NSTimer::scheduledTimerWithTimeInterval_repeats_block(
      1000, false, [](NSTimer& t) { model().timedSave(t); });
  model().setSaveTimer(timer);
  model().save();  // though nothing has changed
  EXPECT_FALSE(timer->isValid());
  EXPECT_FALSE(model().saveTimer());
}

TEST_F(CoreDataModel, ATimedSaveSaves) {
  addHop("Fuggle");
  const testing::Posts posts{saved};
  model().setSaveTimer(NSTimer::scheduledTimerWithTimeInterval_repeats_block(
      0, false, [](NSTimer& t) { model().timedSave(t); }));
  EXPECT_TRUE(NSRunLoop::mainRunLoop().runUntil([&] { return !posts.names.empty(); }, 10));
}

TEST_F(CoreDataModel, AFailedSaveIsLoggedAndLosesNothing) {
  addHop("Fuggle");
  model().save();
  ZYMHopEntity& hop = *ZYMHopEntity::findAllObjects()->front();
  hop.setName("ours");
  // Another context saves the same object first.
  NSManagedObjectContext other(NSPrivateQueueConcurrencyType);
  other.setPersistentStoreCoordinator(model().persistentStoreCoordinator());
  other.performBlockAndWait([&] {
    (*ZYMHopEntity::findAllObjectsInContext_predicate_sortDescriptor(&other, {}, {}))[0]->setName(
        "theirs");
    EXPECT_TRUE(other.save());
  });
  const testing::Posts posts{saved, saveFailed};
  const Log log;
  model().save();
  EXPECT_THAT(posts.names, ElementsAre(saveFailed));
  EXPECT_THAT(log.lines,
              ElementsAre(HasSubstr("Failed to save to data store: "), HasSubstr("  {")));
  EXPECT_EQ(hop.name(), "ours");
  EXPECT_TRUE(context().hasChanges());
  context().rollback();
}

TEST_F(CoreDataModel, EveryUndoAndRedoAsksForAReload) {
  (void)model().mainObjectContext();
  undoManager().beginUndoGrouping();
  addHop("Fuggle");
  undoManager().endUndoGrouping();
  const testing::Posts posts{reload};
  undoManager().undo();
  EXPECT_EQ(hops(), 0U);
  EXPECT_THAT(posts.names, ElementsAre(reload));
  undoManager().redo();
  EXPECT_EQ(hops(), 1U);
  EXPECT_EQ(posts.names.size(), 2U);
  NSUndoManager another;
  another.registerUndo([] {});
  another.undo();
  EXPECT_EQ(posts.names.size(), 3U);
}

TEST_F(CoreDataModel, MergesWhatTheHostSavedElsewhere) {
  addHop("Fuggle");
  model().save();
  ZYMHopEntity& hop = *ZYMHopEntity::findAllObjects()->front();
  NSManagedObjectContext other(NSPrivateQueueConcurrencyType);
  other.setPersistentStoreCoordinator(model().persistentStoreCoordinator());
  const testing::Posts posts{reload};
  const auto token = NSNotificationCenter::defaultCenter().addObserverForName_object(
      NSManagedObjectContextDidSaveNotification, nullptr,
      [](const NSNotification& n) { model().mergeSavedContext(n); });
  std::thread thread([&] {
    other.performBlockAndWait([&] {
      (*ZYMHopEntity::findAllObjectsInContext_predicate_sortDescriptor(&other, {}, {}))[0]->setName(
          "Bramling Cross");
      (void)other.save();
    });
  });
  EXPECT_TRUE(NSRunLoop::mainRunLoop().runUntil([&] { return !posts.names.empty(); }, 10));
  thread.join();
  EXPECT_EQ(hop.name(), "Bramling Cross");
  hop.setName("Fuggle");
  model().save();  // the main context's own
  EXPECT_EQ(posts.names.size(), 1U);
}

TEST_F(CoreDataModel, OtherThreadsGetTheMainContextAndPostOnTheMainThread) {
  NSManagedObjectContext* seen = nullptr;
  bool posted = false;
  bool onMainThread = false;
  const auto token = NSNotificationCenter::defaultCenter().addObserverForName_object(
      "Ours", nullptr, [&](const NSNotification&) { onMainThread = NSRunLoop::isMainThread(); });
  std::thread thread([&] {
    seen = model().mainObjectContext();
    model().postNotificationOnMainThreadWithName("Ours");
    NSRunLoop::mainRunLoop().performBlock([&] { posted = true; });
  });
  EXPECT_TRUE(NSRunLoop::mainRunLoop().runUntil([&] { return posted; }, 10));
  thread.join();
  EXPECT_EQ(seen, &context());
  EXPECT_TRUE(onMainThread);
}

TEST_F(WithHome, FoldersByLayout) {
  const std::string documents = home / "Documents";
  EXPECT_EQ(model().newV2Path(), documents);
  EXPECT_EQ(model().oldV2Path(), documents);
  EXPECT_EQ(model().imagesFolderPath(), documents + "/Images");
  EXPECT_TRUE(std::filesystem::is_directory(documents + "/Images"));
  model().setDataStorage(1);
  EXPECT_EQ(model().oldV2Path(), documents + "/Wortmeister-Data");
  EXPECT_EQ(model().newV2Path(), home / "data/Wortmeister2");
  EXPECT_EQ(model().historyFolderPath(), home / "data/Wortmeister2");
  model().setDataStorage(2);
  EXPECT_EQ(model().newV2Path(), home / "Containers/org.example/Data/Documents");
  EXPECT_FALSE(std::filesystem::exists(home / "Containers"));
  model().setDataStorage(3);
  EXPECT_EQ(model().oldV2Path(), documents + "/Wortmeister-Data");
  EXPECT_THROW((void)model().newV2Path(), NSException);
}

TEST_F(WithHome, AnOlderFolderIsCopiedWholeAndLeftAlone) {
  model().setDataStorage(1);
  const std::string old = model().oldV2Path();
  ZYMCoreDataModel::tearDown();
  model().setDataFolder(old);
  PlistDictionary record{{keys::Variety, "Fuggle"}};
  ZYMHopEntity::insertInContext(*model().mainObjectContext())
      .updateWithDictionaryRepresentation(record);
  ZYMCoreDataModel::tearDown();
  std::filesystem::create_directories(old + "/Images/deep");
  std::ofstream(old + "/Images/deep/x.png") << "png";
  std::ofstream(old + "/History.plist") << "history";

  model().setDataStorage(1);
  EXPECT_EQ(ZYMHopEntity::findAllObjects()->size(), 1U);
  EXPECT_FALSE(model().firstRun());
  EXPECT_TRUE(std::filesystem::exists(model().newV2Path() + "/Images/deep/x.png"));
  EXPECT_TRUE(std::filesystem::exists(model().newV2Path() + "/History.plist"));
  EXPECT_TRUE(std::filesystem::exists(old + "/Wortmeister.sqlite"));

  ZYMCoreDataModel::tearDown();  // what is there now isn't copied over
  std::filesystem::remove_all(old);
  model().setDataStorage(1);
  EXPECT_EQ(ZYMHopEntity::findAllObjects()->size(), 1U);
}

TEST_F(WithHome, ExternalDataStandsAsideOnlyWhileAStoreIsMigrated) {
  const std::string external = home / "Documents/.Wortmeister_SUPPORT/_EXTERNAL_DATA";
  std::filesystem::create_directories(external);
  std::ofstream(external + "/blob") << "blob";
  (void)model().mainObjectContext();  // a new store counts as one to migrate
  EXPECT_TRUE(std::filesystem::exists(external + "/blob"));
  EXPECT_FALSE(std::filesystem::exists(home / "Documents/tmpPathToReplacementData"));
}

using DeathTest = WithHome;

TEST_F(DeathTest, AStoreThatCantBeOpenedEndsTheProcessAndStaysAsItWas) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const std::string path = home / "Documents/Wortmeister.sqlite";
  std::filesystem::create_directories(home / "Documents");
  for (const std::string& content :
       {std::string("not a database"), std::string(), std::string(4096, 'x')}) {
    std::ofstream(path, std::ios::trunc) << content;
    EXPECT_DEATH((void)model().mainObjectContext(), "The data store can't be opened: ");
    std::ifstream file(path);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), content);
  }
}

TEST_F(DeathTest, NoObjectModelEndsTheProcess) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  NSBundle::setMainBundle(NSBundle(home.path(), "org.example", "1"));
  EXPECT_DEATH((void)model().mainObjectContext(), "WortmeisterCoreDataModel.momd");
}

}  // namespace
}  // namespace zym
