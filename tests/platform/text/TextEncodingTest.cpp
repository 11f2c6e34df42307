#include "tests/support/Test.h"
#include "zymcore/platform/text/TextEncoding.h"

namespace zym {
namespace {

using namespace std::string_view_literals;

TEST(TextEncoding, ReadsWideTextsByMarkOrZeros) {
  struct Case {
    std::string_view bytes;
    const char* encoding;
    std::string_view text;
  };
  constexpr Case cases[] = {
      {"\xFF\xFE<\0\xDF\0"sv, "UTF-16LE", "\uFEFF<ß"},
      {"\xFE\xFF\0<\0\xDF"sv, "UTF-16BE", "\uFEFF<ß"},
      {"\xFF\xFE\0\0<\0\0\0"sv, "UTF-32LE", "\uFEFF<"},
      {"\0\0\xFE\xFF\0\1\xF3\x7A"sv, "UTF-32BE", "\uFEFF🍺"},
      {"<\0\xDF\0"sv, "UTF-16LE", "<ß"},
      {"\0<\0\xDF"sv, "UTF-16BE", "<ß"},
      {"{\0\0\0}\0\0\0"sv, "UTF-32LE", "{}"},
      {"\0\0\0{\0\0\0}"sv, "UTF-32BE", "{}"},
  };
  for (const Case& each : cases) {
    const char* const encoding = wideEncodingOf(each.bytes);
    ASSERT_STREQ(encoding, each.encoding) << each.text;
    EXPECT_EQ(stringFromEncoding(each.bytes, encoding, InvalidBytes::Refused), each.text);
  }
  for (const std::string_view other : {""sv, "<"sv, "<a"sv, "\xEF\xBB\xBF"sv, "\xFF"sv, "\0\0"sv}) {
    EXPECT_EQ(wideEncodingOf(other), nullptr) << other;
  }
}

TEST(TextEncoding, RefusesOrReplacesWhatIsNoCharacter) {
  constexpr std::string_view half = "a\0\x00\xD8"sv;
  EXPECT_EQ(stringFromEncoding(half, "UTF-16LE", InvalidBytes::Refused), std::nullopt);
  EXPECT_EQ(stringFromEncoding(half, "UTF-16LE", InvalidBytes::Replaced), "a\uFFFD");
  EXPECT_EQ(stringFromEncoding("\xE9", "ISO-8859-2", InvalidBytes::Refused), "é");
  EXPECT_EQ(stringFromEncoding("", "UTF-16LE", InvalidBytes::Refused), "");
  EXPECT_EQ(stringFromEncoding("a", "no encoding", InvalidBytes::Replaced), std::nullopt);
}

}  // namespace
}  // namespace zym
