#include "tests/support/Test.h"
#include "zymcore/documents/Base64.h"
#include "zymcore/documents/SafeJSON.h"

namespace zym {
namespace {

const KeyName a{"a"};
const KeyName b{"b"};

NSData bytes(std::size_t count) {
  return NSData(std::string(count, '\0'));
}

TEST(SafeJSON, DatesAndDataTravelAsMarkedText) {
  const NSDate date = NSDate::dateWithTimeIntervalSince1970(1234567890.125);
  EXPECT_EQ(JSONDate(date), "//Date:1234567890.125000");
  EXPECT_EQ(JSONData(NSData()), "//Data:");
  EXPECT_EQ(JSONData(NSData("M")), "//Data:TQ==");

  const PlistDictionary tree{
      {a, date}, {b, PlistArray{PlistDictionary{{a, NSData("beer")}, {b, date}}, NSData("ale")}}};
  NSError error;
  const auto json = safeDataWithJSONObject_options(tree, 0, &error);
  ASSERT_TRUE(json) << error.localizedDescription;
  EXPECT_EQ(*json, R"({"a":"//Date:1234567890.125000","b":[{"a":"//Data:YmVlcg==",)"
                   R"("b":"//Date:1234567890.125000"},"//Data:YWxl"]})");
  EXPECT_EQ(safeJSONObjectWithData_options(*json, 0), PlistValue(tree));
}

TEST(SafeJSON, ADateDirectlyInAnArrayHasNoForm) {
  NSError error;
  EXPECT_FALSE(
      safeDataWithJSONObject_options(PlistDictionary{{a, PlistArray{NSDate::date()}}}, 0, &error));
  EXPECT_FALSE(error.domain.empty());

  const auto tree = safeJSONObjectWithData_options(R"({"a":["//Date:5"]})", 0);
  EXPECT_EQ(*tree, PlistValue(PlistDictionary{{a, PlistArray{"//Date:5"}}}));
}

TEST(SafeJSON, MarkersCountAnywhere) {
  struct Case {
    const char* text;
    PlistValue value;
  };
  const auto since1970 = &NSDate::dateWithTimeIntervalSince1970;
  for (const Case& c : {Case{"//Date:abc", since1970(0)}, Case{"//Date:", since1970(0)},
                        Case{"see //Date:5", since1970(0)}, Case{"12//Date:34", since1970(1234)},
                        Case{"//Date://Date:5", since1970(5)},
                        Case{"//Date:5//Data:TQ==", since1970(5)}, Case{"T//Data:Q==", NSData("M")},
                        Case{"//date:5", "//date:5"}, Case{"/Date:5", "/Date:5"}, Case{"", ""}}) {
    PlistDictionary tree{{a, c.text}};
    processAfterDeserialization(tree);
    EXPECT_EQ(*tree.find(a), c.value) << c.text;
  }
  EXPECT_FALSE(dateFromJSONDate("5"));
}

TEST(SafeJSON, TheCallersTreeStaysAsItIs) {
  const PlistDictionary tree{{a, PlistDictionary{{b, NSDate::date()}}}};
  const PlistDictionary before = tree;
  ASSERT_TRUE(safeDataWithJSONObject_options(tree, 0));
  EXPECT_EQ(tree, before);
}

TEST(SafeJSON, WhatIsNoJSONIsAnError) {
  for (const char* text : {"", "{", "nonsense", "\"text\"", "{\"a\":1}}", "{\"a\":\"\xff\"}"}) {
    NSError error;
    EXPECT_FALSE(safeJSONObjectWithData_options(text, 0, &error)) << text;
    EXPECT_FALSE(error.localizedDescription.empty()) << text;
  }
}

TEST(Base64, LinesBreakBetweenFortyEightBytesAndNotAfterThem) {
  const auto encoded = [](std::size_t count) { return base64EncodedString(bytes(count)); };
  EXPECT_EQ(encoded(0), "");
  EXPECT_EQ(encoded(48), std::string(64, 'A'));
  EXPECT_EQ(encoded(49), std::string(64, 'A') + "\r\nAA==");
  EXPECT_EQ(encoded(96), std::string(64, 'A') + "\r\n" + std::string(64, 'A'));
  EXPECT_EQ(NewBase64Encode(bytes(49).bytes(), false), std::string(66, 'A') + "==");
}

// RFC 4648.
TEST(Base64, KnownTexts) {
  constexpr std::pair<const char*, const char*> known[] = {
      {"f", "Zg=="},         {"fo", "Zm8="},         {"foo", "Zm9v"},     {"foob", "Zm9vYg=="},
      {"fooba", "Zm9vYmE="}, {"foobar", "Zm9vYmFy"}, {"\xfb\xff", "+/8="}};
  for (const auto& [plain, text] : known) {
    EXPECT_EQ(base64EncodedString(NSData(plain)), text);
    EXPECT_EQ(dataFromBase64String(text), NSData(plain));
  }
  EXPECT_EQ(dataFromBase64String(" Z-m\r\n9=v\tYg"), NSData("foob"));
  EXPECT_EQ(dataFromBase64String("Zm9vY"), NSData("foo"));
}

TEST(Base64, ReadsBackWhatItWrote) {
  rc::check([](const std::vector<std::uint8_t>& data, bool separateLines) {
    RC_ASSERT(NewBase64Decode(NewBase64Encode(data, separateLines)) == data);
  });
}

}  // namespace
}  // namespace zym
