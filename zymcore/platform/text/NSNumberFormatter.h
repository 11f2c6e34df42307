#pragma once

#include <memory>
#include <string>

#include "zymcore/platform/text/NSLocale.h"

namespace zym {

/// Numbers as the people of a locale write them: decimal, rounded half up (away from zero) unless
/// set otherwise, no grouping; or as sums of the money of their country. One thread at a time.
class NSNumberFormatter {
 public:
  enum class Style { Decimal, Currency };
  enum class RoundingMode { HalfUp, HalfEven };

  explicit NSNumberFormatter(const NSLocale& locale);
  ~NSNumberFormatter();
  NSNumberFormatter(NSNumberFormatter&&) noexcept;
  NSNumberFormatter& operator=(NSNumberFormatter&&) noexcept;

  [[nodiscard]] const NSLocale& locale() const noexcept;

  /// A locale without a country has no money: its sums are plain numbers. Sums have the decimals
  /// that the money has, whatever is set below.
  void setNumberStyle(Style style);

  /// Of decimal numbers.
  void setRoundingMode(RoundingMode mode);
  // From 0 to 100; at first 0 and 3. Each pulls the other along where they would cross.
  void setMinimumFractionDigits(int digits);
  void setMaximumFractionDigits(int digits);

  [[nodiscard]] std::string stringFromNumber(double number);

 private:
  struct Formats;
  std::unique_ptr<Formats> formats_;
};

}  // namespace zym
