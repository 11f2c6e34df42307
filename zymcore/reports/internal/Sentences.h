#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace zym::pages {

/// Marks a text in a table that is translated where it is used.
[[nodiscard]] constexpr std::string_view translatable(std::string_view english) {
  return english;
}
/// A sentence of the instructions in the user's language, with its arguments, which are texts of
/// the page.
[[nodiscard]] std::string sentence(std::string_view english,
                                   std::initializer_list<std::string_view> arguments = {});

}  // namespace zym::pages
