#include "tests/support/Test.h"
#include "zymcore/platform/text/NSString.h"

namespace zym {
namespace {

using namespace std::string_literals;

TEST(NSString, MapsCaseByTheRulesOfUnicode) {
  EXPECT_EQ(uppercaseString("abc xyz {|} @[` 19"), "ABC XYZ {|} @[` 19");
  EXPECT_EQ(lowercaseString("ABC XYZ {|} @[` 19"), "abc xyz {|} @[` 19");
  EXPECT_EQ(uppercaseString("Weißbier ﬁ é i"), "WEISSBIER FI É I");
  EXPECT_EQ(lowercaseString("ÄÖÜ Σίσυφος ΟΔΟΣ I"), "äöü σίσυφος οδος i");
  EXPECT_EQ(uppercaseString("a\xFFü"), "A\xFFÜ");
}

// Each of the texts as UTF-8, without what is invalid, and in UTF-16 units.
TEST(NSString, CarriesTextsFromOneEncodingToTheOther) {
  struct Case {
    std::string text;
    std::string valid;
    std::u16string units;
  };
  const Case cases[] = {
      {"", "", u""},
      {"plain ASCII text", "plain ASCII text", u"plain ASCII text"},
      {"12345678ü", "12345678ü", u"12345678ü"},
      {"\u2212\U0001F37A", "\u2212\U0001F37A", u"\u2212\U0001F37A"},
      {"a\xFF"
       "b",
       "ab", u"a\uFFFDb"},
      {"\xC3", "", u"\uFFFD"},
      {"\xF0\x9F\x8D"
       "x",
       "x", u"\uFFFDx"},
      {"\xC0\x80", "", u"\uFFFD\uFFFD"},
      {"\xED\xA0\x80", "", u"\uFFFD\uFFFD\uFFFD"},
      {"\xF5\x80", "", u"\uFFFD\uFFFD"},
      {"a\0b"s, "a\0b"s, u"a\0b"s},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(stringByDroppingInvalidUTF8(c.text), c.valid);
    EXPECT_EQ(isUTF8(c.text), c.text == c.valid);
    EXPECT_EQ(UTF16String(c.text), c.units);
    EXPECT_EQ(UTF16Length(c.text), c.units.size());
    if (c.text == c.valid) {
      EXPECT_EQ(stringWithUTF16(c.units), c.text);
    }
  }
  EXPECT_EQ(stringWithUTF16(u"a\xD83C"), "a\uFFFD");
  EXPECT_EQ(stringWithUTF16(u"\xDF7Ax"), "\uFFFDx");
}

RC_GTEST_PROP(NSString, SurvivesAnyBytes, (const std::string& bytes)) {
  RC_ASSERT(isUTF8(stringByDroppingInvalidUTF8(bytes)));
  RC_ASSERT(isUTF8(uppercaseString(bytes)) == isUTF8(bytes));
  RC_ASSERT(UTF16String(bytes).size() == UTF16Length(bytes));
  if (isUTF8(bytes)) RC_ASSERT(stringWithUTF16(UTF16String(bytes)) == bytes);
}

TEST(NSString, Formats) {
  EXPECT_EQ(stringWithFormat("Batch %ld of %@", {"3", "%@ 100%"}), "Batch 3 of %@ 100%");
  EXPECT_EQ(stringWithFormat("%2$@: Sud %1$.0f", {"3", "Bock"}), "Bock: Sud 3");
  EXPECT_EQ(stringWithFormat("100%% %@ %s %9$@%", {}), "100%  %s %");
}

}  // namespace
}  // namespace zym
