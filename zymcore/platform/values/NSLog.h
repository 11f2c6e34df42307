#pragma once

#include <functional>
#include <string_view>

namespace zym {

/// Writes the text to standard error as one line, its control characters escaped. Any thread.
void NSLog(std::string_view text);

/// Sends what is logged elsewhere; an empty function returns it to standard error. The sink may be
/// called from any thread, one call at a time, and must not call back into the library.
void setNSLogSink(std::function<void(std::string_view line)> sink);

}  // namespace zym
