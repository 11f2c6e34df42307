#pragma once

#include <atomic>
#include <functional>

namespace zym {

/// Has `end` called by the next `tearDownProcess`, once. A service that needs another while it ends
/// asks for it before it registers, and so finds it whole. Any thread.
void atTearDown(std::function<void()> end);

/// Ends what the services of the process hold, the last registered first, so that whoever asks for
/// one afterwards finds it as in a new process. What is registered meanwhile is ended too. What an
/// `end` throws is logged, and the rest goes on. Main thread, while no other uses the services.
void tearDownProcess() noexcept;

/// The place among what is torn down of a service that may be used again afterwards: taken when it
/// first holds something, and given up by the tear-down. It must have static storage.
class TearDownPlace {
 public:
  explicit constexpr TearDownPlace(void (*end)()) noexcept : end_(end) {}
  TearDownPlace(const TearDownPlace&) = delete;
  TearDownPlace& operator=(const TearDownPlace&) = delete;

  /// Any number of times, on any thread; all but the first cost next to nothing.
  void take() {
    if (!isTaken_.load(std::memory_order_acquire)) takeNow();
  }

 private:
  void takeNow();

  void (*end_)();
  std::atomic<bool> isTaken_{false};
};

}  // namespace zym
