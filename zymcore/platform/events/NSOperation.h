#pragma once

#include <atomic>

namespace zym {

/// A piece of work that runs once, shared by whoever made it and the queue that runs it. Any
/// thread.
class NSOperation {
 public:
  NSOperation() = default;
  virtual ~NSOperation() = default;
  NSOperation(const NSOperation&) = delete;
  NSOperation& operator=(const NSOperation&) = delete;

  /// The work itself.
  virtual void main() = 0;

  /// Runs the work, unless it was cancelled, and is finished. Throws `NSInvalidArgumentException`
  /// when it was started before, and whatever the work throws.
  void start();

  /// Before the start, the work won't run; during it, it is for the work to look.
  void cancel() noexcept { cancelled_ = true; }
  [[nodiscard]] bool isCancelled() const noexcept { return cancelled_; }
  [[nodiscard]] bool isExecuting() const noexcept { return state_ == State::Executing; }
  [[nodiscard]] bool isFinished() const noexcept { return state_ == State::Finished; }

 private:
  enum class State { Ready, Executing, Finished };

  std::atomic<bool> cancelled_ = false;
  std::atomic<State> state_ = State::Ready;
};

}  // namespace zym
