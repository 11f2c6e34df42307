#pragma once

#include <string>
#include <vector>

#include "zymcore/interchange/operations/ImportMatch.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {
class ZYMFileImportOperation;
}

namespace zym::host {

struct RecipeToImport {
  PlistDictionary recipe;
  std::vector<ImportMatch> matches;
};

/// The recipe of a file as an import would store it, recalculated; nothing is stored. Throws
/// `InputError` with the reason where there is none. A store must be open.
[[nodiscard]] RecipeToImport recipeToImport(const std::string& file);

/// Why an import failed, without the name of the file.
[[nodiscard]] std::string reasonOf(const ZYMFileImportOperation& operation);

}  // namespace zym::host
