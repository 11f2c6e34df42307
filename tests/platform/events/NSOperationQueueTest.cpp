#include "tests/support/Test.h"
#include "zymcore/platform/events/NSOperationQueue.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

class Work final : public NSOperation {
 public:
  explicit Work(std::function<void()> work) : work_(std::move(work)) {}
  void main() override { work_(); }

 private:
  std::function<void()> work_;
};

std::shared_ptr<NSOperation> work(std::function<void()> block) {
  return std::make_shared<Work>(std::move(block));
}

TEST(NSOperationQueue, RunsOneAfterTheOtherInTurnsOfTheirOwn) {
  NSOperationQueue& queue = NSOperationQueue::mainQueue();
  std::vector<int> order;
  std::vector<std::size_t> counts;
  const auto token =
      queue.addObserverForOperationCount([&] { counts.push_back(queue.operationCount()); });
  const auto first = work([&] {
    order.push_back(1);
    EXPECT_TRUE(queue.operationCount() == 3);
    // A loop that runs inside starts nobody else.
    NSRunLoop::mainRunLoop().runUntilDate(NSDate::date());
    NSRunLoop::mainRunLoop().performAtEndOfTurn([&] { order.push_back(-1); });
    EXPECT_THROW(queue.waitUntilAllOperationsAreFinished(), NSException);
    order.push_back(2);
  });
  const auto cancelled = work([&] { order.push_back(99); });
  queue.addOperation(first);
  EXPECT_THROW(queue.addOperation(first), NSException);
  queue.addOperation(cancelled);
  queue.addOperation(work([&] { order.push_back(3); }));
  cancelled->cancel();
  EXPECT_TRUE(order.empty()) << "nothing runs before the loop does";
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_THAT(order, ElementsAre(1, 2, -1, 3));
  EXPECT_THAT(counts, ElementsAre(1, 2, 3, 2, 1, 0));
  EXPECT_TRUE(first->isFinished() && cancelled->isFinished());
  EXPECT_THROW(first->start(), NSException);
  EXPECT_THROW(queue.addOperation(first), NSException);
}

TEST(NSOperationQueue, GoesOnAfterAnException) {
  NSOperationQueue& queue = NSOperationQueue::mainQueue();
  bool ran = false;
  queue.addOperation(work([] { throw NSException("Test", "on purpose"); }));
  queue.addOperation(work([&] { ran = true; }));
  EXPECT_THROW(queue.waitUntilAllOperationsAreFinished(), NSException);
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(ran);
  queue.addOperation(work([&] { ran = false; }));
  queue.cancelAllOperations();
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(ran);
}

TEST(NSOperationQueue, IsEmptyAfterTheTearDown) {
  NSOperationQueue& queue = NSOperationQueue::mainQueue();
  std::string ran;
  queue.addOperation(work([&] { ran += "dropped "; }));
  tearDownProcess();
  EXPECT_EQ(queue.operationCount(), 0U);
  queue.addOperation(work([&] {
    ran += "first ";
    tearDownProcess();  // even out of an operation
  }));
  queue.addOperation(work([&] { ran += "dropped "; }));
  queue.waitUntilAllOperationsAreFinished();
  queue.addOperation(work([&] { ran += "second "; }));
  NSRunLoop::mainRunLoop().runUntilDate(NSDate::date());
  EXPECT_EQ(ran, "first second ");
}

}  // namespace
}  // namespace zym
