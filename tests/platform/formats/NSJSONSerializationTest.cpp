#include "tests/platform/formats/AnyPlistValue.h"
#include "tests/support/Test.h"
#include "zymcore/platform/formats/NSJSONSerialization.h"

namespace zym {
namespace {

using namespace std::string_literals;

std::optional<PlistValue> read(std::string_view text, NSError* error = nullptr) {
  return NSJSONSerialization::JSONObjectWithData_options(text, 0, error);
}

std::optional<std::string> written(const PlistValue& value) {
  return NSJSONSerialization::dataWithJSONObject_options(value, 0);
}

const PlistValue& only(const std::optional<PlistValue>& array) {
  return *array.value().array()->find(0);
}

TEST(NSJSONSerialization, ReadsNumbersToTheLastBit) {
  struct Case {
    const char* text;
    PlistValue value;
  };
  const Case cases[] = {
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"9223372036854775808", 9223372036854775808.0},
      {"0.30000000000000004", 0.1 + 0.2},
      {"2.2250738585072011e-308", 0x0.fffffffffffffp-1022},
      {"5e-324", 5e-324},
      {"1e-999", 0.0},
      {"-0", 0},
  };
  for (const Case& c : cases) {
    const auto back = read("["s + c.text + "]");
    EXPECT_EQ(only(back), c.value) << c.text;
    EXPECT_EQ(only(back).kind(), c.value.kind()) << c.text;
  }
}

TEST(NSJSONSerialization, PassesOverNullAndTakesTheLastOfEqualKeys) {
  EXPECT_EQ(
      read(R"({"a":null,"b":[null,1,null],"c":{"d":null},"e":1,"e":2,"e":null})"),
      PlistValue(PlistDictionary{
          {KeyName("b"), PlistArray{1}}, {KeyName("c"), PlistDictionary()}, {KeyName("e"), 2}}));
}

TEST(NSJSONSerialization, RefusesWhatIsNoDocumentAndSaysWhere) {
  struct Case {
    std::string text;
    const char* reason;
  };
  const Case cases[] = {
      {"", "line 1, column 1: The document is empty"},
      {"{\"a\":1", "line 1, column 7: Missing a comma or '}'"},
      {"{\n \"a\" 1}", "line 2, column 6: Missing a colon"},
      {"{\"ü\": tru}", "line 1, column 10: Invalid value"},
      {"[1] [2]", "line 1, column 5: The document root must not be followed"},
      {"[]\0x"s, "line 1, column 3: a zero byte"},
      {"[\"\xFF\"]", "line 1, column 3: bytes that aren't UTF-8"},
      {"[\"\xED\xA0\x80\"]", "UTF-8"},
      {"[\"\\ud800\"]", "surrogate pair"},
      {"[\"\\udc00\"]", "line 1, column 10: half a surrogate pair"},
      {"[1e999]", "Number too big"},
      {"[1.8e308]", "line 1, column 2: a number too big"},
      {std::string(1'000'000, '['), "line 1, column 513: containers nested too deep"},
  };
  for (const Case& c : cases) {
    NSError error;
    EXPECT_EQ(read(c.text, &error), std::nullopt) << c.text.substr(0, 40);
    EXPECT_EQ(error.domain, NSCocoaErrorDomain);
    EXPECT_THAT(error.localizedDescription, HasSubstr(c.reason)) << c.text.substr(0, 40);
  }
}

TEST(NSJSONSerialization, BoundsLevelsAndValues) {
  constexpr std::size_t levels = NSJSONSerialization::mostLevels;
  EXPECT_TRUE(read(std::string(levels, '[') + std::string(levels, ']')));
  EXPECT_FALSE(read(std::string(levels + 1, '[') + std::string(levels + 1, ']')));

  std::string many = "[0";
  for (std::size_t i = 2; i < NSJSONSerialization::mostValues; ++i) many += ",0";
  EXPECT_TRUE(read(many + "]"));
  NSError error;
  EXPECT_FALSE(read(many + ",0]", &error));
  EXPECT_THAT(error.localizedDescription, HasSubstr("too many values"));
  EXPECT_FALSE(read(std::string(NSJSONSerialization::mostBytes + 1, ' '), &error));
  EXPECT_THAT(error.localizedDescription, HasSubstr("too many bytes"));
}

TEST(NSJSONSerialization, RecognisesEncodings) {
  const PlistValue tree = PlistArray{"ß"};
  EXPECT_EQ(read("\uFEFF[\"ß\"]"), tree);
  EXPECT_EQ(read("[\0\"\0\xDF\0\"\0]\0"s), tree);
  EXPECT_EQ(read("\xFE\xFF\0[\0\"\0\xDF\0\"\0]"s), tree);
  NSError error;
  EXPECT_FALSE(read("[\0\"\0\x3C\xD8\"\0]\0"s, &error));
  EXPECT_EQ(error.localizedDescription, "invalid UTF-16LE");
  EXPECT_FALSE(read("[\0001\0]\0x"s));
}

TEST(NSJSONSerialization, RefusesToWriteWhatJSONCannotCarry) {
  struct Case {
    PlistValue value;
    const char* reason;
  };
  PlistValue deep = PlistArray();
  for (std::size_t i = 0; i < NSJSONSerialization::mostLevels; ++i) deep = PlistArray{deep};
  const Case cases[] = {
      {"text", "top level"},
      {PlistArray{NSDate()}, "a date"},
      {PlistDictionary{{KeyName("a"), PlistArray{NSData()}}}, "binary data"},
      {PlistArray{std::nan("")}, "a number"},
      {PlistArray{"\xC3"}, "UTF-8"},
      {PlistDictionary{{KeyName("\xC3"), 1}}, "UTF-8"},
      {deep, "too deep"},
  };
  for (const Case& c : cases) {
    NSError error;
    EXPECT_FALSE(NSJSONSerialization::isValidJSONObject(c.value)) << c.reason;
    EXPECT_FALSE(NSJSONSerialization::dataWithJSONObject_options(c.value, 0, &error)) << c.reason;
    EXPECT_THAT(error.localizedDescription, HasSubstr(c.reason));
  }
}

TEST(NSJSONSerialization, KeepsKindsApartAndEscapesWhatMustBe) {
  EXPECT_EQ(written(PlistArray{2.0, 2, true, "2"}), R"([2.0,2,true,"2"])");
  EXPECT_EQ(written(PlistDictionary{{KeyName("a\"b"), "\\ / \n \x01 ü \u2028 \U0001F37A"}}),
            "{\"a\\\"b\":\"\\\\ / \\n \\u0001 ü \u2028 \U0001F37A\"}");
  const PlistValue withZero = PlistArray{"a\0b"s};
  EXPECT_EQ(written(withZero), "[\"a\\u0000b\"]");
  EXPECT_EQ(read("[\"a\\u0000b\"]"), withZero);
  EXPECT_EQ(NSJSONSerialization::dataWithJSONObject_options(
                PlistDictionary{{KeyName("a"), PlistArray{1, 2}}}, NSJSONWritingPrettyPrinted),
            "{\n  \"a\": [\n    1,\n    2\n  ]\n}");
}

RC_GTEST_PROP(NSJSONSerialization, WhatIsWrittenReadsBackTheSame, ()) {
  const PlistValue tree = *anyTree(AnyTree::OfJSON);
  RC_ASSERT(NSJSONSerialization::isValidJSONObject(tree));
  const auto back = read(written(tree).value());
  RC_ASSERT(back.has_value());
  RC_ASSERT(isIdentical(*back, tree));
}

}  // namespace
}  // namespace zym
