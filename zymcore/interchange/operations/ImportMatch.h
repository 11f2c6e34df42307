#pragma once

#include <optional>
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
  /// What tells whether the two are alike: the colour of a fermentable in degrees Lovibond, the
  /// alpha acid of a hop or the attenuation of a yeast in percent. Absent for all else, and where
  /// the file gives none that is surely of this ingredient.
  std::optional<double> figureInFile = {};
  std::optional<double> figureMatched = {};
  /// From 0 to 1, for the same name (`similarityWithString`); 0 also where the texts have no score.
  double similarity = 0;
};

/// Whether the brewer should look at it: the names have little in common, or the figures are
/// further apart than those of one ingredient are, which is 5 points of attenuation, and 35 % or
/// 1.5 of a colour or an alpha acid.
[[nodiscard]] bool isPoor(const ImportMatch& match);

}  // namespace zym
