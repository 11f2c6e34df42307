#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "zymcore/documents/Vocabularies.h"
#include "zymcore/interchange/operations/ImportMatch.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// The word most similar to the text, the first of equals.
[[nodiscard]] std::string_view nearestWord(std::string_view text, words::Vocabulary vocabulary);

/// Adds an account of a match, with its similarity.
void addMatch(std::vector<ImportMatch>& matches, ImportMatch match);

// The ingredients of a parsed recipe as those of a recipe document: the nearest records of the
// libraries, with the amounts of the file. All throw `NSRangeException` for an empty library but
// the last, which leaves out the yeast.
void takeFermentables(const PlistDictionary& parsed, PlistDictionary& recipe,
                      std::vector<ImportMatch>& matches);
void takeHops(const PlistDictionary& parsed, PlistDictionary& recipe,
              std::vector<ImportMatch>& matches);
void takeOthers(const PlistDictionary& parsed, PlistDictionary& recipe,
                std::vector<ImportMatch>& matches);
void takeYeasts(const PlistDictionary& parsed, PlistDictionary& recipe,
                std::vector<ImportMatch>& matches);

}  // namespace zym
