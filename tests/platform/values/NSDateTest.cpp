#include <gtest/gtest.h>

#include <cmath>

#include "zymcore/platform/values/NSDate.h"

namespace zym {
namespace {

TEST(NSDate, DescribesItselfInUTC) {
  struct Case {
    double since1970;
    const char* text;
  };
  const Case cases[] = {
      {0, "1970-01-01 00:00:00 +0000"},
      {-0.5, "1969-12-31 23:59:59 +0000"},
      {951868799, "2000-02-29 23:59:59 +0000"},
      {-62167219200, "0000-01-01 00:00:00 +0000"},
      {-62167219201, "-63145526401.000000"},  // seconds since 2001
      {253402300799.5, "9999-12-31 23:59:59 +0000"},
      {253402300800, "252423993600.000000"},
      {std::nan(""), "nan"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(NSDate::dateWithTimeIntervalSince1970(c.since1970).description(), c.text);
  }
}

}  // namespace
}  // namespace zym
