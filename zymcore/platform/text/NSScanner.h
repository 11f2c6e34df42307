#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/text/NSCharacterSet.h"
#include "zymcore/platform/text/NSLocale.h"

namespace zym {

/// Reads a text from its start, by the number rules of a locale. White space before what is scanned
/// is skipped.
class NSScanner {
 public:
  NSScanner(std::string_view text, const NSLocale& locale);
  /// By the rules of the current locale.
  [[nodiscard]] static NSScanner localizedScannerWithString(std::string_view text);

  /// True when nothing but white space is left.
  [[nodiscard]] bool isAtEnd() const noexcept;

  /// Goes on to the next character of the set, or to the end. False when it stood there already.
  bool scanUpToCharactersFromSet(const NSCharacterSet& set);

  /// A number in single precision: an optional sign ("-", "+", U+2212, or the locale's own),
  /// decimal digits of any script with at most one decimal separator of the locale, and an exponent
  /// where digits follow it. Never a word, and no grouping. When there is none, absent, and the
  /// place stays.
  std::optional<float> scanFloat();
  /// The same in double precision.
  std::optional<double> scanDouble();

 private:
  // Each answers the place behind what it read, and adds that to the number in ASCII.
  [[nodiscard]] std::size_t afterSign(std::size_t position, std::string& number) const;
  [[nodiscard]] std::size_t afterDigits(std::size_t position, std::string& number) const;
  [[nodiscard]] std::size_t afterExponent(std::size_t position, std::string& number) const;
  [[nodiscard]] std::size_t afterWhiteSpace() const noexcept;
  [[nodiscard]] bool startsWithSeparator(std::size_t position) const noexcept;

  std::u32string text_;
  std::size_t position_ = 0;
  std::u32string decimalSeparator_;
  std::u32string minusSigns_;
};

}  // namespace zym
