#include "tests/reference/PlainNumbers.h"

#include <charconv>
#include <cmath>

namespace zym::reference {

double number(std::string_view text) {
  while (!text.empty() && (text[0] == ' ' || (text[0] >= '\t' && text[0] <= '\r'))) {
    text.remove_prefix(1);
  }
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  // from_chars would read words and a second sign.
  if (text.empty() || !(text[0] == '.' || (text[0] >= '0' && text[0] <= '9'))) return 0;
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return isNegative ? -value : value;
}

float single(std::string_view text) {
  return static_cast<float>(number(text));
}

bool truth(std::string_view text) {
  return single(text) > 0.2F;
}

std::string text(double number) {
  if (std::isnan(number)) return "nan";
  char digits[320];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed, 6).ptr;
  return {digits, end};
}

}  // namespace zym::reference
