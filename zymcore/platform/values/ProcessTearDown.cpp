#include "zymcore/platform/values/ProcessTearDown.h"

#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "zymcore/platform/values/NSLog.h"

namespace zym {
namespace {

struct Registered {
  std::mutex mutex;
  std::vector<std::function<void()>> ends;
};

// Never destroyed, since services register until the process is gone.
Registered& registered() {
  static auto* const list = new Registered();
  return *list;
}

std::optional<std::function<void()>> takeLast() {
  const std::lock_guard lock(registered().mutex);
  std::vector<std::function<void()>>& ends = registered().ends;
  if (ends.empty()) return std::nullopt;
  std::function<void()> last = std::move(ends.back());
  ends.pop_back();
  return last;
}

void logReason(const char* reason) noexcept {
  try {
    NSLog("Uncaught exception in the tear-down: " + std::string(reason));
  } catch (...) {
    return;  // A log that fails has nowhere to say so.
  }
}

void run(const std::function<void()>& end) noexcept {
  try {
    end();
  } catch (const std::exception& exception) {
    logReason(exception.what());
  } catch (...) {
    logReason("of an unknown kind");
  }
}

}  // namespace

void atTearDown(std::function<void()> end) {
  const std::lock_guard lock(registered().mutex);
  registered().ends.push_back(std::move(end));
}

void tearDownProcess() noexcept {
  while (const auto end = takeLast()) run(*end);
}

void TearDownPlace::takeNow() {
  if (isTaken_.exchange(true)) return;
  atTearDown([this] {
    isTaken_ = false;
    end_();
  });
}

}  // namespace zym
