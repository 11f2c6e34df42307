#include "zymcore/platform/events/NSTimer.h"

#include <glib.h>

#include <algorithm>
#include <utility>

#include "zymcore/platform/events/internal/RunLoopState.h"

namespace zym {
namespace {

// The platform's shortest interval: a timer must leave the loop room for other events.
constexpr double leastSeconds = 0.0001;
constexpr double mostSeconds = 1e9;

}  // namespace

struct NSTimer::State {
  gint64 interval;
  bool repeats;
  Block block;
  GSource* source = nullptr;
};

NSTimer::NSTimer(std::unique_ptr<State> state) noexcept : state_(std::move(state)) {}

NSTimer::~NSTimer() {
  invalidate();
}

std::shared_ptr<NSTimer> NSTimer::scheduledTimerWithTimeInterval_repeats_block(double seconds,
                                                                               bool repeats,
                                                                               Block block) {
  static GSourceFuncs functions = {
      nullptr,
      nullptr,
      [](GSource*, GSourceFunc callback, gpointer data) -> gboolean { return callback(data); },
      nullptr,
      nullptr,
      nullptr};

  // In this order a value that is no number becomes the least.
  const double limited = std::min(mostSeconds, std::max(leastSeconds, seconds));
  const auto interval = static_cast<gint64>(limited * G_USEC_PER_SEC);
  const std::shared_ptr<NSTimer> timer(
      new NSTimer(std::make_unique<State>(State{interval, repeats, std::move(block)})));
  GSource* const source = g_source_new(&functions, sizeof(GSource));
  g_source_set_ready_time(source, g_get_monotonic_time() + interval);
  g_source_set_callback(
      source,
      [](gpointer data) -> gboolean {
        const std::shared_ptr<NSTimer> due = *static_cast<std::shared_ptr<NSTimer>*>(data);
        if (due->state_->repeats) {
          g_source_set_ready_time(due->state_->source,
                                  g_get_monotonic_time() + due->state_->interval);
        }
        NSRunLoop::mainRunLoop().state_->call([&] { due->fire(); });
        return G_SOURCE_CONTINUE;
      },
      new std::shared_ptr<NSTimer>(timer),
      [](gpointer data) { delete static_cast<std::shared_ptr<NSTimer>*>(data); });
  g_source_attach(source, nullptr);
  timer->state_->source = source;
  return timer;
}

void NSTimer::invalidate() noexcept {
  GSource* const source = std::exchange(state_->source, nullptr);
  if (!source) return;
  g_source_destroy(source);
  g_source_unref(source);
}

bool NSTimer::isValid() const noexcept {
  return state_->source != nullptr;
}

void NSTimer::fire() {
  const std::shared_ptr<NSTimer> keep = shared_from_this();
  struct Ended {
    NSTimer& timer;
    ~Ended() {
      if (!timer.state_->repeats) timer.invalidate();
    }
  } const ended{*this};
  state_->block(*this);
}

}  // namespace zym
