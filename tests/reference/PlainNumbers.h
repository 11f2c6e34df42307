#pragma once

#include <string>
#include <string_view>

namespace zym::reference {

/// The leading decimal number of the text after ASCII blanks, else 0. For numbers in the range of
/// double.
[[nodiscard]] double number(std::string_view text);
[[nodiscard]] float single(std::string_view text);
[[nodiscard]] bool truth(std::string_view text);

/// Six decimals.
[[nodiscard]] std::string text(double number);

}  // namespace zym::reference
