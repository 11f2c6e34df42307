#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "zymcore/platform/text/NSLocale.h"
#include "zymcore/platform/values/NSDate.h"

namespace zym {

/// How a calendar names a date, as far as it is asked for.
struct NSDateComponents {
  std::int32_t year = 0;
};

/// The years of a locale's calendar at a place. One thread at a time.
class NSCalendar {
 public:
  /// Of the current locale, in the time zone that the system has now.
  [[nodiscard]] static NSCalendar currentCalendar();

  explicit NSCalendar(const NSLocale& locale);
  ~NSCalendar();
  NSCalendar(NSCalendar&&) noexcept;
  NSCalendar& operator=(NSCalendar&&) noexcept;

  /// By a name such as "Europe/Berlin" or "UTC"; an unknown one is UTC.
  void setTimeZone(std::string_view name);

  [[nodiscard]] NSDateComponents componentsFromDate(NSDate date) const;
  /// The first moment that has the components.
  [[nodiscard]] NSDate dateFromComponents(const NSDateComponents& components) const;

 private:
  struct Rules;
  std::unique_ptr<Rules> rules_;
};

}  // namespace zym
