#include "tests/support/Test.h"
#include "zymcore/platform/text/NSScanner.h"

namespace zym {
namespace {

TEST(NSScanner, ReadsANumberByTheRulesOfTheLocale) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  struct Case {
    const char* locale;
    const char* text;
    std::optional<float> number;
  };
  const Case cases[] = {
      {"en_US", "1.5 l", 1.5F},
      {"en_US", " \t\u00a012", 12},
      {"en_US", "1,5", 1},
      {"en_US", ".5", 0.5F},
      {"en_US", "5.", 5},
      {"en_US", "+5", 5},
      {"en_US", "-5", -5},
      {"en_US", "\u22125", -5},
      {"en_US", "--5", std::nullopt},
      {"en_US", "- 5", std::nullopt},
      {"en_US", ".", std::nullopt},
      {"en_US", "-", std::nullopt},
      {"en_US", "", std::nullopt},
      {"en_US", "inf", std::nullopt},
      {"en_US", "nan", std::nullopt},
      {"en_US", "infinity", std::nullopt},
      {"en_US", "0x10", 0},
      {"en_US", "1e3", 1000},
      {"en_US", "1E-2x", 0.01F},
      {"en_US", "1e", 1},
      {"en_US", "1e+", 1},
      {"en_US", "5 e3", 5},
      {"en_US", "5ebc", 5},
      {"en_US", "1e99", infinity},
      {"en_US", "1e-99", 0},
      {"en_US", "1e99999999999999999999", infinity},
      {"en_US", "1.2.3", 1.2F},
      {"en_US", "١٢", 12},
      {"en_US", "\uFF11\uFF12", 12},
      {"en_US", "½", std::nullopt},
      {"de_DE", "1,5", 1.5F},
      {"de_DE", "1.5", 1},
      {"fr_FR", "12,25 kg", 12.25F},
      {"fr_FR", "1\u202f234,5", 1},
      {"sv_SE", "\u22121,5", -1.5F},
      {"sv_SE", "-1,5", -1.5F},
      {"ar_EG", "\u061C-١٫٥", -1.5F},
      {"ar_EG", "١٫٥", 1.5F},
      {"ar_EG", "-1٫5", -1.5F},
      {"fa_IR", "\u200e\u2212۱۲٫۵", -12.5F},
      {"he_IL", "\u200e-5.5", -5.5F},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(NSScanner(c.text, NSLocale(c.locale)).scanFloat(), c.number)
        << c.locale << " " << c.text;
  }
}

TEST(NSScanner, GoesOnToTheNextNumber) {
  NSCharacterSet digits = NSCharacterSet::decimalDigitCharacterSet();
  digits.addCharactersInString(",");
  NSScanner scanner("5lb und 3,5oz", NSLocale("de_DE"));
  EXPECT_FALSE(scanner.scanUpToCharactersFromSet(digits));
  EXPECT_EQ(scanner.scanFloat(), 5);
  EXPECT_TRUE(scanner.scanUpToCharactersFromSet(digits));
  EXPECT_EQ(scanner.scanFloat(), 3.5F);
  EXPECT_TRUE(scanner.scanUpToCharactersFromSet(digits));
  EXPECT_TRUE(scanner.isAtEnd());
  EXPECT_EQ(scanner.scanFloat(), std::nullopt);
  EXPECT_FALSE(scanner.scanUpToCharactersFromSet(digits));
}

TEST(NSScanner, StaysWhereThereIsNoNumber) {
  NSScanner scanner("  x1", NSLocale("en_US"));
  EXPECT_FALSE(scanner.scanFloat());
  EXPECT_TRUE(scanner.scanUpToCharactersFromSet(NSCharacterSet::decimalDigitCharacterSet()));
  EXPECT_EQ(scanner.scanFloat(), 1);
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
