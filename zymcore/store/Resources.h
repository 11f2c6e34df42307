#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// The dictionary in a resource of the main bundle of type "plist"; absent when there is none or it
/// is something else.
[[nodiscard]] std::optional<PlistDictionary> resourceDictionary(std::string_view name);
/// The same for a property list anywhere.
[[nodiscard]] std::optional<PlistDictionary> dictionaryAtPath(const std::string& path);

}  // namespace zym
