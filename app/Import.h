#pragma once

#include <string>
#include <vector>

#include "zymcore/interchange/ImportMatch.h"
#include "zymcore/platform/PlistDictionary.h"

namespace zym::host {

struct RecipeToImport {
  PlistDictionary recipe;
  std::vector<ImportMatch> matches;
};

/// The recipe of a file as an import would store it, recalculated; nothing is stored. Throws
/// `InputError` with the reason where there is none. A store must be open.
[[nodiscard]] RecipeToImport recipeToImport(const std::string& file);

}  // namespace zym::host
