#include "tests/support/Pictures.h"
#include "tests/support/Test.h"
#include "zymcore/documents/NSColorExtensions.h"
#include "zymcore/documents/NSStringExtensions+Images.h"
#include "zymcore/documents/NSStringExtensions.h"

namespace zym {
namespace {

TEST(NSStringExtensions, UUIDsAreCanonicalUpperCaseAndNew) {
  const std::regex canonical("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  std::set<std::string> seen;
  for (int i = 0; i < 100; ++i) {
    const std::string fresh = uuid();
    EXPECT_TRUE(std::regex_match(fresh, canonical)) << fresh;
    EXPECT_TRUE(seen.insert(fresh).second);
  }
}

TEST(NSStringExtensions, BooleansAreTrueAboveOneFifthInSinglePrecision) {
  for (const char* text : {"1", "1.000000", "0.25", "0.2000001", " 1", "+1", "7 days", "1e3"}) {
    EXPECT_TRUE(boolFromString(text)) << text;
  }
  for (const char* text :
       {"0", "", "No", "Yes", "true", "0.2", "0.20000000001", "-1", "nan", "inf"}) {
    EXPECT_FALSE(boolFromString(text)) << text;
  }
}

TEST(NSStringExtensions, ContainsSubstringWhateverTheCase) {
  EXPECT_TRUE(containsSubstring("Corn Sugar/Dextrose", "sugar"));
  EXPECT_TRUE(containsSubstring("corn SUGAR", "Sugar"));
  EXPECT_TRUE(containsSubstring("Weißbier", "WEISS"));
  EXPECT_TRUE(containsSubstring("RÜBENZUCKER", "rübenzucker"));
  EXPECT_FALSE(containsSubstring("Suga", "Sugar"));
  EXPECT_FALSE(containsSubstring("Sugar", std::nullopt));
  EXPECT_FALSE(containsSubstring("", "Sugar"));
}

// The count as a person would do it on paper: cross out where it stands, step on.
double similarityOnPaper(const std::vector<std::string>& first, std::vector<std::string> second) {
  const std::size_t total = first.size() + second.size();
  std::size_t matches = 0;
  for (const std::string& pair : first) {
    for (std::size_t i = 0; i < second.size(); ++i) {
      if (second[i] != pair) continue;
      ++matches;
      second.erase(second.begin() + static_cast<std::ptrdiff_t>(i));
    }
  }
  return 2.0 * static_cast<double>(matches) / static_cast<double>(total);
}

std::vector<std::string> pairsOf(const std::string& upperCaseWords) {
  std::vector<std::string> pairs;
  for (std::size_t i = 0; i + 1 < upperCaseWords.size(); ++i) {
    const std::string pair = upperCaseWords.substr(i, 2);
    if (pair.find(' ') == std::string::npos) pairs.push_back(pair);
  }
  return pairs;
}

TEST(NSStringExtensions, SimilarityOfKnownPairs) {
  EXPECT_DOUBLE_EQ(similarityWithString("Pale Malt", "PALE MALT"), 1.0);
  // One pair takes out the first and the third of three equal ones, and passes over the second.
  EXPECT_DOUBLE_EQ(similarityWithString("AA", "AAAA"), 1.0);
  EXPECT_DOUBLE_EQ(similarityWithString("AAAA", "AA"), 0.5);
  EXPECT_DOUBLE_EQ(similarityWithString("abc", "xyz"), 0.0);
  EXPECT_DOUBLE_EQ(similarityWithString("Märzen", "MÄRZEN"), 1.0);
  EXPECT_DOUBLE_EQ(similarityWithString("\U0001F37A\U0001F37A", "\U0001F37A"), 2.0 * 1 / 4);
  EXPECT_DOUBLE_EQ(similarityWithString("France", "French"), 2.0 * 2 / 10);
  EXPECT_TRUE(std::isnan(similarityWithString("", "")));
  EXPECT_TRUE(std::isnan(similarityWithString("a b c", "d")));
  EXPECT_DOUBLE_EQ(similarityWithString("", "ab"), 0.0);
}

TEST(NSStringExtensions, SimilarityAgreesWithPaper) {
  rc::check([] {
    const auto text = rc::gen::container<std::string>(rc::gen::element('A', 'B', 'C', ' '));
    const std::string a = *text;
    const std::string b = *text;
    const double expected = similarityOnPaper(pairsOf(a), pairsOf(b));
    const double actual = similarityWithString(a, b);
    RC_ASSERT(actual == expected || (std::isnan(actual) && std::isnan(expected)));
  });
}

TEST(NSStringExtensions, TextsForDisplay) {
  EXPECT_EQ(trimWhiteSpace(" \t\n Pale Malt\u00a0\r\n"), "Pale Malt");
  EXPECT_EQ(trimWhiteSpace(" \n "), "");
  EXPECT_EQ(stringByAppendingColon("Notes"), "Notes:");
  EXPECT_EQ(stringWithLastCharacterRemoved("Kölsch"), "Kölsc");
  EXPECT_EQ(stringWithLastCharacterRemoved("20°"), "20");
  EXPECT_EQ(stringWithLastCharacterRemoved(""), "");
  EXPECT_EQ(stringWithTrailingPlusSignRemovedIfPresent("1.060+"), "1.060");
  EXPECT_EQ(stringWithTrailingPlusSignRemovedIfPresent("1.060++"), "1.060+");
  EXPECT_EQ(stringWithTrailingPlusSignRemovedIfPresent("+1"), "+1");
  EXPECT_EQ(stringFormattedForHTML("a\n\nb"), "a&nbsp;<br>&nbsp;<br>b");
  EXPECT_EQ(encodeForXML("<a href='x'>\"Salt & Pepper &amp; more\"</a>"),
            "&lt;a href=&apos;x&apos;&gt;&quot;Salt &amp; Pepper &amp;amp; more&quot;&lt;/a&gt;");
}

TEST(NSStringExtensions, XMLIsAppendedOnLinesOfItsOwn) {
  std::string text = "<RECIPE>";
  xmlAppendKey_withValue_withIndentation(text, "NAME", "Dry & Stout", 2);
  indentXMLBy(text, 1);
  indentXMLBy(text, -1);
  EXPECT_EQ(text, "<RECIPE>\n\t\t<NAME>Dry &amp; Stout</NAME>\n\t\n");
}

TEST(NSStringExtensions, MD5InUpperCase) {
  EXPECT_EQ(md5HexHash("message digest"), "F96B697D7CB7938D525A2F31AAF161D0");  // RFC 1321
}

TEST(NSColorExtensions, ColoursInHexadecimal) {
  constexpr std::pair<double, const char*> components[] = {
      {0, "00"}, {-0.5, "00"}, {0.5, "7f"}, {0.9999, "fe"}, {1, "ff"}, {2, "ff"}};
  for (const auto& [component, hex] : components) EXPECT_EQ(hexForColorComponent(component), hex);
  EXPECT_EQ(hexRepresentation(NSColor::colorWithRed_green_blue_alpha(0.1, 0.5, 1, 0.3)), "197fff");
  EXPECT_EQ(hexRepresentation(NSColor::colorWithWhite_alpha(0.5, 1)), "7f7f7f");
}

TEST(NSStringExtensions, TextsWithImages) {
  const NSImage image(testing::picture(4, 2, false, [](int, int) {
    return testing::Bytes{1, 2, 3, 255};
  }));
  const NSAttributedString texts[] = {prependWithImage("Ale", image),
                                      prependWithImage_withSize("Ale", image, {4, 2}),
                                      prependWithImage_width_height("Ale", image, 8, 6)};
  const NSSize sizes[] = {{4, 2}, {4, 2}, {8, 6}};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(std::get<NSImage>(texts[i].runs().at(0)).size(), sizes[i]);
    EXPECT_EQ(std::get<std::string>(texts[i].runs().at(1)), " Ale");
  }
}

}  // namespace
}  // namespace zym
