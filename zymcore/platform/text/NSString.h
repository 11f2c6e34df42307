#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace zym {

/// Texts in UTF-8. Bytes that aren't UTF-8 count as one U+FFFD for each of the longest stretches
/// that could have begun a character; none of these operations fails on them.

// By the rules of Unicode and of no particular language. Bytes that aren't UTF-8 stay.
[[nodiscard]] std::string uppercaseString(std::string_view text);
[[nodiscard]] std::string lowercaseString(std::string_view text);
/// `units` becomes the text in upper case as UTF-16; memory is taken only where its own is too
/// little.
void uppercaseUTF16(std::string_view text, std::u16string& units);

/// Exact, byte by byte; true for an empty `other`.
[[nodiscard]] inline bool containsString(std::string_view text, std::string_view other) noexcept {
  return text.find(other) != std::string_view::npos;
}

[[nodiscard]] bool isASCII(std::string_view text) noexcept;
[[nodiscard]] bool isUTF8(std::string_view text) noexcept;
/// How many bytes there are before the first that isn't UTF-8.
[[nodiscard]] std::size_t lengthOfValidUTF8(std::string_view text) noexcept;
/// The text without the bytes that aren't UTF-8.
[[nodiscard]] std::string stringByDroppingInvalidUTF8(std::string_view text);

/// How many UTF-16 units the text has.
[[nodiscard]] std::size_t UTF16Length(std::string_view text) noexcept;
[[nodiscard]] std::u16string UTF16String(std::string_view text);
/// Half a surrogate pair counts as U+FFFD.
[[nodiscard]] std::string stringWithUTF16(std::u16string_view units);

[[nodiscard]] std::u32string UTF32String(std::string_view text);

/// The format with an argument in place of each "%@", "%ld", "%lu" and "%.0f", in order, or of
/// "%1$@" by its number, as translations want it; "%%" is a "%". The arguments are text already.
/// One that is missing is empty, and what is none of these stays, so that a wrong translation does
/// no harm.
[[nodiscard]] std::string stringWithFormat(std::string_view format,
                                           std::initializer_list<std::string_view> arguments);

}  // namespace zym
