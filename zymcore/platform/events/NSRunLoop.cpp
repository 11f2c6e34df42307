#include "zymcore/platform/events/NSRunLoop.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <string>
#include <utility>

#include "zymcore/platform/events/internal/RunLoopState.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSLog.h"

namespace zym {
namespace {

constexpr double mostSeconds = 1e9;  // Past any life of a process, within GLib's microseconds.

double limited(double seconds) {
  return seconds > 0 ? std::min(seconds, mostSeconds) : 0;
}

gint64 momentAfter(double seconds) {
  return g_get_monotonic_time() + static_cast<gint64>(limited(seconds) * G_USEC_PER_SEC);
}

double secondsUntil(NSDate date) {
  return limited(date.timeIntervalSince1970() - NSDate::date().timeIntervalSince1970());
}

struct LoopSource {
  GSource base;
  NSRunLoop::State* state;
};

NSRunLoop::State& stateOf(GSource* source) {
  return *reinterpret_cast<LoopSource*>(source)->state;
}

void attach(GSourceFuncs& functions, NSRunLoop::State* state, int priority) {
  GSource* const source = g_source_new(&functions, sizeof(LoopSource));
  reinterpret_cast<LoopSource*>(source)->state = state;
  g_source_set_priority(source, priority);
  g_source_set_can_recurse(source, TRUE);
  g_source_attach(source, nullptr);
}

GSourceFuncs queueFunctions = {
    [](GSource* source, gint* timeout) -> gboolean {
      *timeout = -1;
      return stateOf(source).hasQueued();
    },
    [](GSource* source) -> gboolean { return stateOf(source).hasQueued(); },
    [](GSource* source, GSourceFunc, gpointer) -> gboolean {
      stateOf(source).callQueued();
      return G_SOURCE_CONTINUE;
    },
    nullptr,
    nullptr,
    nullptr};

GSourceFuncs endOfTurnFunctions = {
    [](GSource* source, gint* timeout) -> gboolean {
      *timeout = -1;
      return !stateOf(source).endOfTurn.empty();
    },
    [](GSource* source) -> gboolean { return !stateOf(source).endOfTurn.empty(); },
    [](GSource* source, GSourceFunc, gpointer) -> gboolean {
      NSRunLoop::State& state = stateOf(source);
      ++state.drainingSources;
      state.callEndOfTurn();
      --state.drainingSources;
      return G_SOURCE_CONTINUE;
    },
    nullptr,
    nullptr,
    nullptr};

/// Wakes a waiting loop at its limit.
class Alarm {
 public:
  explicit Alarm(gint64 moment) : source_(g_source_new(&functions(), sizeof(GSource))) {
    g_source_set_ready_time(source_, moment);
    g_source_set_callback(source_, nullptr, this, nullptr);
    g_source_attach(source_, nullptr);
  }
  ~Alarm() {
    g_source_destroy(source_);
    g_source_unref(source_);
  }
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;

 private:
  static GSourceFuncs& functions() {
    static GSourceFuncs functions = {nullptr,
                                     nullptr,
                                     [](GSource* source, GSourceFunc, gpointer) -> gboolean {
                                       g_source_set_ready_time(source, -1);
                                       return G_SOURCE_CONTINUE;
                                     },
                                     nullptr,
                                     nullptr,
                                     nullptr};
    return functions;
  }

  GSource* source_;
};

std::string reasonOf(const std::exception_ptr& thrown) {
  try {
    std::rethrow_exception(thrown);
  } catch (const std::exception& exception) {
    return exception.what();
  } catch (...) {
    return "of an unknown kind";
  }
}

void requireMainThread() {
  if (!NSRunLoop::isMainThread()) {
    throw NSException(NSInternalInconsistencyException,
                      "the main run loop runs on the main thread only");
  }
}

}  // namespace

void NSRunLoop::State::call(const std::function<void()>& block) noexcept {
  try {
    block();
  } catch (...) {
    if (runs == 0) {
      NSLog("Uncaught exception in the run loop: " + reasonOf(std::current_exception()));
    } else if (!thrown) {
      thrown = std::current_exception();
    }
  }
}

bool NSRunLoop::State::hasQueued() {
  const std::lock_guard lock(mutex);
  return !queue.empty();
}

// One block at a time, so that a loop nested in one of them finds the others.
void NSRunLoop::State::callQueued() noexcept {
  std::size_t count = 0;
  {
    const std::lock_guard lock(mutex);
    count = queue.size();
  }
  for (; count > 0; --count) {
    std::function<void()> block;
    {
      const std::lock_guard lock(mutex);
      if (queue.empty()) return;
      block = std::move(queue.front());
      queue.pop_front();
    }
    call(block);
  }
}

void NSRunLoop::State::callEndOfTurn() noexcept {
  std::deque<std::function<void()>> blocks = std::exchange(endOfTurn, {});
  for (const auto& block : blocks) call(block);
}

bool NSRunLoop::State::turn(bool mayBlock) {
  ++runs;
  const bool handled = g_main_context_iteration(nullptr, mayBlock) != FALSE;
  callEndOfTurn();
  --runs;
  if (thrown) std::rethrow_exception(std::exchange(thrown, nullptr));
  return handled;
}

NSRunLoop::NSRunLoop() : state_(std::make_shared<State>()) {
  attach(queueFunctions, state_.get(), G_PRIORITY_DEFAULT);
  attach(endOfTurnFunctions, state_.get(), G_PRIORITY_HIGH);
}

// It is never destroyed: other threads may call onto it until the process is gone.
NSRunLoop& NSRunLoop::mainRunLoop() {
  static NSRunLoop* const loop = new NSRunLoop();
  return *loop;
}

bool NSRunLoop::isMainThread() noexcept {
  return gettid() == getpid();
}

void NSRunLoop::runUntilDate(NSDate limit) {
  requireMainThread();
  const gint64 end = momentAfter(secondsUntil(limit));
  const Alarm alarm(end);
  do {
    state_->turn(g_get_monotonic_time() < end);
  } while (g_get_monotonic_time() < end);
}

bool NSRunLoop::runModeBeforeDate(NSDate limit) {
  requireMainThread();
  const gint64 end = momentAfter(secondsUntil(limit));
  const Alarm alarm(end);
  for (;;) {
    const bool handled = state_->turn(g_get_monotonic_time() < end);
    if (g_get_monotonic_time() >= end) return false;
    if (handled) return true;
  }
}

bool NSRunLoop::runUntil(const std::function<bool()>& predicate, double secondsAtMost) {
  requireMainThread();
  const gint64 end = momentAfter(secondsAtMost);
  const Alarm alarm(end);
  while (!predicate()) {
    if (g_get_monotonic_time() >= end) return false;
    state_->turn(true);
  }
  return true;
}

void NSRunLoop::performBlock(std::function<void()> block) {
  {
    const std::lock_guard lock(state_->mutex);
    state_->queue.push_back(std::move(block));
  }
  g_main_context_wakeup(nullptr);
}

void NSRunLoop::performOnMainThreadAndWait(const std::function<void()>& block) {
  if (isMainThread()) return block();

  std::mutex mutex;
  std::condition_variable finished;
  bool done = false;
  std::exception_ptr thrown;
  performBlock([&] {
    try {
      block();
    } catch (...) {
      thrown = std::current_exception();
    }
    const std::lock_guard lock(mutex);
    done = true;
    finished.notify_one();
  });
  std::unique_lock lock(mutex);
  finished.wait(lock, [&] { return done; });
  if (thrown) std::rethrow_exception(thrown);
}

void NSRunLoop::performAtEndOfTurn(std::function<void()> block) {
  state_->endOfTurn.push_back(std::move(block));
}

int NSRunLoop::depth() const noexcept {
  return g_main_depth() - state_->drainingSources;
}

}  // namespace zym
