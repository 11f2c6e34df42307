#pragma once

#include <string>
#include <string_view>

#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/values/PlistValue.h"
#include "zymcore/transformers/ZYMGravityValueTransformer.h"

namespace zym::pages {

/// Stands where a number would be none, or beyond all that a brewery knows.
inline constexpr const char* noFigure = "-";

[[nodiscard]] bool isShowable(double number) noexcept;

/// A stored quantity in the user's unit. Absent, or of a wrong kind, it counts as 0.
template <class Transformer>
[[nodiscard]] std::string shown(const PlistValue* value) {
  const bool hasNumber = value && (value->string() || value->isNumber());
  if (hasNumber && !isShowable(value->doubleValue())) return noFigure;
  return Transformer::convertForDisplay(hasNumber ? value : nullptr);
}
/// A gravity near 0, as of a recipe that was never calculated, has no degrees Plato.
template <>
[[nodiscard]] std::string shown<ZYMGravityValueTransformer>(const PlistValue* value);

template <class Transformer>
[[nodiscard]] std::string shown(double number) {
  const PlistValue value(number + 0.0);  // never "-0" of nothing
  return shown<Transformer>(&value);
}
template <class Transformer>
[[nodiscard]] std::string shownAt(const PlistDictionary& record, KeyName key) {
  return shown<Transformer>(record.find(key));
}

/// The number with that many decimals, as the user writes numbers.
[[nodiscard]] std::string decimals(double number, int decimalPlaces);
/// "%.0f".
[[nodiscard]] std::string whole(double number);

/// The name of the formula that the user chose; "" for one that there isn't.
[[nodiscard]] std::string_view nameOfFormula(KeyName preference, words::Vocabulary names);

/// "1 pack" or "2 packs" of yeast: by the whole number.
[[nodiscard]] std::string packs(const PlistValue* amount);
/// The amount of a yeast addition: packs, or the volume of a slurry.
[[nodiscard]] std::string yeastAmount(const PlistDictionary& yeast);
/// The day, in the user's form; "" for what is no date.
[[nodiscard]] std::string dayAt(const PlistDictionary& record, KeyName key);

}  // namespace zym::pages
