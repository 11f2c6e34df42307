#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zym {

/// The encoding of UTF-16 or UTF-32 that a text of a format that begins in ASCII is in, by its
/// byte-order mark or by the zeros of its first character; null for any other.
[[nodiscard]] const char* wideEncodingOf(std::string_view bytes) noexcept;

/// What is to become of bytes that stand for no character of the encoding.
enum class InvalidBytes { Refused, Replaced };

/// The bytes in that encoding, by any of its names, as UTF-8; a byte-order mark stays. Absent for
/// an encoding that isn't known, for invalid bytes that are refused, and for 2 GB and more.
/// Otherwise those become U+FFFD.
[[nodiscard]] std::optional<std::string> stringFromEncoding(std::string_view bytes,
                                                            const char* encoding,
                                                            InvalidBytes invalid);

/// The text in a single-byte encoding, by any of its names. Absent where a character has no place
/// in it or the text isn't UTF-8.
[[nodiscard]] std::optional<std::string> dataUsingEncoding(std::string_view text,
                                                           const char* encoding);
/// The text in ASCII, with the nearest letters ("e" for "é", "ss" for "ß") and "?" where there are
/// none. Every line end stays one.
[[nodiscard]] std::string dataUsingLossyASCII(std::string_view text);

}  // namespace zym
