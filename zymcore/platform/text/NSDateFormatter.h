#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/text/NSLocale.h"
#include "zymcore/platform/values/NSDate.h"

namespace zym {

/// Days as the people of a locale write them: medium date style, no time. One thread at a time.
class NSDateFormatter {
 public:
  explicit NSDateFormatter(const NSLocale& locale);
  ~NSDateFormatter();
  NSDateFormatter(NSDateFormatter&&) noexcept;
  NSDateFormatter& operator=(NSDateFormatter&&) noexcept;

  /// By a name such as "Europe/Berlin" or "UTC"; an unknown one is UTC. At first that of the
  /// system.
  void setTimeZone(std::string_view name);

  /// Empty for a date that is no number.
  [[nodiscard]] std::string stringFromDate(NSDate date) const;
  /// The first moment of the day; absent unless the whole text is a date in this form.
  [[nodiscard]] std::optional<NSDate> dateFromString(std::string_view text) const;

 private:
  struct Format;
  std::unique_ptr<Format> format_;
};

}  // namespace zym
