#pragma once

#include <deque>
#include <exception>
#include <functional>
#include <mutex>

#include "zymcore/platform/events/NSRunLoop.h"

namespace zym {

/// What the main run loop and its timers share.
struct NSRunLoop::State {
  std::mutex mutex;
  /// Guarded by `mutex`; the rest belongs to the main thread.
  std::deque<std::function<void()>> queue;

  std::deque<std::function<void()>> endOfTurn;
  std::exception_ptr thrown;
  int runs = 0;
  int drainingSources = 0;

  /// Calls the block for GLib, whose frames no exception may pass.
  void call(const std::function<void()>& block) noexcept;
  [[nodiscard]] bool hasQueued();
  void callQueued() noexcept;
  void callEndOfTurn() noexcept;
  /// Handles what is due, after waiting for it where `mayBlock`. Answers whether anything was.
  bool turn(bool mayBlock);
};

}  // namespace zym
