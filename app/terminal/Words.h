#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace zym::host {

/// A word or sentence of the program in the user's language; the English one where that has none.
[[nodiscard]] std::string label(std::string_view english);

/// The same with parts put in its places: %1 is the first.
[[nodiscard]] std::string label(std::string_view english, std::initializer_list<std::string> parts);

}  // namespace zym::host
