#pragma once

#include <string>
#include <vector>

#include "zymcore/interchange/operations/ImportMatch.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::host {

struct RecipeToImport {
  PlistDictionary recipe;
  std::vector<ImportMatch> matches;
};

/// The recipe of a file as an import would store it, recalculated; nothing is stored. Throws
/// `InputError` with the reason where there is none. A store must be open.
[[nodiscard]] RecipeToImport recipeToImport(const std::string& file);

/// Brings a recipe of a file up to date, with its predicted figures.
void prepareImport(PlistDictionary& recipe);

}  // namespace zym::host
