#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "zymcore/platform/host/FileDescriptor.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// The browser doesn't answer, or answers that it can't. What it was asked may be asked of another.
class BrowserFailure : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// There is no browser on this machine.
class BrowserAbsent : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// One running headless browser, spoken to over a pipe in its DevTools protocol. It has an empty
/// profile folder of its own, which goes with it. Main thread.
class Browser {
 public:
  /// The one that is kept. Starts it where there is none.
  [[nodiscard]] static Browser& shared();
  /// Ends the one that is kept.
  static void end();

  ~Browser();
  Browser(const Browser&) = delete;
  Browser& operator=(const Browser&) = delete;

  /// What the browser answers to a command; `session` is that of a page, or empty. Throws
  /// `BrowserFailure` when it refuses, has ended, or says nothing for as long as the patience
  /// lasts.
  PlistDictionary call(std::string_view method, PlistDictionary parameters,
                       std::string_view session = {});

  /// The process that watches over the browser.
  [[nodiscard]] pid_t process() const noexcept { return process_; }

  /// For how long to wait for an answer: 30 seconds at first.
  static void setPatience(double seconds) noexcept;

 private:
  Browser(int commands, int answers, pid_t process) noexcept;
  [[nodiscard]] static std::unique_ptr<Browser> start();
  // Deadlines are in seconds of the steady clock.
  void send(std::string_view message, double deadline) const;
  /// The next message.
  [[nodiscard]] PlistDictionary receive(double deadline);
  static void waitFor(int descriptor, short event, double deadline);

  FileDescriptor commands_;
  FileDescriptor answers_;
  pid_t process_;
  std::int64_t lastCall_ = 0;
  std::string received_;
};

}  // namespace zym
