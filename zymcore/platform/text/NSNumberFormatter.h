#pragma once

#include <memory>
#include <string>

#include "zymcore/platform/text/NSLocale.h"

namespace zym {

/// Numbers as the people of a locale write them: decimal, rounded half up (away from zero), no
/// grouping. One thread at a time.
class NSNumberFormatter {
 public:
  explicit NSNumberFormatter(const NSLocale& locale);
  ~NSNumberFormatter();
  NSNumberFormatter(NSNumberFormatter&&) noexcept;
  NSNumberFormatter& operator=(NSNumberFormatter&&) noexcept;

  [[nodiscard]] const NSLocale& locale() const noexcept;

  // From 0 to 100; at first 0 and 3. Each pulls the other along where they would cross.
  void setMinimumFractionDigits(int digits);
  void setMaximumFractionDigits(int digits);

  [[nodiscard]] std::string stringFromNumber(double number);

 private:
  struct Formats;
  std::unique_ptr<Formats> formats_;
};

}  // namespace zym
