#include "zymcore/transformers/internal/TransformerText.h"

#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym::transformer {

double numberForDisplay(const PlistValue* value) {
  if (!value) return 0;
  if (!value->string() && !value->isNumber()) {
    throw NSException(
        NSInternalInconsistencyException,
        std::string("Value (") + value->className() + ") does not respond to -floatValue.");
  }
  return value->doubleValue();
}

Stored limitForDisplay(const PlistValue* value) {
  const std::string* text = value ? value->string() : nullptr;
  if (!text || !isLastCharacterPlusSign(*text)) return {numberForDisplay(value)};
  return {doubleValue(stringWithTrailingPlusSignRemovedIfPresent(*text)), true};
}

std::string_view textForStorage(const PlistValue* value) {
  if (!value) return "0.0";
  const std::string* text = value->string();
  if (!text) {
    throw NSException(
        NSInternalInconsistencyException,
        std::string("Value (") + value->className() + ") is not an NSString as Expected.");
  }
  return *text;
}

std::string shown(double number, int decimalPlaces, std::string_view unit) {
  return shown(Stored{number}, number, decimalPlaces, unit);
}

std::string shown(Stored limit, double number, int decimalPlaces, std::string_view unit) {
  std::string text =
      localizedStringFromFloat_decimalPlaces(static_cast<float>(number), decimalPlaces);
  if (limit.isOpen) text += '+';
  text += ' ';
  text += unit;
  return text;
}

std::optional<double> byUnitWord(std::string_view text, double number,
                                 std::span<const UnitWord> words) {
  const std::string lowercase = lowercaseString(text);
  std::optional<double> result;
  for (const UnitWord& unit : words) {
    if (lowercase.ends_with(unit.word)) result = unit.toStorage(number);
  }
  return result;
}

}  // namespace zym::transformer
