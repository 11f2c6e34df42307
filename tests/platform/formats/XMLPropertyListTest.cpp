#include "tests/platform/formats/AnyPlistValue.h"
#include "tests/support/Test.h"
#include "zymcore/platform/formats/XMLPropertyList.h"

namespace zym {
namespace {

using namespace std::string_literals;

std::optional<PlistValue> valueOf(std::string_view element) {
  return XMLPropertyList::read(std::string("<plist>").append(element).append("</plist>"));
}

const NSDate newYear = NSDate::dateWithTimeIntervalSince1970(1767323045);  // 2026-01-02 03:04:05

TEST(XMLPropertyList, WritesTheUsualForm) {
  const PlistDictionary tree{
      {KeyName("a & b"), PlistArray{1, 2.5, true, newYear, PlistArray(), PlistDictionary(), ""}},
      {KeyName("data"), NSData(std::string_view("hello"))}};
  EXPECT_EQ(XMLPropertyList::write(tree),
            R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>a &amp; b</key>
	<array>
		<integer>1</integer>
		<real>2.5</real>
		<true/>
		<date>2026-01-02T03:04:05Z</date>
		<array/>
		<dict/>
		<string></string>
	</array>
	<key>data</key>
	<data>
	aGVsbG8=
	</data>
</dict>
</plist>
)");
}

TEST(XMLPropertyList, ReadsEachKindOfValue) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  struct Case {
    const char* element;
    PlistValue value;
  };
  const Case cases[] = {
      {"<string> a&lt;&#x2212;<![CDATA[<b>]]> </string>", " a<\u2212<b> "},
      {"<integer> -12 </integer>", -12},
      {"<integer>0x1F</integer>", 31},
      {"<integer>-9223372036854775808</integer>", std::numeric_limits<std::int64_t>::min()},
      {"<real>-1.5e-3</real>", -0.0015},
      {"<real>+infinity</real>", infinity},
      {"<false></false>", false},
      {"<date>0001-01-01T00:00:00Z</date>", NSDate::dateWithTimeIntervalSince1970(-62135596800)},
      {"<data> aGVs\n\tbG8= </data>", NSData(std::string_view("hello"))},
      {"<data/>", NSData()},
      {"<!-- c --><array> <?pi?> <dict><key/><array/></dict></array>",
       PlistArray{PlistDictionary{{KeyName(""), PlistArray()}}}},
      {"<dict><key>a</key><true/><key>a</key><false/></dict>",
       PlistDictionary{{KeyName("a"), false}}},
  };
  for (const Case& c : cases) {
    const auto value = valueOf(c.element);
    ASSERT_TRUE(value) << c.element;
    EXPECT_TRUE(isIdentical(*value, c.value)) << c.element;
  }
  EXPECT_EQ(XMLPropertyList::read("<dict/>"), PlistValue(PlistDictionary()));
  EXPECT_EQ(XMLPropertyList::read("<\0t\0r\0u\0e\0/\0>\0"s), PlistValue(true));
  EXPECT_EQ(
      XMLPropertyList::read("<?xml version='1.0' encoding='ISO-8859-1'?><string>\xDF</string>"),
      PlistValue("ß"));
}

TEST(XMLPropertyList, RefusesWhatIsNoPropertyListAndSaysWhere) {
  struct Case {
    std::string text;
    const char* reason;
  };
  const auto plist = [](std::string_view inside) {
    return std::string("<plist>\n").append(inside).append("</plist>");
  };
  // Each would be compared with all before it.
  const auto manyOf = [](std::string_view element, int count) {
    std::string elements;
    for (int i = 0; i < count; ++i) elements += element;
    return elements;
  };
  std::string attributes;
  for (int i = 0; i < 200'000; ++i) attributes += " a" + std::to_string(i) + "='>'";
  const Case cases[] = {
      {"", "no bytes"},
      {"nonsense", "line 1: Start tag expected"},
      {plist(""), "no property list"},
      {plist("<dict><key>a</key></dict>"), "line 2: a key without a value"},
      {plist("<dict><true/></dict>"), "a value without a key"},
      {plist("<string><b/></string>"), "an element inside <string>"},
      {plist("<nothing/>"), "unknown element <nothing>"},
      {plist("<integer>1.5</integer>"), "no value in <integer>"},
      {plist("<date>2026-02-30T00:00:00Z</date>"), "no value in <date>"},
      {plist("<date>0000-01-01T00:00:00Z</date>"), "no value in <date>"},
      {plist("<date>2026-01-01T24:00:00Z</date>"), "no value in <date>"},
      {plist("<string>&unknown;</string>"), "line 2: Entity 'unknown' not defined"},
      {plist("<string>\xFF</string>"), "line 2: text that isn't UTF-8"},
      {"<!DOCTYPE plist [<!ENTITY a 'x'>]><plist><string>&a;</string></plist>",
       "line 1: a document type with declarations of its own"},
      {plist("<array" + attributes + "/>"), "line 2: a tag that is too long"},
      {plist("<array>" + manyOf("<true a='1' b='2' c='3'/>", 400) + "</array>"), "attributes"},
      {"<!-- ' --><plist><![CDATA[\" ]]><?a '?><array" + attributes + "/></plist>", "too long"},
  };
  for (const Case& c : cases) {
    NSError error;
    EXPECT_EQ(XMLPropertyList::read(c.text, &error), std::nullopt) << c.text;
    EXPECT_EQ(error.domain, NSCocoaErrorDomain);
    EXPECT_THAT(error.localizedDescription, HasSubstr(c.reason)) << c.text.substr(0, 80);
  }
}

std::string nested(std::size_t levels) {
  std::string text;
  for (std::size_t i = 0; i < levels; ++i) text += "<array>";
  for (std::size_t i = 0; i < levels; ++i) text += "</array>";
  return text;
}

TEST(XMLPropertyList, BoundsLevelsAndValues) {
  constexpr std::size_t levels = XMLPropertyList::mostLevels;
  const auto deepest = valueOf(nested(levels));
  ASSERT_TRUE(deepest);
  EXPECT_TRUE(XMLPropertyList::write(*deepest));
  NSError error;
  EXPECT_FALSE(XMLPropertyList::write(PlistArray{*deepest}, &error));
  EXPECT_THAT(error.localizedDescription, HasSubstr("too deep"));
  EXPECT_FALSE(XMLPropertyList::read(nested(1'000'000), &error));
  EXPECT_THAT(error.localizedDescription, testing::EndsWith("line 1: containers nested too deep"));

  std::string many = "<array>";
  for (std::size_t i = 0; i < XMLPropertyList::mostValues; ++i) many += "<true/>";
  EXPECT_FALSE(XMLPropertyList::read(many, &error));
  EXPECT_THAT(error.localizedDescription, HasSubstr("too many values"));
}

TEST(XMLPropertyList, LeavesOutOnlyWhatXMLHasNoFormFor) {
  const PlistDictionary awkward{{KeyName("a\x01z"), "x\0\x1By\xFFz\uFFFE\t\r\n"s}};
  EXPECT_EQ(XMLPropertyList::read(XMLPropertyList::write(awkward).value()),
            PlistValue(PlistDictionary{{KeyName("az"), "xyz\t\r\n"}}));
}

TEST(XMLPropertyList, WritesTheNearestDateItCan) {
  const std::pair<double, const char*> cases[] = {{1e300, "9999-12-31T23:59:59Z"},
                                                  {-1e300, "0001-01-01T00:00:00Z"},
                                                  {std::nan(""), "2001-01-01T00:00:00Z"},
                                                  {-0.5, "1969-12-31T23:59:59Z"}};
  for (const auto& [seconds, text] : cases) {
    EXPECT_THAT(XMLPropertyList::write(NSDate::dateWithTimeIntervalSince1970(seconds)).value(),
                HasSubstr(text));
  }
}

}  // namespace
}  // namespace zym
