#include "zymcore/platform/services/internal/Browser.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <utility>
#include <vector>

#include "zymcore/platform/formats/NSJSONSerialization.h"
#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

constexpr const char* program = "chromium-headless-shell";
constexpr std::size_t mostBytes = 256U << 20U;
// The ends of the pipe that the browser reads commands from and writes answers to.
constexpr int commandsEnd = 3;
constexpr int answersEnd = 4;

// Nothing reaches the network: there is no name, no way and no background service.
constexpr const char* flags[] = {"--remote-debugging-pipe",
                                 "--proxy-server=127.0.0.1:9",
                                 "--proxy-bypass-list=<-loopback>",
                                 "--host-resolver-rules=MAP * ~NOTFOUND",
                                 "--disable-background-networking",
                                 "--disable-component-update",
                                 "--disable-extensions",
                                 "--disable-breakpad",
                                 "--disable-gpu",
                                 "--hide-scrollbars",
                                 "--no-first-run"};

// Starts the browser as a group of its own, waits for its end, and clears up behind it. The browser
// ends when nobody holds the other end of its pipe any more; one that hangs is killed, for this
// shell is told when its parent ends.
constexpr const char* watch =
    "profile=$1; shift\n"
    "setsid \"$@\" </dev/null >/dev/null 2>&1 & group=$!\n"
    "exec 3<&- 4>&-\n"
    "trap 'kill -KILL -$group' TERM\n"
    "wait $group\n"
    "kill -KILL -$group\n"
    "rm -rf -- \"$profile\" || { sleep 1; rm -rf -- \"$profile\"; }\n";

double patience = 30;
std::unique_ptr<Browser> kept;
TearDownPlace placeAmongServices(&Browser::end);

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool isInstalled() {
  const char* const path = ::getenv("PATH");
  std::string_view left = path ? path : "/usr/bin:/bin";
  while (!left.empty()) {
    const std::string folder(left.substr(0, left.find(':')));
    left.remove_prefix(std::min(left.size(), folder.size() + 1));
    if (::access((folder + "/" + program).c_str(), X_OK) == 0) return true;
  }
  return false;
}

std::string newProfile() {
  std::error_code error;
  std::string folder = (std::filesystem::temp_directory_path(error) / "zymcore-XXXXXX").string();
  if (error || !::mkdtemp(folder.data())) {
    throw BrowserFailure("no folder for the browser can be made");
  }
  return folder;
}

std::vector<std::string> commandLine(const std::string& profile) {
  std::vector<std::string> words{"/bin/sh", "-c", watch, "sh", profile, program};
  words.insert(words.end(), std::begin(flags), std::end(flags));
  words.push_back("--user-data-dir=" + profile);
  // Its sandbox can't be set up by the superuser.
  if (::geteuid() == 0) words.emplace_back("--no-sandbox");
  words.emplace_back("about:blank");
  return words;
}

// After a fork, so only with what may be called there.
[[noreturn]] void becomeWatch(int commands, int answers, pid_t parent, char* const* words) {
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (::getppid() != parent) ::_exit(1);
  // A group of its own: an interrupt from the keyboard is the parent's to pass on.
  ::setpgid(0, 0);
  // A browser reserves far more addresses than it uses.
  rlimit addresses{};
  ::getrlimit(RLIMIT_AS, &addresses);
  addresses.rlim_cur = addresses.rlim_max;
  ::setrlimit(RLIMIT_AS, &addresses);
  // First out of the way of one another.
  const int commandsCopy = ::fcntl(commands, F_DUPFD, answersEnd + 1);
  const int answersCopy = ::fcntl(answers, F_DUPFD, answersEnd + 1);
  const int nothing = ::open("/dev/null", O_RDWR);
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(nothing, standard);
  ::dup2(commandsCopy, commandsEnd);
  ::dup2(answersCopy, answersEnd);
  ::close_range(answersEnd + 1, ~0U, 0);
  ::execv(words[0], words);
  ::_exit(1);
}

}  // namespace

Browser::Browser(int commands, int answers, pid_t process) noexcept
    : commands_(commands), answers_(answers), process_(process) {}

std::unique_ptr<Browser> Browser::start() {
  if (!isInstalled()) throw BrowserAbsent(program);
  // A browser that has ended must not end this process with a signal.
  ::signal(SIGPIPE, SIG_IGN);
  int commands[2] = {-1, -1};
  int answers[2] = {-1, -1};
  const bool hasPipes = ::pipe2(commands, O_CLOEXEC) == 0 && ::pipe2(answers, O_CLOEXEC) == 0;
  std::unique_ptr<Browser> browser(new Browser(commands[1], answers[0], 0));
  const FileDescriptor theirCommands(commands[0]);
  const FileDescriptor theirAnswers(answers[1]);
  if (!hasPipes) throw BrowserFailure("no pipe to the browser can be made");
  ::fcntl(commands[1], F_SETFL, O_NONBLOCK);

  const std::string profile = newProfile();
  std::vector<std::string> line = commandLine(profile);
  std::vector<char*> words;
  for (std::string& word : line) words.push_back(word.data());
  words.push_back(nullptr);
  const pid_t parent = ::getpid();
  const pid_t process = ::fork();
  if (process == 0) becomeWatch(commands[0], answers[1], parent, words.data());
  if (process < 0) {
    ::rmdir(profile.c_str());
    throw BrowserFailure("the browser can't be started");
  }
  browser->process_ = process;
  return browser;
}

Browser& Browser::shared() {
  if (!kept) {
    kept = start();
    placeAmongServices.take();
  }
  return *kept;
}

void Browser::end() {
  kept.reset();
}

void Browser::setPatience(double seconds) noexcept {
  patience = seconds;
}

Browser::~Browser() {
  if (process_ <= 0) return;
  ::kill(process_, SIGTERM);
  while (::waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

PlistDictionary Browser::call(std::string_view method, PlistDictionary parameters,
                              std::string_view session) {
  const double deadline = now() + patience;
  PlistDictionary message{{KeyName("id"), ++lastCall_},
                          {KeyName("method"), method},
                          {KeyName("params"), std::move(parameters)}};
  if (!session.empty()) message.set(KeyName("sessionId"), session);
  const auto text = NSJSONSerialization::dataWithJSONObject_options(std::move(message), 0);
  if (!text) throw BrowserFailure("the command can't be written");
  send(*text + '\0', deadline);
  for (;;) {
    PlistDictionary answer = receive(deadline);
    // All else is news of events.
    if (answer.integerValue(KeyName("id")) != lastCall_) continue;
    if (const PlistDictionary* error = answer.dictionary(KeyName("error"))) {
      throw BrowserFailure(std::string(error->stringValue(KeyName("message"))));
    }
    const PlistDictionary* result = answer.dictionary(KeyName("result"));
    return result ? *result : PlistDictionary();
  }
}

void Browser::waitFor(int descriptor, short event, double deadline) {
  for (;;) {
    const double left = deadline - now();
    pollfd waiting{descriptor, event, 0};
    const int ready = left > 0 ? ::poll(&waiting, 1, static_cast<int>(left * 1000) + 1) : 0;
    if (ready > 0) return;
    if (ready == 0) throw BrowserFailure("the browser doesn't answer");
    if (errno != EINTR) throw BrowserFailure("the browser can't be waited for");
  }
}

void Browser::send(std::string_view message, double deadline) const {
  while (!message.empty()) {
    const ssize_t count = ::write(commands_.get(), message.data(), message.size());
    if (count >= 0) {
      message.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN) {
      waitFor(commands_.get(), POLLOUT, deadline);
    } else if (errno != EINTR) {
      throw BrowserFailure("the browser has ended");
    }
  }
}

PlistDictionary Browser::receive(double deadline) {
  std::size_t searched = 0;
  for (;;) {
    const std::size_t end = received_.find('\0', searched);
    if (end != std::string::npos) {
      const auto message = NSJSONSerialization::JSONObjectWithData_options(
          std::string_view(received_).substr(0, end), 0);
      received_.erase(0, end + 1);
      const PlistDictionary* const known = message ? message->dictionary() : nullptr;
      return known ? *known : PlistDictionary();
    }
    searched = received_.size();
    if (searched > mostBytes) throw BrowserFailure("the browser's answer has no end");
    waitFor(answers_.get(), POLLIN, deadline);
    char bytes[65536];
    const ssize_t count = ::read(answers_.get(), bytes, sizeof bytes);
    if (count == 0) throw BrowserFailure("the browser has ended");
    if (count > 0) received_.append(bytes, static_cast<std::size_t>(count));
  }
}

}  // namespace zym
