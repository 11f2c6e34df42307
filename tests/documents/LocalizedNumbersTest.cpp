#include "tests/support/Defaults.h"
#include "tests/support/Test.h"
#include "zymcore/documents/LocalizedNumbers.h"

namespace zym {
namespace {

class LocalizedNumbers : public testing::WithDefaults {};

TEST_F(LocalizedNumbers, AreReadAsTheUserWritesThem) {
  struct Row {
    const char* locale;
    std::string text;
    const char *first, *second;
  };
  const Row rows[] = {
      {"en_US", "5lb 3.5oz", "5.000000", "3.500000"},
      {"en_US", "about 5", "5.000000", ""},
      {"en_US", "-5 to -3", "-5.000000", "3.000000"},  // a sign counts at the very start
      {"en_US", "at -5", "5.000000", ""},
      {"en_US", "1,5", "1.000000", "5.000000"},
      {"de_DE", "1,5 kg", "1.500000", ""},
      {"de_DE", "1.5 kg", "1.000000", "5.000000"},
      {"en_US", "0.1", "0.100000", ""},
      {"en_US", "16777217", "16777216.000000", ""},  // in single precision
      {"en_US", "none", "", "untouched"},
      {"en_US", "", "", "untouched"},
      {"en_US", std::string(400, '9') + " or 7", "7.000000", ""},
      {"en_US", "7 or " + std::string(400, '9'), "7.000000", ""},
      {"en_US", std::string(400, '9'), "", "untouched"},
  };
  for (const Row& row : rows) {
    useLocale(row.locale);
    std::string second = "untouched";
    EXPECT_EQ(stringValueWithLocalizedValue_secondValue(row.text, &second), row.first) << row.text;
    EXPECT_EQ(second, row.second) << row.text;
    EXPECT_EQ(delocalizeValue(row.text), row.first);
    EXPECT_EQ(floatValueFromLocalizedString(row.text), *row.first ? std::stof(row.first) : 0);
  }
}

TEST_F(LocalizedNumbers, AreWrittenAsTheUserReadsThem) {
  const auto shown = [](const PlistValue& value, int places) {
    return localizedStringWithValue_decimalPlaces(&value, places);
  };
  EXPECT_EQ(shown("1234.5", 0), "1235");
  EXPECT_EQ(shown(0.125, 2), "0.13");
  EXPECT_EQ(shown("16777217", 1), "16777216.0");
  EXPECT_EQ(shown(16777217, 1), "16777217.0");
  EXPECT_EQ(shown(PlistArray(), 1), "0");
  EXPECT_EQ(localizedStringWithValue_decimalPlaces(nullptr, 1), "0");
  EXPECT_EQ(localizedStringWithDecimalPlaces("2.5", 3), "2.500");
  useLocale("de_DE");
  EXPECT_EQ(shown("1234.5", 1), "1234,5");
}

}  // namespace
}  // namespace zym
