#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zym {

/// How the people of a language and region write things. Any thread.
class NSLocale {
 public:
  /// By an identifier such as "de_DE" or "zh-Hant-TW"; an unknown one has the rules of the
  /// environment's language or of none.
  explicit NSLocale(std::string_view localeIdentifier);

  /// The host's choice, else that of the environment.
  [[nodiscard]] static NSLocale currentLocale();
  /// An empty identifier returns to the environment's.
  static void setCurrentLocale(std::string_view localeIdentifier);

  /// In the form "de_DE".
  [[nodiscard]] const std::string& localeIdentifier() const noexcept { return identifier_; }
  /// The identifiers by which translations may be filed, the most special first: "zh_Hant_TW",
  /// "zh-Hant-TW", "zh_Hant", "zh-Hant", "zh".
  [[nodiscard]] std::vector<std::string> languageIdentifiers() const;
  [[nodiscard]] std::string decimalSeparator() const;
  /// The sign before a negative number, with whatever marks of direction belong to it.
  [[nodiscard]] std::string minusSign() const;

  friend bool operator==(const NSLocale&, const NSLocale&) = default;

 private:
  std::string identifier_;
};

}  // namespace zym
