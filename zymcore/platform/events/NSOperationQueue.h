#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>

#include "zymcore/platform/events/NSNotificationCenter.h"
#include "zymcore/platform/events/NSOperation.h"

namespace zym {

/// Runs operations on the main thread, one after the other in the order in which they came, each in
/// a turn of the run loop of its own. A loop nested in one of them starts none. Main thread.
class NSOperationQueue {
 public:
  [[nodiscard]] static NSOperationQueue& mainQueue();
  NSOperationQueue(const NSOperationQueue&) = delete;
  NSOperationQueue& operator=(const NSOperationQueue&) = delete;

  /// Throws `NSInvalidArgumentException` for one that is finished, runs, or is here already.
  void addOperation(std::shared_ptr<NSOperation> operation);
  /// Those that wait and the one that runs. One that was cancelled waits for its turn to leave.
  [[nodiscard]] std::size_t operationCount() const noexcept { return operations_.size(); }
  void cancelAllOperations() noexcept;
  /// Runs the loop until the queue is empty. Throws `NSInternalInconsistencyException` inside of an
  /// operation of the queue, which would wait for itself.
  void waitUntilAllOperationsAreFinished();

  /// Calls the observer after each change of `operationCount`, for as long as the token lives.
  [[nodiscard]] NSNotificationCenter::Token addObserverForOperationCount(
      std::function<void()> observer);

 private:
  NSOperationQueue() = default;
  void tearDown();
  void scheduleNext();
  void runNext();
  void countChanged();

  std::deque<std::shared_ptr<NSOperation>> operations_;
  NSNotificationCenter center_;
  bool isRunning_ = false;
  unsigned turns_ = 0;  // how many were scheduled; only the last of them counts
};

}  // namespace zym
