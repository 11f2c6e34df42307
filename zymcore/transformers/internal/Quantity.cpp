#include "zymcore/transformers/internal/Quantity.h"

#include <algorithm>

#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym::transformer {
namespace {

const Unit* unitOf(std::span<const Unit> units, std::int64_t preference, double number) {
  const auto unit = std::ranges::find_if(units, [=](const Unit& one) {
    return one.preference == preference && (number >= one.atLeast || one.atLeast == -HUGE_VAL);
  });
  return unit == units.end() ? nullptr : &*unit;
}

[[noreturn]] void misused(const PlistValue& value, std::string_view how) {
  throw NSException(NSInternalInconsistencyException,
                    std::string("Value (").append(value.className()).append(") ").append(how));
}

}  // namespace

std::string shown(const Quantity& quantity, const PlistValue* value) {
  const std::string* limit = quantity.isLimited && value ? value->string() : nullptr;
  const bool isOpen = limit && isLastCharacterPlusSign(*limit);
  const double number = isOpen ? doubleValue(stringWithTrailingPlusSignRemovedIfPresent(*limit))
                               : numberForDisplay(value);
  return shown(number, preferenceUnder(quantity.preference), quantity.units, isOpen ? "+" : "");
}

std::string stored(const Quantity& quantity, const PlistValue* value) {
  const std::string_view typed = textForStorage(value);
  const double number = floatValueFromLocalizedString(typed);
  if (number < quantity.leastNumber) return "0.0";
  double result = byUnitWord(typed, number, quantity.words, quantity.sentinel);
  if (result < quantity.threshold) {
    const Unit* unit = unitOf(quantity.units, preferenceUnder(quantity.preference), HUGE_VAL);
    result = unit ? unit->toStorage(number) : quantity.sentinel;
  }
  // What is beyond all number couldn't be read again.
  return stringWithFormatF(std::isfinite(result) ? result : quantity.sentinel);
}

std::int64_t preferenceUnder(KeyName key) {
  return NSUserDefaults::standardUserDefaults().integerForKey(key);
}

std::string shown(double number, std::int64_t preference, std::span<const Unit> units,
                  std::string_view sign) {
  const Unit* unit = unitOf(units, preference, number);
  if (!unit) return "";
  const double shown = unit->fromStorage(number);
  std::string text = unit->isPlain ? stringWithDecimals(shown, unit->decimalPlaces)
                                   : localizedStringFromFloat_decimalPlaces(
                                         static_cast<float>(shown), unit->decimalPlaces);
  return text.append(sign).append(" ").append(unit->name);
}

double numberForDisplay(const PlistValue* value) {
  if (!value) return 0;
  if (!value->string() && !value->isNumber()) misused(*value, "does not respond to -floatValue.");
  return value->doubleValue();
}

std::string_view textForStorage(const PlistValue* value) {
  if (!value) return "0.0";
  const std::string* text = value->string();
  if (!text) misused(*value, "is not an NSString as Expected.");
  return *text;
}

double byUnitWord(std::string_view text, double number, std::span<const UnitWord> words,
                  double otherwise) {
  const std::string lowercase = lowercaseString(text);
  double result = otherwise;
  for (const UnitWord& unit : words) {
    if (lowercase.ends_with(unit.word)) result = unit.toStorage(number);
  }
  return result;
}

}  // namespace zym::transformer
