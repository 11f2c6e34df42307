#include "tests/support/Test.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/events/NSTimer.h"

namespace zym {
namespace {

constexpr double limit = 20;

NSRunLoop& loop() {
  return NSRunLoop::mainRunLoop();
}

NSDate soon(double seconds) {
  return NSDate::dateWithTimeIntervalSince1970(NSDate::date().timeIntervalSince1970() + seconds);
}

// A block given by a block waits for the next turn; what is for the end of a turn comes before
// that.
TEST(NSRunLoopTest, CallsBlocksInOrderAndEndsTheirTurn) {
  std::string order;
  loop().performBlock([&] {
    loop().performAtEndOfTurn([&] { order += "end "; });
    loop().performBlock([&] { order += "next"; });
    order += "first ";
  });
  loop().performBlock([&] { order += "second "; });
  EXPECT_EQ(order, "");
  ASSERT_TRUE(loop().runUntil([&] { return order.ends_with("end "); }, limit));
  EXPECT_EQ(order, "first second end ");
  ASSERT_TRUE(loop().runUntil([&] { return order.ends_with("next"); }, limit));
  EXPECT_EQ(order, "first second end next");
}

TEST(NSRunLoopTest, RunsNestedInABlockWithTheOtherBlocksServed) {
  std::string order;
  loop().performBlock([&] {
    EXPECT_TRUE(loop().runUntil([&] { return order == "x"; }, limit));
    order += ")";
  });
  loop().performBlock([&] { order += "x"; });
  ASSERT_TRUE(loop().runUntil([&] { return order == "x)"; }, limit));
}

TEST(NSRunLoopTest, GivesUpAtItsLimit) {
  EXPECT_FALSE(loop().runUntil([] { return false; }, 0.01));
  EXPECT_FALSE(loop().runUntil([] { return false; }, -1));
  EXPECT_FALSE(loop().runModeBeforeDate(soon(0.01)));
  const NSDate end = soon(0.02);
  loop().runUntilDate(end);
  EXPECT_GE(NSDate::date(), end);
  bool called = false;
  loop().performBlock([&] { called = true; });
  EXPECT_TRUE(loop().runModeBeforeDate(soon(limit)));
  EXPECT_TRUE(std::exchange(called, false));
  loop().performBlock([&] { called = true; });
  loop().runUntilDate(NSDate::dateWithTimeIntervalSince1970(0));
  EXPECT_TRUE(called);
}

TEST(NSRunLoopTest, OtherThreadsCallOntoTheMainThreadAndWait) {
  int calls = 0;
  const auto call = [&] {
    loop().performOnMainThreadAndWait([&] {
      EXPECT_TRUE(NSRunLoop::isMainThread());
      ++calls;
    });
    EXPECT_THROW(loop().performOnMainThreadAndWait([] { throw std::runtime_error("there"); }),
                 std::runtime_error);
  };
  call();  // on the main thread itself, directly
  EXPECT_EQ(calls, 1);
  bool finished = false;
  std::thread other([&] {
    EXPECT_FALSE(NSRunLoop::isMainThread());
    for (int i = 0; i < 100; ++i) call();
    loop().performBlock([&] { finished = true; });
  });
  EXPECT_TRUE(loop().runUntil([&] { return finished; }, limit));
  other.join();
  EXPECT_EQ(calls, 101);
}

TEST(NSRunLoopTest, WhatABlockThrowsLeavesTheRunThatCalledIt) {
  bool after = false;
  loop().performBlock([] { throw std::runtime_error("in a block"); });
  loop().performBlock([&] { after = true; });
  EXPECT_THROW((void)loop().runUntil([&] { return after && false; }, limit), std::runtime_error);
  EXPECT_TRUE(loop().runUntil([&] { return after; }, limit));
}

TEST(NSTimerTest, FiresOnceOrAgainAndAgain) {
  int once = 0;
  int often = 0;
  const auto single =
      NSTimer::scheduledTimerWithTimeInterval_repeats_block(0, false, [&](NSTimer& timer) {
        EXPECT_TRUE(timer.isValid());
        ++once;
      });
  const auto repeating =
      NSTimer::scheduledTimerWithTimeInterval_repeats_block(0.001, true, [&](NSTimer& timer) {
        if (++often == 3) timer.invalidate();
      });
  ASSERT_TRUE(loop().runUntil([&] { return !repeating->isValid() && once > 0; }, limit));
  loop().runUntilDate(soon(0.01));
  EXPECT_EQ(once, 1);
  EXPECT_EQ(often, 3);
  EXPECT_FALSE(single->isValid());
}

TEST(NSTimerTest, TheLoopKeepsItUntilItIsInvalid) {
  const auto held = std::make_shared<int>(0);
  std::weak_ptr<NSTimer> timer = NSTimer::scheduledTimerWithTimeInterval_repeats_block(
      1000, false, [held, &timer](NSTimer& self) {
        self.invalidate();
        EXPECT_FALSE(timer.lock()->isValid()) << "whoever fires it holds it";
      });
  ASSERT_FALSE(timer.expired());
  EXPECT_EQ(held.use_count(), 2);
  timer.lock()->fire();
  EXPECT_TRUE(timer.expired());
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace zym
