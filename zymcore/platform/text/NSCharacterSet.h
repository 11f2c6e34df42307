#pragma once

#include <string>
#include <string_view>

namespace zym {

/// A set of characters of Unicode.
class NSCharacterSet {
 public:
  /// The decimal digits of all scripts.
  [[nodiscard]] static NSCharacterSet decimalDigitCharacterSet();

  void addCharactersInString(std::string_view characters);
  [[nodiscard]] bool characterIsMember(char32_t character) const noexcept;

 private:
  bool hasDecimalDigits_ = false;
  std::u32string characters_;
};

}  // namespace zym
