#include "tests/support/Test.h"
#include "zymcore/platform/events/NSNotificationCenter.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/platform/values/NSException.h"

namespace zym {
namespace {

/// A text whose changes are undone: each adds a letter.
class NSUndoManagerTest : public testing::Test {
 protected:
  void add(char letter) { change(text + letter); }
  void change(const std::string& value) {
    undo.registerUndo([this, old = text] { change(old); });
    text = value;
  }
  void group(const std::string& letters, const char* name) {
    undo.beginUndoGrouping();
    for (const char letter : letters) add(letter);
    undo.setActionName(name);
    undo.endUndoGrouping();
  }
  static void turn() { NSRunLoop::mainRunLoop().runUntilDate(NSDate::date()); }

  NSUndoManager undo;
  std::string text;
};

TEST_F(NSUndoManagerTest, UndoesAndRedoesGroupByGroup) {
  group("ab", "First");
  turn();
  group("c", "Second");
  turn();
  EXPECT_EQ(undo.undoActionName(), "Second");
  undo.undo();
  EXPECT_EQ(text, "ab");
  EXPECT_EQ(undo.undoActionName(), "First");
  EXPECT_EQ(undo.redoActionName(), "Second");
  undo.undo();
  EXPECT_EQ(text, "");
  EXPECT_FALSE(undo.canUndo());
  undo.redo();
  undo.redo();
  EXPECT_EQ(text, "abc");
  EXPECT_EQ(undo.undoActionName(), "Second");
  EXPECT_FALSE(undo.canRedo());
  undo.undo();
  add('x');
  EXPECT_FALSE(undo.canRedo());
  EXPECT_EQ(text, "abx");
}

TEST_F(NSUndoManagerTest, GroupsOfOneTurnAreOneStepWithTheLastName) {
  group("a", "First");
  add('b');
  group("c", "Last");
  EXPECT_EQ(undo.groupingLevel(), 1U);
  turn();
  EXPECT_EQ(undo.groupingLevel(), 0U);
  EXPECT_EQ(undo.undoActionName(), "Last");
  undo.undo();
  EXPECT_EQ(text, "");
  EXPECT_FALSE(undo.canUndo());
}

TEST_F(NSUndoManagerTest, UndoAndAnUnmatchedEndCloseTheGroupByEvent) {
  add('a');
  undo.setActionName("Import");
  undo.endUndoGrouping();
  EXPECT_EQ(undo.groupingLevel(), 0U);
  add('b');
  undo.undo();
  EXPECT_EQ(text, "a");
  EXPECT_EQ(undo.undoActionName(), "Import");
  undo.undo();
  EXPECT_EQ(text, "");
  EXPECT_THROW(undo.endUndoGrouping(), NSException);
  turn();
  EXPECT_FALSE(undo.canUndo());
}

TEST_F(NSUndoManagerTest, AGroupLeftOpenEndsWithItsTurn) {
  undo.beginUndoGrouping();
  add('a');
  EXPECT_THROW(undo.undo(), NSException);
  turn();
  EXPECT_EQ(undo.groupingLevel(), 0U);
  undo.undo();
  EXPECT_EQ(text, "");
}

TEST_F(NSUndoManagerTest, ALoopNestedInAGroupLeavesItOpen) {
  bool done = false;
  NSRunLoop::mainRunLoop().performBlock([&] {
    undo.beginUndoGrouping();
    add('a');
    turn();
    add('b');
    undo.endUndoGrouping();
    turn();
    EXPECT_EQ(undo.groupingLevel(), 0U);
    done = true;
  });
  ASSERT_TRUE(NSRunLoop::mainRunLoop().runUntil([&] { return done; }, 20));
  undo.undo();
  EXPECT_EQ(text, "");
}

TEST_F(NSUndoManagerTest, AnEmptyGroupIsAStepAndKeepsWhatCanBeRedone) {
  group("a", "Add");
  turn();
  undo.undo();
  group("", "Nothing");
  EXPECT_TRUE(undo.canUndo());
  turn();
  EXPECT_TRUE(undo.canUndo());
  EXPECT_TRUE(undo.canRedo());
  undo.undo();
  EXPECT_EQ(undo.redoActionName(), "Nothing");
  EXPECT_FALSE(undo.canUndo());
}

TEST_F(NSUndoManagerTest, RemovingAllActionsEmptiesOpenGroupsAndMatchesTheirEnds) {
  group("a", "Add");
  turn();
  undo.undo();
  undo.beginUndoGrouping();
  add('b');
  undo.removeAllActions();
  EXPECT_FALSE(undo.canUndo());
  EXPECT_FALSE(undo.canRedo());
  undo.endUndoGrouping();
  turn();
  EXPECT_FALSE(undo.canUndo());
  undo.undo();
  EXPECT_EQ(text, "b");
}

TEST_F(NSUndoManagerTest, WithoutEventsGroupsAreOpenedByName) {
  undo.setGroupsByEvent(false);
  EXPECT_THROW(add('a'), NSException);
  group("a", "One");
  group("b", "Two");
  undo.undo();
  EXPECT_EQ(text, "a");
  undo.setActionName("Renamed");
  EXPECT_EQ(undo.undoActionName(), "Renamed");
}

TEST_F(NSUndoManagerTest, PostsEachUndoAndRedoOnce) {
  std::string posts;
  NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
  const auto undone = center.addObserverForName_object(NSUndoManagerDidUndoChangeNotification,
                                                       &undo, [&](const NSNotification&) {
                                                         EXPECT_FALSE(undo.isUndoing());
                                                         posts += "u";
                                                       });
  const auto redone = center.addObserverForName_object(
      NSUndoManagerDidRedoChangeNotification, &undo, [&](const NSNotification&) { posts += "r"; });
  group("abc", "Add");
  undo.undo();
  undo.redo();
  undo.undo();
  undo.undo();
  EXPECT_EQ(posts, "uru");
}

TEST_F(NSUndoManagerTest, AnActionThatThrowsLeavesTheManagerUsable) {
  add('a');
  undo.registerUndo([] { throw std::runtime_error("no"); });
  EXPECT_THROW(undo.undo(), std::runtime_error);
  EXPECT_FALSE(undo.isUndoing());
  EXPECT_EQ(undo.groupingLevel(), 0U);
  add('b');
  undo.undo();
  EXPECT_EQ(text, "a");
}

TEST_F(NSUndoManagerTest, KnowsTheLatestActionOfTheOpenGroup) {
  const std::uint64_t first = undo.registerUndo([] {});
  EXPECT_TRUE(undo.isLatestAction(first));
  undo.beginUndoGrouping();
  EXPECT_FALSE(undo.isLatestAction(first));
  const std::uint64_t second = undo.registerUndo([] {});
  undo.endUndoGrouping();
  EXPECT_TRUE(undo.isLatestAction(second));
  undo.endUndoGrouping();
  EXPECT_FALSE(undo.isLatestAction(second));
}

}  // namespace
}  // namespace zym
