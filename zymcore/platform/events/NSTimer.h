#pragma once

#include <functional>
#include <memory>

namespace zym {

/// A call at a later time, on the main run loop, which keeps the timer until it is no longer valid.
/// Main thread only.
class NSTimer : public std::enable_shared_from_this<NSTimer> {
 public:
  using Block = std::function<void(NSTimer&)>;

  /// Calls the block after that many seconds (at once for 0, less, or no number), and, when it
  /// repeats, again and again after as many.
  static std::shared_ptr<NSTimer> scheduledTimerWithTimeInterval_repeats_block(double seconds,
                                                                               bool repeats,
                                                                               Block block);

  NSTimer(const NSTimer&) = delete;
  NSTimer& operator=(const NSTimer&) = delete;
  ~NSTimer();

  /// The timer never fires again. Allowed from inside its own block, and more than once.
  void invalidate() noexcept;
  /// False once it was invalidated, and after the one call of a timer that doesn't repeat.
  [[nodiscard]] bool isValid() const noexcept;
  /// Calls the block now; a timer that doesn't repeat is no longer valid then.
  void fire();

 private:
  struct State;
  explicit NSTimer(std::unique_ptr<State> state) noexcept;
  std::unique_ptr<State> state_;
};

}  // namespace zym
