#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::pages {

/// The text of a template of the host; absent when it can't be read or isn't in
/// UTF-8.
[[nodiscard]] std::optional<std::string> templateNamed(std::string_view name);

/// That template filled with the values; "" when it can't be read.
[[nodiscard]] std::string pageOf(std::string_view name, const PlistDictionary& values);

}  // namespace zym::pages
