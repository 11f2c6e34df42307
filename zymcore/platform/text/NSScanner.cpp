#include "zymcore/platform/text/NSScanner.h"

#include <unicode/uchar.h>

#include <algorithm>

#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

// They say in which direction a sign belongs to its number, and show nothing.
bool isDirectionMark(char32_t character) noexcept {
  return character == 0x200E || character == 0x200F || character == 0x061C;
}

std::u32string minusSigns(const NSLocale& locale) {
  std::u32string signs = U"-\u2212" + UTF32String(locale.minusSign());
  std::erase_if(signs, isDirectionMark);
  return signs;
}

}  // namespace

NSScanner::NSScanner(std::string_view text, const NSLocale& locale)
    : text_(UTF32String(text)),
      decimalSeparator_(UTF32String(locale.decimalSeparator())),
      minusSigns_(minusSigns(locale)) {}

NSScanner NSScanner::localizedScannerWithString(std::string_view text) {
  return {text, NSLocale::currentLocale()};
}

bool NSScanner::isAtEnd() const noexcept {
  return afterWhiteSpace() == text_.size();
}

bool NSScanner::scanUpToCharactersFromSet(const NSCharacterSet& set) {
  const std::size_t first = afterWhiteSpace();
  const auto begin = text_.begin() + static_cast<std::ptrdiff_t>(first);
  const auto found = std::find_if(
      begin, text_.end(), [&](char32_t character) { return set.characterIsMember(character); });
  if (found == begin) return false;
  position_ = static_cast<std::size_t>(found - text_.begin());
  return true;
}

std::optional<double> NSScanner::scanDouble() {
  std::string number;
  std::size_t at = afterSign(afterWhiteSpace(), number);
  const std::size_t sign = number.size();
  at = afterDigits(at, number);
  if (startsWithSeparator(at)) {
    std::string fraction;
    const std::size_t end = afterDigits(at + decimalSeparator_.size(), fraction);
    if (number.size() + fraction.size() > sign) {
      number += '.' + fraction;
      at = end;
    }
  }
  if (number.size() == sign) return std::nullopt;
  position_ = afterExponent(at, number);
  return doubleValue(number);
}

std::optional<float> NSScanner::scanFloat() {
  const std::optional<double> number = scanDouble();
  if (!number) return std::nullopt;
  return static_cast<float>(*number);
}

std::size_t NSScanner::afterWhiteSpace() const noexcept {
  std::size_t at = position_;
  while (at < text_.size() && u_isUWhiteSpace(static_cast<UChar32>(text_[at]))) ++at;
  return at;
}

std::size_t NSScanner::afterSign(std::size_t position, std::string& number) const {
  const auto skipMarks = [&] {
    while (position < text_.size() && isDirectionMark(text_[position])) ++position;
  };
  skipMarks();
  if (position == text_.size()) return position;
  const bool isMinus = minusSigns_.find(text_[position]) != std::u32string::npos;
  if (isMinus || text_[position] == U'+') {
    if (isMinus) number += '-';
    ++position;
    skipMarks();
  }
  return position;
}

std::size_t NSScanner::afterDigits(std::size_t position, std::string& number) const {
  for (; position < text_.size(); ++position) {
    const std::int32_t digit = u_charDigitValue(static_cast<UChar32>(text_[position]));
    if (digit < 0 || !u_isdigit(static_cast<UChar32>(text_[position]))) break;
    number += static_cast<char>('0' + digit);
  }
  return position;
}

bool NSScanner::startsWithSeparator(std::size_t position) const noexcept {
  return !decimalSeparator_.empty() &&
         std::u32string_view(text_).substr(position).starts_with(decimalSeparator_);
}

std::size_t NSScanner::afterExponent(std::size_t position, std::string& number) const {
  if (position == text_.size() || (text_[position] != U'e' && text_[position] != U'E')) {
    return position;
  }
  std::string exponent = "e";
  const std::size_t digits = afterSign(position + 1, exponent);
  const std::size_t sign = exponent.size();
  const std::size_t end = afterDigits(digits, exponent);
  if (exponent.size() == sign) return position;
  number += exponent;
  return end;
}

}  // namespace zym
