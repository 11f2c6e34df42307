#include "tests/support/Test.h"
#include "zymcore/platform/text/NSDateFormatter.h"

namespace zym {
namespace {

// 2026-01-02 00:00 UTC
constexpr NSDate day = NSDate::dateWithTimeIntervalSince1970(1767312000);

TEST(NSDateFormatter, WritesAndReadsADayOfTheLocale) {
  struct Case {
    const char* locale;
    const char* text;
  };
  const Case cases[] = {
      {"en_US", "Jan 2, 2026"},
      {"de_DE", "02.01.2026"},
      {"fr_FR", "2 janv. 2026"},
      {"ar_EG", "٠٢\u200f/٠١\u200f/٢٠٢٦"},
  };
  for (const Case& c : cases) {
    NSDateFormatter formatter{NSLocale(c.locale)};
    formatter.setTimeZone("UTC");
    EXPECT_EQ(formatter.stringFromDate(day), c.text);
    EXPECT_EQ(formatter.dateFromString(c.text), day) << c.locale;
    EXPECT_EQ(formatter.dateFromString(std::string(c.text).append(" ")), day) << c.locale;
  }
}

TEST(NSDateFormatter, RefusesWhatIsNoDay) {
  NSDateFormatter formatter{NSLocale("en_US")};
  for (const char* text : {"", "yesterday", "Jan 32, 2026", "Feb 30, 2026", "Jan 2, 2026 or so",
                           "2026-01-02", "\xFF"}) {
    EXPECT_EQ(formatter.dateFromString(text), std::nullopt) << text;
  }
  EXPECT_EQ(formatter.dateFromString(std::string(100'000, '1')), std::nullopt);
}

TEST(NSDateFormatter, SurvivesDatesBeyondCalendars) {
  const NSDateFormatter formatter{NSLocale("en_US")};
  const auto text = [&](double seconds) {
    return formatter.stringFromDate(NSDate::dateWithTimeIntervalSince1970(seconds));
  };
  EXPECT_EQ(text(std::nan("")), "");
  EXPECT_NE(text(std::numeric_limits<double>::infinity()), "");
  EXPECT_NE(text(-1e300), "");
}

}  // namespace
}  // namespace zym
