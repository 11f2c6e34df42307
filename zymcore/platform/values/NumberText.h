#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zym {

/// Numbers as stored text: a point as decimal separator, whatever the locale of the process.

/// The longest leading number of the text after white space: an optional sign, decimal digits with
/// at most one point, an optional exponent. 0 when there is none ("inf", "nan", "abc", ""); the
/// leading digits only of a text such as "0x10". Past the range of double it is infinite.
[[nodiscard]] double doubleValue(std::string_view text) noexcept;

/// `doubleValue` rounded to single precision.
[[nodiscard]] float floatValue(std::string_view text) noexcept;

/// The leading whole number of the text, limited to the range of the type; 0 when there is none.
[[nodiscard]] std::int64_t integerValue(std::string_view text) noexcept;

/// The number without its fraction, limited to the range of the type; 0 for what is no number.
[[nodiscard]] std::int64_t integerValue(double number) noexcept;

/// The number with exactly six decimals, byte for byte as "%f" in the C locale; "nan" without a
/// sign for what is no number.
[[nodiscard]] std::string stringWithFormatF(double number);

/// The number with the given count of decimals (0 to 20), in the C locale.
[[nodiscard]] std::string stringWithDecimals(double number, int decimals);

/// The shortest text that reads back as the same number.
[[nodiscard]] std::string shortestNumberText(double number);

/// The text after its leading white space, in the sense of Unicode.
[[nodiscard]] std::string_view withoutLeadingWhiteSpace(std::string_view text) noexcept;
[[nodiscard]] std::string_view withoutTrailingWhiteSpace(std::string_view text) noexcept;

}  // namespace zym
