#pragma once

#include <string>

#include "zymcore/platform/values/PlistValue.h"

namespace zym::pages {

/// How to carbonate the beer of the recipe; "" for not at all.
[[nodiscard]] std::string carbonationText(const PlistDictionary& recipe);

}  // namespace zym::pages
