#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

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

TEST(NSRunLoopTest, CallsBlocksInOrderInALaterTurn) {
  std::vector<int> calls;
  for (int i = 0; i < 3; ++i) loop().performBlock([&calls, i] { calls.push_back(i); });
  EXPECT_TRUE(calls.empty());
  ASSERT_TRUE(loop().runUntil([&] { return calls.size() == 3; }, limit));
  EXPECT_EQ(calls, (std::vector<int>{0, 1, 2}));
}

TEST(NSRunLoopTest, ABlockGivenByABlockWaitsForTheNextTurn) {
  int inner = 0;
  bool outer = false;
  loop().performBlock([&] {
    loop().performBlock([&] { ++inner; });
    outer = true;
  });
  ASSERT_TRUE(loop().runUntil([&] { return outer; }, limit));
  EXPECT_EQ(inner, 0);
  ASSERT_TRUE(loop().runUntil([&] { return inner == 1; }, limit));
}

TEST(NSRunLoopTest, RunsNestedInABlockWithTheOtherBlocksServed) {
  std::string order;
  loop().performBlock([&] {
    order += "(";
    EXPECT_TRUE(loop().runUntil([&] { return order == "(x"; }, limit));
    order += ")";
  });
  loop().performBlock([&] { order += "x"; });
  ASSERT_TRUE(loop().runUntil([&] { return order.ends_with(")"); }, limit));
  EXPECT_EQ(order, "(x)");
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
  bool finished = false;
  int calls = 0;
  std::string thrown;
  std::thread other([&] {
    EXPECT_FALSE(NSRunLoop::isMainThread());
    for (int i = 0; i < 100; ++i) {
      loop().performOnMainThreadAndWait([&] {
        EXPECT_TRUE(NSRunLoop::isMainThread());
        ++calls;
      });
    }
    try {
      loop().performOnMainThreadAndWait([] { throw std::runtime_error("over there"); });
    } catch (const std::runtime_error& error) {
      thrown = error.what();
    }
    loop().performBlock([&] { finished = true; });
  });
  EXPECT_TRUE(loop().runUntil([&] { return finished; }, limit));
  other.join();
  EXPECT_EQ(calls, 100);
  EXPECT_EQ(thrown, "over there");
}

TEST(NSRunLoopTest, OnTheMainThreadTheCallIsDirect) {
  bool called = false;
  loop().performOnMainThreadAndWait([&] { called = true; });
  EXPECT_TRUE(called);
  EXPECT_THROW(loop().performOnMainThreadAndWait([] { throw std::runtime_error("here"); }),
               std::runtime_error);
}

TEST(NSRunLoopTest, WhatABlockThrowsLeavesTheRunThatCalledIt) {
  bool after = false;
  loop().performBlock([] { throw std::runtime_error("in a block"); });
  loop().performBlock([&] { after = true; });
  EXPECT_THROW((void)loop().runUntil([&] { return after && false; }, limit), std::runtime_error);
  EXPECT_TRUE(loop().runUntil([&] { return after; }, limit));
}

TEST(NSRunLoopTest, TheEndOfATurnComesBeforeTheNextEvent) {
  std::string order;
  loop().performBlock([&] {
    loop().performAtEndOfTurn([&] { order += "end "; });
    loop().performBlock([&] { order += "next "; });
    order += "block ";
  });
  ASSERT_TRUE(loop().runUntil([&] { return order.ends_with("next "); }, limit));
  EXPECT_EQ(order, "block end next ");
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
  std::weak_ptr<NSTimer> timer =
      NSTimer::scheduledTimerWithTimeInterval_repeats_block(1000, false, [held](NSTimer&) {});
  ASSERT_FALSE(timer.expired());
  EXPECT_EQ(held.use_count(), 2);
  timer.lock()->invalidate();
  EXPECT_TRUE(timer.expired());
  EXPECT_EQ(held.use_count(), 1);
}

TEST(NSTimerTest, MayBeFiredByHandAndDroppedFromInside) {
  std::shared_ptr<NSTimer> timer;
  int calls = 0;
  timer = NSTimer::scheduledTimerWithTimeInterval_repeats_block(1000, false, [&](NSTimer& self) {
    ++calls;
    self.invalidate();
    timer.reset();
  });
  NSTimer& fired = *timer;
  fired.fire();
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace zym
