#pragma once

#include <cmath>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "zymcore/platform/values/PlistKey.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym::transformer {

/// A unit that users who prefer it see, and read bare numbers in.
struct Unit {
  std::int64_t preference;
  std::string_view name;
  int decimalPlaces;
  double (*fromStorage)(double);
  /// Of a number without a unit word.
  double (*toStorage)(double);
  /// The least stored quantity that is shown in it.
  double atLeast = -HUGE_VAL;
  /// The number is written in double precision, and not as the user writes numbers.
  bool isPlain = false;
};

/// A unit word at the end of a typed text, in lower case, and what a number with it means.
struct UnitWord {
  std::string_view word;
  double (*toStorage)(double);
};

/// A kind of quantity: how it is shown, and how what the user typed is read.
struct Quantity {
  /// The user default that says which units the user prefers.
  KeyName preference;
  /// Of those of a preference the first that the quantity reaches counts.
  std::span<const Unit> units;
  /// Several may fit ("uk gals" ends in "gals" and in "l"): the last one counts, so that their
  /// order is part of the list.
  std::span<const UnitWord> words;
  /// What is stored for a number without a unit where the user prefers none of `units`.
  double sentinel;
  /// What comes out below is taken for a number without a unit.
  double threshold;
  /// A number below is "0.0".
  double leastNumber = -HUGE_VAL;
  /// Whether styles give limits of it, which can be open ("1.060+").
  bool isLimited = false;
};

[[nodiscard]] constexpr double asItIs(double number) {
  return number;
}

/// The stored value in the user's unit; "" where the user prefers none of them.
[[nodiscard]] std::string shown(const Quantity& quantity, const PlistValue* value);
/// The value to store for what was typed.
[[nodiscard]] std::string stored(const Quantity& quantity, const PlistValue* value);

// The parts of it.

/// The user's choice under that key.
[[nodiscard]] std::int64_t preferenceUnder(KeyName key);
/// A number as the user writes it, in single precision, in the unit that it reaches of those of the
/// preference; "" where there is none. The sign stands between number and unit.
[[nodiscard]] std::string shown(double number, std::int64_t preference, std::span<const Unit> units,
                                std::string_view sign = "");
/// The number of a stored value; 0 for an absent one. Throws for a value that has none.
[[nodiscard]] double numberForDisplay(const PlistValue* value);
/// The text that was typed; "0.0" for an absent one. Throws for a value that is no string.
[[nodiscard]] std::string_view textForStorage(const PlistValue* value);
/// What the number means by the unit word that the text ends in; `otherwise` when it ends in none.
[[nodiscard]] double byUnitWord(std::string_view text, double number,
                                std::span<const UnitWord> words, double otherwise);

}  // namespace zym::transformer
