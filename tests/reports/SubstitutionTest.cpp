#include "tests/reports/Pages.h"

namespace zym {
namespace {

using testing::WithPages;

constexpr std::string_view start = "<*KEYNAME=";

std::string filled(std::string_view text, const PlistDictionary& values) {
  return ZYMHTML::replaceKeysInString_fromDictionary(text, &values);
}

/// The rule as it is told, from the start of the text again and again; absent without an end.
std::optional<std::string> filledPlainly(std::string text, const PlistDictionary& values) {
  int steps = 0;
  for (std::size_t at; (at = text.find(start)) != std::string::npos;) {
    if (++steps > 1000) return std::nullopt;
    const std::size_t end = text.find('>', at);
    if (end == std::string::npos) break;
    const std::string key = text.substr(at + start.size(), end - at - start.size());
    text.replace(at, end + 1 - at, values.stringValue(KeyName(key)));
  }
  return text;
}

TEST(Substitution, FollowsItsRule) {
  const PlistDictionary values{{KeyName("a"), "1"},
                               {KeyName("nested"), "[<*KEYNAME=a>]"},
                               {KeyName("half"), "<*KEYNAME="},
                               {KeyName("rest"), "NAME=a>"},
                               {KeyName("number"), 3},
                               {KeyName("a<*KEYNAME=a"), "odd"},
                               {KeyName(""), "none"}};
  const std::pair<const char*, const char*> rows[] = {
      {"x<*KEYNAME=a>y", "x1y"},
      {"<*KEYNAME=a><*KEYNAME=a>", "11"},
      {"5 > 3 <*KEYNAME=unknown>.", "5 > 3 ."},
      {"<*KEYNAME=nested>", "[1]"},
      {"<*KEYNAME=a> <*KEYNAME=a", "1 <*KEYNAME=a"},
      {"<*KEYNAME=half>a>", "1"},
      {"<*KEY<*KEYNAME=rest>!", "1!"},
      {"<*KEYNAME=a<*KEYNAME=a>", "odd"},
      {"<*KEYNAME=number><*KEYNAME=>", "none"},
      {"<<*KEYNAME=a>", "<1"},
      {"", ""},
  };
  for (const auto& [text, expected] : rows) EXPECT_EQ(filled(text, values), expected) << text;
  EXPECT_EQ(filled("<*KEYNAME=a>", {}), "<*KEYNAME=a>");
  EXPECT_EQ(ZYMHTML::replaceKeysInString_fromDictionary("<*KEYNAME=a>", nullptr), "<*KEYNAME=a>");
  EXPECT_EQ(ZYMHTML::replaceKeysInString_fromDictionary(std::nullopt, &values), "");
}

TEST(Substitution, IsThatOfSearchingFromTheStartEachTime) {
  std::mt19937 random(7);
  const auto text = [&](std::initializer_list<const char*> pieces, std::size_t most) {
    std::string result;
    for (std::size_t i = random() % most; i > 0; --i)
      result += pieces.begin()[random() % pieces.size()];
    return result;
  };
  for (int i = 0; i < 10000; ++i) {
    // A value names only those before it, so that there is an end.
    const PlistDictionary values{
        {KeyName("a"), text({"<", "*KEY", "NAME=", ">", "b", "<*KEYNAME=", "<*KEYNAME=x>"}, 4)},
        {KeyName("b"), text({"<*KEYNAME=a>", "<*KEY", "NAME=", "a", ">"}, 4)},
        {KeyName("c"), text({"<*KEYNAME=b>", "<*KEYNAME=a", "<<*", "KEYNAME=", ">"}, 5)}};
    const std::string page = text(
        {"<*KEYNAME=a>", "<*KEYNAME=b>", "<*KEYNAME=c>", "<*KEY", "NAME=c>", "<", ">", "x"}, 9);
    // Pieces can still make one name itself.
    const auto expected = filledPlainly(page, values);
    if (!expected) continue;
    ASSERT_EQ(filled(page, values), *expected) << page;
  }
}

TEST(Substitution, EndsInBoundsWhateverItIsGiven) {
  const std::string marker = "<*KEYNAME=a>";
  EXPECT_EQ(filled("x" + marker + "y", {{KeyName("a"), marker}}), "x" + marker + "y");
  EXPECT_LT(filled(marker, {{KeyName("a"), "ab" + marker + "c" + marker}}).size(), 100U << 20U);

  std::string million;
  std::string replaced;
  for (int i = 0; i < 1000000; ++i) {
    million += marker;
    replaced += "ok";
  }
  EXPECT_EQ(filled(million, {{KeyName("a"), "ok"}}), replaced);
  EXPECT_LT(filled(million, {{KeyName("a"), std::string(1U << 20U, 'n')}}).size(), 100U << 20U);
}

using Helpers = WithPages;

TEST_F(Helpers, LoadListsAndTrimNumbers) {
  putFile(folder / "bundle/List.plist",
          R"(<plist version="1.0"><dict><key>List</key><array>
             <dict><key>n</key><string>b</string></dict><dict><key>n</key><integer>2</integer></dict>
             <dict><key>n</key><string>a</string></dict><dict/></array></dict></plist>)");
  const auto names = [](const std::string& key) {
    std::string text;
    const auto list = ZYMHTML::loadConfigFileNamed_sortedOnKey("List", key);
    for (const PlistDictionary& row : PlistRows(&*list)) {
      const PlistValue* name = row.find(KeyName("n"));
      text += !name ? "-" : name->string() ? *name->string() : std::to_string(name->integerValue());
    }
    return text;
  };
  EXPECT_EQ(names(""), "b2a-");
  EXPECT_EQ(names("n"), "-2ab");
  EXPECT_FALSE(ZYMHTML::loadConfigFileNamed_sortedOnKey("Hops", "").has_value());
  EXPECT_FALSE(ZYMHTML::loadConfigFileNamed_sortedOnKey("Missing", "").has_value());

  const std::pair<PlistValue, const char*> rows[] = {
      {"4.25", "4.2"},    {4.35, "4.4"}, {"x", "0.0"},  {-0.75, "-0.8"},
      {12345, "12345.0"}, {NAN, "-"},    {"1e300", "-"}};
  for (const auto& [value, text] : rows) EXPECT_EQ(ZYMHTML::trimToOneDecimalPlace(&value), text);
  EXPECT_EQ(ZYMHTML::trimToOneDecimalPlaceAppendingPercent(nullptr), "0.0 %");
  EXPECT_EQ(ZYMHTML::trimToOneDecimalPlaceAppendingPercent(&rows[6].first), "-");
  useLocale("de_DE");
  EXPECT_EQ(ZYMHTML::trimToOneDecimalPlace(&rows[0].first), "4,2");

  PlistDictionary values;
  ZYMHTML::insertHTMLHeader(values);
  EXPECT_EQ(values, (PlistDictionary{{keys::FontName, "\"San Francisco\", \"Lucida Grande\""},
                                     {keys::Viewport, ""},
                                     {keys::ZoomFactor, "0.75"}}));
}

}  // namespace
}  // namespace zym
