#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zym::host {

// Text for a terminal. Texts are UTF-8.

/// The text on one line, with nothing in it that a terminal would take as a command: control
/// characters become blanks, broken UTF-8 becomes "?".
[[nodiscard]] std::string printable(std::string_view text);

/// The columns that a printable text takes: none for combining marks, two for wide characters.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// The text with blanks behind it up to that width.
[[nodiscard]] std::string padded(std::string_view text, std::size_t width);

/// The text, cut with an ellipsis where it is wider.
[[nodiscard]] std::string shortened(std::string_view text, std::size_t width);

/// The words of the text in lines of at most that width; a longer word has a line of its own.
[[nodiscard]] std::vector<std::string> wrapped(std::string_view text, std::size_t width);

}  // namespace zym::host
