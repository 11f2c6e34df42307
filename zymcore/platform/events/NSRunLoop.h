#pragma once

#include <functional>
#include <memory>

#include "zymcore/platform/values/NSDate.h"

namespace zym {

/// The loop of the main thread. It stands on the default context of GLib, so a host that runs that
/// context itself (any GTK program does) serves everything here without running this loop.
///
/// A turn of the loop is one pass over the events that are due. What a callback throws leaves the
/// `run...` operation that called it; where the host runs the loop it is logged and the loop goes
/// on.
class NSRunLoop {
 public:
  [[nodiscard]] static NSRunLoop& mainRunLoop();
  /// Whether the caller is on the thread on which the process began.
  [[nodiscard]] static bool isMainThread() noexcept;

  NSRunLoop(const NSRunLoop&) = delete;
  NSRunLoop& operator=(const NSRunLoop&) = delete;

  // Running: on the main thread only, also from inside a callback.

  /// Handles events until that moment; one turn at least.
  void runUntilDate(NSDate limit);
  /// Waits for one turn with an event in it, at most until that moment. False when none came.
  [[nodiscard]] bool runModeBeforeDate(NSDate limit);
  /// Handles events until the predicate holds, which is asked before each turn. Answers whether it
  /// holds at the end; false after that many seconds without it.
  [[nodiscard]] bool runUntil(const std::function<bool()>& predicate, double secondsAtMost);

  // Calls onto the main thread: from any thread.

  /// Calls the block in the next turn of the loop, after those that were given before it.
  void performBlock(std::function<void()> block);
  /// Calls the block on the main thread and returns when it is done: at once on the main thread,
  /// else as `performBlock`. What it throws is thrown here.
  void performOnMainThreadAndWait(const std::function<void()>& block);

  /// Calls the block when the callback that is running now has returned to the loop, before any
  /// other event; a nested loop counts. Main thread only.
  void performAtEndOfTurn(std::function<void()> block);
  /// How many callbacks of the loop are running now, each but the first inside a nested loop; 0
  /// outside of it. Main thread only.
  [[nodiscard]] int depth() const noexcept;

  struct State;

 private:
  NSRunLoop();
  ~NSRunLoop() = default;

  friend class NSTimer;
  std::shared_ptr<State> state_;
};

}  // namespace zym
