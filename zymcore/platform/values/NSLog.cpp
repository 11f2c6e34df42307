#include "zymcore/platform/values/NSLog.h"

#include <cstdio>
#include <mutex>
#include <string>

#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

std::mutex mutex;

std::function<void(std::string_view)>& currentSink() {
  static std::function<void(std::string_view)> sink;
  return sink;
}

std::string onOneLine(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string line;
  line.reserve(text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
      line += "\\n";
    } else if (byte < 0x20 || byte == 0x7F) {
      line += {'\\', 'x', digits[byte >> 4U], digits[byte & 15U]};
    } else {
      line += c;
    }
  }
  return line;
}

}  // namespace

void NSLog(std::string_view text) {
  std::string line = onOneLine(text);
  const std::lock_guard lock(mutex);
  if (currentSink()) {
    currentSink()(line);
    return;
  }
  line += '\n';
  (void)std::fwrite(line.data(), 1, line.size(), stderr);
}

void setNSLogSink(std::function<void(std::string_view line)> sink) {
  static TearDownPlace place([] { setNSLogSink({}); });
  if (sink) place.take();
  const std::lock_guard lock(mutex);
  currentSink() = std::move(sink);
}

}  // namespace zym
