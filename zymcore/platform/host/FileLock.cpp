#include "zymcore/platform/host/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <thread>

namespace zym {

FileLock FileLock::ofFolder(const std::string& path, double secondsToWait) {
  return {::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), secondsToWait};
}

FileLock FileLock::ofFile(const std::string& path, double secondsToWait) {
  return {::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY, 0666), secondsToWait};
}

FileLock::FileLock(int descriptor, double secondsToWait)
    : descriptor_(descriptor), state_(descriptor_ ? take(secondsToWait) : State::NotOpened) {}

FileLock::State FileLock::take(double secondsToWait) const {
  using Clock = std::chrono::steady_clock;
  const double seconds = std::isfinite(secondsToWait) ? secondsToWait : 0;
  const auto end = Clock::now() + std::chrono::duration<double>(seconds);
  while (::flock(descriptor_.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) return State::Unsupported;
    if (Clock::now() >= end) return State::InUse;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return State::Held;
}

}  // namespace zym
