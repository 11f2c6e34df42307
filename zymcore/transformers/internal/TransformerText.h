#pragma once

#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "zymcore/platform/values/PlistValue.h"

namespace zym::transformer {

// What the transformers have in common.

/// A stored value as a number, and whether it is the open upper limit of a style ("5.0+").
struct Stored {
  double number;
  bool isOpen = false;
};

/// The number of a stored value; 0 for an absent one. Throws for a value that has none.
[[nodiscard]] double numberForDisplay(const PlistValue* value);
/// The same for a quantity that styles limit.
[[nodiscard]] Stored limitForDisplay(const PlistValue* value);

/// The text that was typed; "0.0" for an absent one. Throws for a value that is no string.
[[nodiscard]] std::string_view textForStorage(const PlistValue* value);

/// A number as the user writes it, in single precision, and its unit.
[[nodiscard]] std::string shown(double number, int decimalPlaces, std::string_view unit);
/// The same with the plus sign of an open limit.
[[nodiscard]] std::string shown(Stored limit, double number, int decimalPlaces,
                                std::string_view unit);

/// A unit word at the end of a typed text, in lower case, and what a number with it means.
struct UnitWord {
  std::string_view word;
  double (*toStorage)(double);
};

/// What the number means by the unit word that the text ends in. Several may fit ("uk gals" ends in
/// "gals" and in "l"): the last in the list wins, so the order of a list is part of it. Absent when
/// none fits.
[[nodiscard]] std::optional<double> byUnitWord(std::string_view text, double number,
                                               std::span<const UnitWord> words);

[[nodiscard]] constexpr double asItIs(double number) {
  return number;
}

}  // namespace zym::transformer
