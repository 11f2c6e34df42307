#pragma once

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>

namespace zym {

/// A process of its own that runs the work and writes numbers into a pipe.
class Child {
 public:
  explicit Child(const std::function<void(int pipe)>& work) {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    process_ = ::fork();
    if (process_ == 0) {
      ::close(ends[0]);
      try {
        work(ends[1]);
      } catch (...) {
        ::_exit(3);
      }
      ::_exit(0);
    }
    ::close(ends[1]);
    pipe_ = ends[0];
  }
  ~Child() {
    if (process_ > 0) (void)kill();
    ::close(pipe_);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  static void tell(int pipe, std::int64_t number) {
    if (::write(pipe, &number, sizeof number) != sizeof number) ::_exit(4);
  }
  /// The next number, if one comes within that time and before the end.
  [[nodiscard]] std::optional<std::int64_t> hear(int milliseconds) const {
    pollfd waiting{pipe_, POLLIN, 0};
    std::int64_t number = 0;
    if (::poll(&waiting, 1, milliseconds) <= 0) return std::nullopt;
    if (::read(pipe_, &number, sizeof number) != sizeof number) return std::nullopt;
    return number;
  }
  int kill() {
    ::kill(process_, SIGKILL);
    return join();
  }
  int join() {
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = 0;
    return status;
  }

 private:
  pid_t process_ = 0;
  int pipe_ = -1;
};

}  // namespace zym
