#pragma once

#include <functional>
#include <string_view>

namespace zym {

/// Writes the text to standard error as one line, its control characters escaped. Any thread.
void NSLog(std::string_view text);

/// Sends what is logged elsewhere; an empty function returns it to standard error.
void setNSLogSink(std::function<void(std::string_view line)> sink);

}  // namespace zym
