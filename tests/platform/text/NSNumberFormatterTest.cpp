#include <clocale>

#include "tests/support/Test.h"
#include "zymcore/platform/text/NSNumberFormatter.h"
#include "zymcore/platform/text/NSScanner.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

std::string formatted(const char* locale, double number, int decimals) {
  NSNumberFormatter formatter{NSLocale(locale)};
  formatter.setMinimumFractionDigits(decimals);
  formatter.setMaximumFractionDigits(decimals);
  return formatter.stringFromNumber(number);
}

TEST(NSNumberFormatter, WritesAsThePeopleOfTheLocaleAndRoundsHalfUp) {
  struct Case {
    const char* locale;
    double number;
    int decimals;
    const char* text;
  };
  const Case cases[] = {
      {"en_US", 1234567.891, 2, "1234567.89"},
      {"de_DE", 1234567.891, 2, "1234567,89"},
      {"sv_SE", -1234.5, 1, "\u22121234,5"},
      {"ar_EG", -1234.5, 1, "\u061C-١٢٣٤٫٥"},
      {"de_CH", 1234.5, 1, "1234.5"},
      {"en_US", 0.5, 0, "1"},
      {"en_US", 2.5, 0, "3"},
      {"en_US", 0.125, 2, "0.13"},
      {"en_US", -2.5, 0, "-3"},
      {"en_US", 2.4999999, 0, "2"},
      {"en_US", 1.005F, 2, "1.00"},
      {"en_US", 999.995, 2, "1000.00"},
  };
  for (const Case& c : cases) EXPECT_EQ(formatted(c.locale, c.number, c.decimals), c.text);
}

TEST(NSNumberFormatter, ShowsNothingOfTheLocaleOfTheProcess) {
  const char* const german[] = {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"};
  for (const char* name : german) (void)std::setlocale(LC_ALL, name);
  EXPECT_EQ(formatted("en_US", 1.5, 1), "1.5");
  EXPECT_EQ(NSScanner("1.5", NSLocale("en_US")).scanFloat(), 1.5F);
  EXPECT_EQ(stringWithFormatF(1.5), "1.500000");
  (void)std::setlocale(LC_ALL, "C");
}

TEST(NSNumberFormatter, PullsTheOtherBoundAlong) {
  NSNumberFormatter formatter{NSLocale("en_US")};
  EXPECT_EQ(formatter.stringFromNumber(1.23456), "1.235");
  formatter.setMinimumFractionDigits(5);
  EXPECT_EQ(formatter.stringFromNumber(1.2345678), "1.23457");
  formatter.setMaximumFractionDigits(1);
  EXPECT_EQ(formatter.stringFromNumber(2), "2.0");
}

RC_GTEST_PROP(NSNumberFormatter, WhatIsWrittenIsScannedBack, ()) {
  const char* const locale = *rc::gen::element("en_US", "de_DE", "fr_FR", "sv_SE", "ar_EG", "fa_IR",
                                               "hi_IN", "he_IL", "nb_NO", "de_CH", "my_MM");
  const float number = static_cast<float>(*rc::gen::inRange(-10'000'000, 10'000'000)) / 64;
  const std::string text = formatted(locale, number, 6);
  RC_ASSERT(NSScanner(text, NSLocale(locale)).scanFloat() == number);
}

}  // namespace
}  // namespace zym
