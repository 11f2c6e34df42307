#pragma once

#include <optional>
#include <string>
#include <vector>

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::host {

enum class DocumentKind { Recipe, Batch };

/// What a document is by its keys; absent for one that has none of the keys of either.
[[nodiscard]] std::optional<DocumentKind> kindOf(const PlistDictionary& document);

/// What standard input is called among files.
inline constexpr const char* standardInput = "-";

/// The recipes and batches in a file of native JSON: one, or an array of them; or the recipe in a
/// BeerXML file (".xml"), matched against the libraries. Throws `InputError`,
/// with the reason, when it can't be read or anything in it is neither.
[[nodiscard]] std::vector<PlistDictionary> readDocuments(const std::string& file);

}  // namespace zym::host
