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
  static void turn() { NSRunLoop::mainRunLoop().runUntilDate(NSDate::date()); }
  /// "a" adds a letter, "A" names the step, "(" and ")" group, "|" ends the turn, "<" undoes,
  /// ">" redoes, "!" forgets all.
  void run(std::string_view steps) {
    for (const char step : steps) {
      if (step == '(') undo.beginUndoGrouping();
      if (step == ')') undo.endUndoGrouping();
      if (step == '|') turn();
      if (step == '<') undo.undo();
      if (step == '>') undo.redo();
      if (step == '!') undo.removeAllActions();
      if (step >= 'A' && step <= 'Z') undo.setActionName(std::string(1, step));
      if (step >= 'a' && step <= 'z') add(step);
    }
  }
  /// The text, what can be undone and redone, "-" for nothing, and the level that is open.
  std::string state() {
    return text + " " + (undo.canUndo() ? undo.undoActionName() : "-") + " " +
           (undo.canRedo() ? undo.redoActionName() : "-") + " " +
           std::to_string(undo.groupingLevel());
  }

  NSUndoManager undo;
  std::string text;
};

TEST_F(NSUndoManagerTest, UndoesAndRedoesGroupByGroup) {
  constexpr std::pair<const char*, const char*> cases[] = {
      {"(abA)|(cB)|", "abc B - 0"},
      {"(abA)|(cB)|<", "ab A B 0"},
      {"(abA)|(cB)|<<", " - A 0"},
      {"(abA)|(cB)|<<>>", "abc B - 0"},
      {"(abA)|(cB)|<x", "abx  - 1"},
      // The groups of one turn are one step with the last name.
      {"(aA)b(cB)", "abc B - 1"},
      {"(aA)b(cB)|<", " - B 0"},
      // Undo, and an end that matches none, close the group of the turn.
      {"aA)b<", "a A  0"},
      {"aA)b<<", " - A 0"},
      // A group left open ends with its turn.
      {"(aA|", "a A - 0"},
      // An empty group is a step, and keeps what can be redone.
      {"(aA)|<(B)|", " B A 0"},
      {"(aA)|<(B)|<", " - B 0"},
      // Forgetting all empties open groups, and their ends still match.
      {"(aA)|<(b!", "b - - 2"},
      {"(aA)|<(b!)|<", "b - - 0"}};
  for (const auto& [steps, expected] : cases) {
    text.clear();
    turn();
    undo.removeAllActions();
    run(steps);
    EXPECT_EQ(state(), expected) << steps;
  }
  EXPECT_THROW(run("|)"), NSException);
  EXPECT_THROW(run("((<"), NSException);
}

TEST_F(NSUndoManagerTest, ALoopNestedInAGroupLeavesItOpen) {
  bool done = false;
  NSRunLoop::mainRunLoop().performBlock([&] {
    run("(a|b)|");
    EXPECT_EQ(undo.groupingLevel(), 0U);
    done = true;
  });
  ASSERT_TRUE(NSRunLoop::mainRunLoop().runUntil([&] { return done; }, 20));
  run("<");
  EXPECT_EQ(text, "");
}

TEST_F(NSUndoManagerTest, WithoutEventsGroupsAreOpenedByName) {
  undo.setGroupsByEvent(false);
  EXPECT_THROW(add('a'), NSException);
  run("(aA)(bB)<C");
  EXPECT_EQ(state(), "a C B 0");
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
  run("(abc)<><<");
  EXPECT_EQ(posts, "uru");
}

TEST_F(NSUndoManagerTest, AnActionThatThrowsLeavesTheManagerUsable) {
  add('a');
  undo.registerUndo([] { throw std::runtime_error("no"); });
  EXPECT_THROW(undo.undo(), std::runtime_error);
  EXPECT_FALSE(undo.isUndoing());
  EXPECT_EQ(undo.groupingLevel(), 0U);
  run("b<");
  EXPECT_EQ(text, "a");
}

TEST_F(NSUndoManagerTest, ForgetsWhatWasTakenBackOtherwise) {
  run("aA|b");
  const std::uint64_t latest = undo.latestAction();
  run("(c)d");
  undo.removeActionsSince(latest);
  run("<");
  EXPECT_EQ(text, "a") << "the first letter alone is taken back from what it made of the text";
  add('x');
  undo.removeActionsSince(undo.latestAction() - 1);
  run("|");
  EXPECT_EQ(undo.undoActionName(), "A") << "nothing is left of the step";
}

TEST_F(NSUndoManagerTest, KnowsTheLatestActionOfTheOpenGroup) {
  const std::uint64_t first = undo.registerUndo([] {});
  EXPECT_TRUE(undo.isLatestAction(first));
  run("(");
  EXPECT_FALSE(undo.isLatestAction(first));
  const std::uint64_t second = undo.registerUndo([] {});
  EXPECT_EQ(undo.latestAction(), second);
  run(")");
  EXPECT_TRUE(undo.isLatestAction(second));
  run(")");
  EXPECT_FALSE(undo.isLatestAction(second));
}

}  // namespace
}  // namespace zym
