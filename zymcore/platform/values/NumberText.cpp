#include "zymcore/platform/values/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace zym {
namespace {

constexpr bool isDigit(char c) noexcept {
  return c >= '0' && c <= '9';
}

constexpr bool isAsciiSpace(char c) noexcept {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// The blanks of Unicode beyond ASCII, as UTF-8.
constexpr std::string_view wideSpaces[] = {"\u0085", "\u00a0", "\u1680", "\u2000", "\u2001",
                                           "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
                                           "\u2007", "\u2008", "\u2009", "\u200a", "\u2028",
                                           "\u2029", "\u202f", "\u205f", "\u3000"};

std::size_t digitsFrom(std::string_view text, std::size_t at) noexcept {
  const std::size_t begin = at;
  while (at < text.size() && isDigit(text[at])) ++at;
  return at - begin;
}

// from_chars knows words and leaves a sign to its caller, so the extent is found first.
std::size_t lengthOfDecimal(std::string_view text) noexcept {
  std::size_t at = digitsFrom(text, 0);
  std::size_t digits = at;
  if (at < text.size() && text[at] == '.') {
    const std::size_t fraction = digitsFrom(text, at + 1);
    digits += fraction;
    if (digits > 0) at += 1 + fraction;
  }
  if (digits == 0) return 0;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    std::size_t exponent = at + 1;
    if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
    if (const std::size_t count = digitsFrom(text, exponent)) at = exponent + count;
  }
  return at;
}

// Out of range is too large or too small, and from_chars doesn't tell which: the power of ten of
// the first digit that counts does.
bool isTooLarge(std::string_view decimal) noexcept {
  const std::size_t e = std::min(decimal.find_first_of("eE"), decimal.size());
  const std::string_view mantissa = decimal.substr(0, e);
  const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
  const auto first = static_cast<std::int64_t>(mantissa.find_first_of("123456789"));
  const std::int64_t exponent = integerValue(decimal.substr(std::min(e + 1, decimal.size())));
  return exponent > first - point;
}

bool takeSign(std::string_view& text) noexcept {
  if (text.empty() || (text.front() != '-' && text.front() != '+')) return false;
  const bool negative = text.front() == '-';
  text.remove_prefix(1);
  return negative;
}

}  // namespace

std::string_view withoutLeadingWhiteSpace(std::string_view text) noexcept {
  while (!text.empty()) {
    if (isAsciiSpace(text.front())) {
      text.remove_prefix(1);
      continue;
    }
    if (static_cast<unsigned char>(text.front()) < 0x80) break;
    const auto* space = std::find_if(std::begin(wideSpaces), std::end(wideSpaces),
                                     [&](std::string_view s) { return text.starts_with(s); });
    if (space == std::end(wideSpaces)) break;
    text.remove_prefix(space->size());
  }
  return text;
}

std::string_view withoutTrailingWhiteSpace(std::string_view text) noexcept {
  while (!text.empty()) {
    if (isAsciiSpace(text.back())) {
      text.remove_suffix(1);
      continue;
    }
    if (static_cast<unsigned char>(text.back()) < 0x80) break;
    const auto* space = std::find_if(std::begin(wideSpaces), std::end(wideSpaces),
                                     [&](std::string_view s) { return text.ends_with(s); });
    if (space == std::end(wideSpaces)) break;
    text.remove_suffix(space->size());
  }
  return text;
}

double doubleValue(std::string_view text) noexcept {
  text = withoutLeadingWhiteSpace(text);
  const bool negative = takeSign(text);
  text = text.substr(0, lengthOfDecimal(text));
  if (text.empty()) return 0;

  double number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec == std::errc::result_out_of_range) {
    number = isTooLarge(text) ? std::numeric_limits<double>::infinity() : 0;
  }
  return negative ? -number : number;
}

float floatValue(std::string_view text) noexcept {
  return static_cast<float>(doubleValue(text));
}

std::int64_t integerValue(std::string_view text) noexcept {
  text = withoutLeadingWhiteSpace(text);
  const bool negative = takeSign(text);
  text = text.substr(0, digitsFrom(text, 0));
  if (text.empty()) return 0;

  using Limits = std::numeric_limits<std::int64_t>;
  std::uint64_t magnitude = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), magnitude);
  constexpr auto largest = static_cast<std::uint64_t>(Limits::max());
  if (result.ec != std::errc() || magnitude > largest) {
    return negative ? Limits::min() : Limits::max();
  }
  return negative ? -static_cast<std::int64_t>(magnitude) : static_cast<std::int64_t>(magnitude);
}

std::int64_t integerValue(double number) noexcept {
  using Limits = std::numeric_limits<std::int64_t>;
  if (std::isnan(number)) return 0;
  if (number >= 0x1p63) return Limits::max();
  if (number < -0x1p63) return Limits::min();
  return static_cast<std::int64_t>(number);
}

std::string stringWithFormatF(double number) {
  return stringWithDecimals(number, 6);
}

std::string stringWithDecimals(double number, int decimals) {
  if (std::isnan(number)) return "nan";
  std::array<char, 352> text;  // the largest double has 309 digits before the point
  const auto result = std::to_chars(text.data(), text.data() + text.size(), number,
                                    std::chars_format::fixed, std::clamp(decimals, 0, 20));
  return {text.data(), result.ptr};
}

std::string shortestNumberText(double number) {
  if (std::isnan(number)) return "nan";
  std::array<char, 32> text;
  const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
  return {text.data(), result.ptr};
}

}  // namespace zym
