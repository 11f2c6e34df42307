#pragma once

#include <string>
#include <string_view>

namespace zym {

/// How a name in an imported file was replaced by one of the library.
struct ImportMatch {
  /// What it names: a type of ingredient of `Vocabularies.h`, or "Style".
  std::string_view kind;
  /// As the file spells it.
  std::string nameInFile;
  /// What was looked for, after the origin and other names for the same thing.
  std::string textLookedUp;
  std::string nameMatched;
  /// From 0 to 1, for the same name (`similarityWithString`); 0 also where the texts have no score.
  double similarity = 0;
};

}  // namespace zym
