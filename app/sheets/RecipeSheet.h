#pragma once

#include <string>
#include <vector>

#include "app/terminal/Sheet.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::host {

/// Writes what a recalculated recipe will produce, and its additions.
void writeRecipe(Sheet& sheet, const PlistDictionary& recipe);

/// One line on what a recalculated recipe makes, and what it made before where that is another.
[[nodiscard]] std::string makesNow(const PlistDictionary& recipe, const PlistDictionary* before);

/// What a recipe needs and doesn't have, in words.
[[nodiscard]] std::vector<std::string> lacksOf(const PlistDictionary& recipe);

/// Writes the additions of a recalculated recipe with their shares, its mash and its notes.
void writeAdditions(Sheet& sheet, const PlistDictionary& recipe);

}  // namespace zym::host
