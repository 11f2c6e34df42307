#include "zymcore/platform/events/NSOperationQueue.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

constexpr const char* operationCountKey = "operationCount";

}  // namespace

// Never destroyed: what is queued may be run until the end of the process.
NSOperationQueue& NSOperationQueue::mainQueue() {
  static auto* queue = new NSOperationQueue();
  return *queue;
}

// Those that wait are dropped; one that runs leaves by itself when it returns.
void NSOperationQueue::tearDown() {
  cancelAllOperations();
  operations_.resize(isRunning_ ? 1 : 0);
  if (!isRunning_) ++turns_;
  countChanged();
}

void NSOperationQueue::addOperation(std::shared_ptr<NSOperation> operation) {
  if (operation->isExecuting() || operation->isFinished() ||
      std::find(operations_.begin(), operations_.end(), operation) != operations_.end()) {
    throw NSException(NSInvalidArgumentException, "an operation is queued once");
  }
  static TearDownPlace place([] { mainQueue().tearDown(); });
  place.take();
  operations_.push_back(std::move(operation));
  if (operations_.size() == 1) scheduleNext();
  countChanged();
}

void NSOperationQueue::cancelAllOperations() noexcept {
  for (const auto& operation : operations_) operation->cancel();
}

void NSOperationQueue::waitUntilAllOperationsAreFinished() {
  if (isRunning_) {
    throw NSException(NSInternalInconsistencyException,
                      "an operation waits for the queue that runs it");
  }
  (void)NSRunLoop::mainRunLoop().runUntil([this] { return operations_.empty(); },
                                          std::numeric_limits<double>::infinity());
}

NSNotificationCenter::Token NSOperationQueue::addObserverForOperationCount(
    std::function<void()> observer) {
  return center_.addObserverForName_object(
      operationCountKey, this,
      [observer = std::move(observer)](const NSNotification&) { observer(); });
}

void NSOperationQueue::scheduleNext() {
  NSRunLoop::mainRunLoop().performBlock([this, turn = ++turns_] {
    if (turn == turns_) runNext();
  });
}

void NSOperationQueue::runNext() {
  const std::shared_ptr<NSOperation> operation = operations_.front();
  const auto leave = [this] {
    isRunning_ = false;
    operations_.pop_front();
    if (!operations_.empty()) scheduleNext();
    countChanged();
  };
  isRunning_ = true;
  try {
    // Somebody may have started it meanwhile.
    if (!operation->isExecuting() && !operation->isFinished()) operation->start();
  } catch (...) {
    leave();
    throw;
  }
  leave();
}

void NSOperationQueue::countChanged() {
  center_.postNotificationName_object(operationCountKey, this);
}

}  // namespace zym
