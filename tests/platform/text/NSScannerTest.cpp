#include "tests/support/Test.h"
#include "tests/support/TextTable.h"
#include "zymcore/platform/text/NSScanner.h"

namespace zym {
namespace {

TEST(NSScanner, ReadsANumberByTheRulesOfTheLocale) {
  constexpr std::pair<const char*, const char*> cases[] = {
      {"en_US", R"(1.5 l -> 1.5 | 1,5 -> 1 | .5 -> 0.5 | 5. -> 5 | +5 -> 5 | -5 -> -5 | −5 -> -5
          --5 -> none | - 5 -> none | . -> none | - -> none | '' -> none | ½ -> none
          inf -> none | nan -> none | infinity -> none | 0x10 -> 0 | 1e3 -> 1000 | 1E-2x -> 0.01
          1e -> 1 | 1e+ -> 1 | 5 e3 -> 5 | 5ebc -> 5 | 1e99 -> inf | 1e-99 -> 0 | 1.2.3 -> 1.2
          1e99999999999999999999 -> inf | ١٢ -> 12 | １２ -> 12)"},
      {"de_DE", "1,5 -> 1.5 | 1.5 -> 1"},
      {"fr_FR", "12,25 kg -> 12.25 | 1\u202f234,5 -> 1"},
      {"sv_SE", "\u22121,5 -> -1.5 | -1,5 -> -1.5"},
      {"ar_EG",
       "\u061C-\u0661\u066b\u0665 -> -1.5 | \u0661\u066b\u0665 -> 1.5 | -1\u066b5 -> -1.5"},
      {"fa_IR", "\u200e\u2212\u06f1\u06f2\u066b\u06f5 -> -12.5"},
      {"he_IL", "\u200e-5.5 -> -5.5"},
  };
  for (const auto& [locale, rows] : cases) {
    for (const auto& [text, number] : rowsOf(rows)) {
      const auto scanned = NSScanner(text, NSLocale(locale)).scanFloat();
      const auto expected =
          number == "none" ? std::nullopt : std::optional(std::strtof(number.c_str(), nullptr));
      EXPECT_EQ(scanned, expected) << locale << " " << text;
    }
  }
  EXPECT_EQ(NSScanner(" \t\u00a012", NSLocale("en_US")).scanFloat(), 12);
}

TEST(NSScanner, GoesOnToTheNextNumber) {
  NSCharacterSet digits = NSCharacterSet::decimalDigitCharacterSet();
  digits.addCharactersInString(",");
  NSScanner scanner("5lb und 3,5oz", NSLocale("de_DE"));
  EXPECT_FALSE(scanner.scanUpToCharactersFromSet(digits));
  EXPECT_EQ(scanner.scanFloat(), 5);
  EXPECT_EQ(scanner.scanFloat(), std::nullopt);
  EXPECT_TRUE(scanner.scanUpToCharactersFromSet(digits));
  EXPECT_EQ(scanner.scanFloat(), 3.5F);
  EXPECT_TRUE(scanner.scanUpToCharactersFromSet(digits));
  EXPECT_TRUE(scanner.isAtEnd());
  EXPECT_EQ(scanner.scanFloat(), std::nullopt);
  EXPECT_FALSE(scanner.scanUpToCharactersFromSet(digits));
}

TEST(NSScanner, ReadsTextThatIsNoText) {
  EXPECT_EQ(NSScanner("\xFF\xC3", NSLocale("en_US")).scanFloat(), std::nullopt);
  EXPECT_EQ(NSScanner("7\xFF", NSLocale("en_US")).scanFloat(), 7);
  EXPECT_EQ(NSScanner(std::string(1'000'000, '9'), NSLocale("en_US")).scanFloat(),
            std::numeric_limits<float>::infinity());
}

TEST(NSScanner, FollowsTheCurrentLocale) {
  NSLocale::setCurrentLocale("de-DE");
  EXPECT_EQ(NSScanner::localizedScannerWithString("1,5").scanFloat(), 1.5F);
  EXPECT_EQ(NSLocale::currentLocale().localeIdentifier(), "de_DE");
  NSLocale::setCurrentLocale("en_US");
  EXPECT_EQ(NSScanner::localizedScannerWithString("1,5").scanFloat(), 1.0F);
  NSLocale::setCurrentLocale("");
}

}  // namespace
}  // namespace zym
