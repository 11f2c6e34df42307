#include "tests/support/Test.h"
#include "zymcore/platform/text/NSCalendar.h"

namespace zym {
namespace {

constexpr double newYear2027 = 1798761600;  // seconds since 1970, UTC
constexpr double hour = 3600;

TEST(NSCalendar, YearsBeginByTheClockOfThePlace) {
  struct Case {
    const char* zone;
    double from, start;
    std::int32_t year;
  };
  for (const Case& c :
       {Case{"UTC", newYear2027, newYear2027, 2027},
        Case{"UTC", newYear2027 - 1, newYear2027 - 365 * 24 * hour, 2026},
        Case{"Pacific/Kiritimati", newYear2027 - 14 * hour, newYear2027 - 14 * hour, 2027},
        Case{"Pacific/Pago_Pago", newYear2027 + 11 * hour - 1, newYear2027 + (11 - 365 * 24) * hour,
             2026},
        // Summer time, on the clock of winter.
        Case{"Europe/Berlin", newYear2027 + 200 * 24 * hour, newYear2027 - hour, 2027}}) {
    for (const char* locale : {"en_US", "th_TH"}) {
      NSCalendar calendar{NSLocale(locale)};
      calendar.setTimeZone(c.zone);
      const NSDateComponents components =
          calendar.componentsFromDate(NSDate::dateWithTimeIntervalSince1970(c.from));
      const bool isBuddhist = locale == std::string("th_TH");
      EXPECT_EQ(components.year, c.year + (isBuddhist ? 543 : 0));
      EXPECT_EQ(calendar.dateFromComponents(components).timeIntervalSince1970(), c.start) << c.zone;
    }
  }
}

}  // namespace
}  // namespace zym
