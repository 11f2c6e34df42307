#include "zymcore/documents/LocalizedNumbers.h"

#include <cmath>

#include "zymcore/platform/text/NSLocale.h"
#include "zymcore/platform/text/NSNumberFormatter.h"
#include "zymcore/platform/text/NSScanner.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

// A page may be made on a thread of its own while the user goes on.
std::optional<NSNumberFormatter>& sharedFormatter() {
  thread_local std::optional<NSNumberFormatter> formatter;
  if (!formatter) formatter.emplace(NSLocale::currentLocale());
  return formatter;
}

std::string localizedString(double number, int decimalPlaces) {
  NSNumberFormatter& formatter = *sharedFormatter();
  formatter.setMinimumFractionDigits(decimalPlaces);
  formatter.setMaximumFractionDigits(decimalPlaces);
  return formatter.stringFromNumber(number);
}

// A number beyond single precision is none: no text of it could be read again.
std::optional<float> scanNumber(NSScanner& scanner) {
  const std::optional<float> number = scanner.scanFloat();
  return number && std::isfinite(*number) ? number : std::nullopt;
}

// The number at the very start of the text, with its sign, else the first one further on.
std::optional<float> scanFirstNumber(NSScanner& scanner, const NSCharacterSet& numbers) {
  if (const std::optional<float> number = scanNumber(scanner)) return number;
  scanner.scanUpToCharactersFromSet(numbers);
  return scanNumber(scanner);
}

std::optional<float> scanNextNumber(NSScanner& scanner, const NSCharacterSet& numbers) {
  scanner.scanUpToCharactersFromSet(numbers);
  return scanNumber(scanner);
}

}  // namespace

void createFormatter() {
  std::optional<NSNumberFormatter>& formatter = sharedFormatter();
  formatter.emplace(NSLocale::currentLocale());
}

std::string localizedStringWithValue_decimalPlaces(const PlistValue* value, int decimalPlaces) {
  if (value && value->string()) return localizedString(value->floatValue(), decimalPlaces);
  if (value && value->isNumber()) return localizedString(value->doubleValue(), decimalPlaces);
  return "0";
}

std::string localizedStringFromFloat_decimalPlaces(float value, int decimalPlaces) {
  return localizedString(value, decimalPlaces);
}

std::string localizedStringWithDecimalPlaces(std::string_view text, int decimalPlaces) {
  return localizedString(floatValue(text), decimalPlaces);
}

NSCharacterSet numberCharacterSet() {
  NSCharacterSet numbers = NSCharacterSet::decimalDigitCharacterSet();
  const std::string separator = NSLocale::currentLocale().decimalSeparator();
  if (!withoutLeadingWhiteSpace(separator).empty()) numbers.addCharactersInString(separator);
  return numbers;
}

std::string stringValueWithLocalizedValue_secondValue(std::string_view text,
                                                      std::string* secondValue) {
  NSScanner scanner = NSScanner::localizedScannerWithString(text);
  const NSCharacterSet numbers = numberCharacterSet();
  const std::optional<float> first = scanFirstNumber(scanner, numbers);
  if (!first) return "";
  if (secondValue) {
    const std::optional<float> second = scanNextNumber(scanner, numbers);
    *secondValue = second ? stringWithFormatF(*second) : "";
  }
  return stringWithFormatF(*first);
}

std::string stringValueWithLocalizedValue(std::string_view text) {
  return stringValueWithLocalizedValue_secondValue(text, nullptr);
}

std::string delocalizeValue(std::string_view text) {
  return stringValueWithLocalizedValue(text);
}

float floatValueWithLocalizedValue(std::string_view text) {
  NSScanner scanner = NSScanner::localizedScannerWithString(text);
  return scanFirstNumber(scanner, numberCharacterSet()).value_or(0.0F);
}

float floatValueFromLocalizedString(std::string_view text) {
  return floatValueWithLocalizedValue(text);
}

}  // namespace zym
