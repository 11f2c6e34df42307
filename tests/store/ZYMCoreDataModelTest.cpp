#include <barrier>

#include "tests/support/Store.h"
#include "zymcore/store/ZYMOneChange.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/internal/SaveFailure.h"

namespace zym {
namespace {

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
  /// Another context on the store that has renamed the first hop and not saved yet.
  static std::unique_ptr<NSManagedObjectContext> contextWithChanges(const char* name) {
    auto other = std::make_unique<NSManagedObjectContext>(NSPrivateQueueConcurrencyType);
    other->setPersistentStoreCoordinator(model().persistentStoreCoordinator());
    other->performBlockAndWait([&] {
      const auto found =
          ZYMHopEntity::findAllObjectsInContext_predicate_sortDescriptor(other.get(), {}, {});
      found->front()->setName(name);
    });
    return other;
  }
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

TEST_F(CoreDataModel, SavingTellsWhatHappenedAndCancelsATimedSave) {
  (void)model().mainObjectContext();
  const auto timer = NSTimer::scheduledTimerWithTimeInterval_repeats_block(
      1000, false, [](NSTimer& t) { model().timedSave(t); });
  model().setSaveTimer(timer);
  const testing::Posts posts{saved, saveFailed};
  model().save();
  EXPECT_FALSE(timer->isValid() || model().saveTimer());
  EXPECT_THAT(posts.names, IsEmpty());
  addHop("Fuggle");
  model().save();
  model().save();
  EXPECT_THAT(posts.names, ElementsAre(saved));
  reopen();
  EXPECT_EQ(hops(), 1U);
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
  EXPECT_TRUE(contextWithChanges("theirs")->save());
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

TEST_F(CoreDataModel, EachDetailOfAFailureIsLogged) {
  const Log log;
  NSError error;
  error.localizedDescription = "full";
  error.userInfo = R"({"NSDetailedErrors": []})"_json;
  logSaveFailure(error);
  error.userInfo = R"({"NSDetailedErrors": [{"a": "1"}, {"b": "2"}]})"_json;
  logSaveFailure(error);
  EXPECT_THAT(log.lines,
              ElementsAre("Failed to save to data store: full", R"(  {"NSDetailedErrors":[]})",
                          "Failed to save to data store: full", R"(  DetailedError: {"a":"1"})",
                          R"(  DetailedError: {"b":"2"})"));
}

// Whoever observes a save inside the coordinator may throw; the first such fault costs a second
// try.
TEST_F(CoreDataModel, ASaveThatThrowsIsNoSuccess) {
  addHop("Fuggle");
  int faults = 0;
  const auto token = NSNotificationCenter::defaultCenter().addObserverForName_object(
      NSManagedObjectContextDidSaveNotification, &context(), [&](const NSNotification&) {
        if (faults++ == 0) throw NSException("Fault", "once");
        throw std::runtime_error("for good");
      });
  const testing::Posts posts{saved, saveFailed};
  const Log log;
  model().save();
  EXPECT_THAT(posts.names, ElementsAre(saved)) << "there was nothing more to save";
  addHop("Goldings");
  EXPECT_THROW(model().save(), std::runtime_error);
  EXPECT_THAT(posts.names, ElementsAre(saved, saveFailed));
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
  const auto other = contextWithChanges("Bramling Cross");
  const testing::Posts posts{reload};
  const auto token = NSNotificationCenter::defaultCenter().addObserverForName_object(
      NSManagedObjectContextDidSaveNotification, nullptr,
      [](const NSNotification& n) { model().mergeSavedContext(n); });
  std::thread thread([&] { (void)other->save(); });
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

TEST_F(CoreDataModel, TearDownSavesWhileTheModelIsStillThere) {
  const std::pair<std::function<void()>, const char*> faults[] = {
      {[] { throw std::runtime_error("its own fault"); },
       "An observer of the last save failed: its own fault"},
      {[] { throw 7; }, "An observer of the last save failed."}};
  std::size_t count = 0;
  for (const auto& [fault, line] : faults) {
    addHop("Fuggle");
    const ZYMCoreDataModel* const before = &model();
    const ZYMCoreDataModel* seen = nullptr;
    const auto token = NSNotificationCenter::defaultCenter().addObserverForName_object(
        saved, nullptr, [&](const NSNotification&) {
          seen = &model();
          fault();
        });
    const Log log;
    reopen();
    EXPECT_EQ(seen, before);
    EXPECT_THAT(log.lines, ElementsAre(line));
    EXPECT_EQ(hops(), ++count);
  }
}

TEST_F(CoreDataModel, ThereIsOneForThreadsThatStartTogether) {
  for (int round = 0; round < 300; ++round) {
    ZYMCoreDataModel::tearDown();
    std::array<const ZYMCoreDataModel*, 4> seen{};
    {
      std::barrier together(4);
      std::vector<std::jthread> threads;
      for (auto& each : seen) {
        threads.emplace_back([&] {
          together.arrive_and_wait();
          each = &model();
        });
      }
    }
    ASSERT_EQ(std::set(seen.begin(), seen.end()).size(), 1U);
  }
}

TEST_F(CoreDataModel, OneChangeIsSavedAndUndoneAsAWhole) {
  addHop("earlier");
  const testing::Posts posts{saved};
  {
    ZYMOneChange change;
    EXPECT_EQ(posts.names.size(), 1U) << "what was there before is no part of it";
    addHop("Fuggle");
    {
      ZYMOneChange inner;
      addHop("Goldings");
      inner.save();
    }
    EXPECT_TRUE(ZYMOneChange::isOpen());
    EXPECT_EQ(posts.names.size(), 1U);
    change.save();
  }
  EXPECT_FALSE(ZYMOneChange::isOpen());
  EXPECT_EQ(posts.names.size(), 2U);
  EXPECT_EQ(undoManager().groupingLevel(), 1U) << "that of the turn";
  undoManager().undo();
  EXPECT_EQ(hops(), 0U) << "one turn is one step";
  context().rollback();
  EXPECT_EQ(hops(), 3U);
}

TEST_F(CoreDataModel, OneChangeThatFailsLeavesNothing) {
  addHop("earlier");
  for (const bool isInnerSaved : {true, false}) {
    try {
      const ZYMOneChange change;
      addHop("Fuggle");
      ZYMOneChange inner;
      addHop("Goldings");
      if (isInnerSaved) inner.save();
      throw std::runtime_error("in between");
    } catch (const std::runtime_error&) {
    }
    EXPECT_FALSE(ZYMOneChange::isOpen() || context().hasChanges());
    EXPECT_EQ(hops(), 1U);
  }
  // What can't be saved stays in the context, and no other change is begun on top of it.
  const auto other = contextWithChanges("theirs");
  {
    ZYMOneChange change;
    ZYMHopEntity::findAllObjects()->front()->setName("ours");
    EXPECT_TRUE(other->save());
    const Log log;
    change.save();
    EXPECT_TRUE(context().hasChanges());
    EXPECT_THROW(ZYMOneChange(), NSException);
  }
  EXPECT_FALSE(ZYMOneChange::isOpen());
  EXPECT_EQ(ZYMHopEntity::findAllObjects()->front()->name(), "ours");
  context().rollback();
  EXPECT_EQ(ZYMHopEntity::findAllObjects()->front()->name(), "theirs");
}

TEST_F(CoreDataModel, ARunOfTheLoopMayCloseAnUndoGroup) {
  (void)context();
  {
    ZYMUndoGroup group;
    addHop("Fuggle");
    endTurn();
    EXPECT_EQ(undoManager().groupingLevel(), 0U);
    addHop("Goldings");
    EXPECT_NO_THROW(group.closeAndSave("Add Hops"));
  }
  EXPECT_FALSE(context().hasChanges());
  EXPECT_EQ(undoManager().undoActionName(), "Add Hops");
  endTurn();
  undoManager().undo();
  EXPECT_EQ(hops(), 1U);
  {
    ZYMUndoGroup closed;
    closed.closeAndSave("");
    EXPECT_EQ(undoManager().groupingLevel(), 1U);
    undoManager().beginUndoGrouping();  // somebody else's
  }
  EXPECT_EQ(undoManager().groupingLevel(), 2U);
  { const ZYMUndoGroup left; }
  EXPECT_EQ(undoManager().groupingLevel(), 2U);
  {
    const ZYMUndoGroup left;
    endTurn();
  }
  EXPECT_EQ(undoManager().groupingLevel(), 0U);
}

}  // namespace
}  // namespace zym
