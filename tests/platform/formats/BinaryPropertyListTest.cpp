#include "tests/platform/formats/AnyPlistValue.h"
#include "tests/support/Test.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"

namespace zym {
namespace {

std::string bytes(const PlistValue& value) {
  return BinaryPropertyList::write(value).value_or("");
}

std::string filled(std::string start, std::size_t count, char filler) {
  return start.append(count, filler);
}

/// A list of the objects given, each with its marker, the first on top.
std::string list(const std::vector<std::string>& objects) {
  std::string result = "bplist00";
  std::string table;
  for (const std::string& object : objects) {
    table += static_cast<char>(result.size());
    result += object;
  }
  const std::size_t at = result.size();
  result += table + std::string(6, '\0') + filled("\x01\x01", 7, '\0') +
            static_cast<char>(objects.size()) + std::string(8, '\0') + std::string(4, '\0');
  for (const unsigned shift : {24U, 16U, 8U, 0U}) result += static_cast<char>(at >> shift);
  return result;
}

PlistValue sample() {
  return PlistDictionary{
      {KeyName("text"), "plain"},
      {KeyName("long"), std::string(70000, 'x')},
      {KeyName("other"), "Gr\u00fc\u00dfe \u2603 \U0001F37A"},
      {KeyName("\u00dcber"), ""},
      {KeyName("numbers"), PlistArray{0, 1, 255, 256, 65535, 65536, 4294967295, 4294967296, -1,
                                      std::numeric_limits<std::int64_t>::max(),
                                      std::numeric_limits<std::int64_t>::min()}},
      {KeyName("reals"), PlistArray{0.0, -0.5, 1e300, 0.1}},
      {KeyName("flags"), PlistArray{true, false}},
      {KeyName("date"), NSDate::dateWithTimeIntervalSinceReferenceDate(123456789.125)},
      {KeyName("data"), NSData(std::string_view("\0\xff\x7f", 3))},
      {KeyName("nested"),
       PlistArray{PlistDictionary{{KeyName("text"), 1}}, PlistDictionary(), PlistArray()}}};
}

TEST(BinaryPropertyListTest, KeepsEveryKindAndValue) {
  EXPECT_EQ(BinaryPropertyList::read(bytes(PlistValue("a\xff\u00e9"))),
            PlistValue("a\ufffd\u00e9"));
  const auto back = BinaryPropertyList::read(bytes(sample()));
  ASSERT_TRUE(back);
  EXPECT_TRUE(isIdentical(*back, sample()));
}

TEST(BinaryPropertyListTest, ReadsTheFormsThatOthersWrite) {
  const struct {
    std::string object;
    PlistValue value;
  } cases[] = {
      {"\x09", true},
      {std::string("\x10\xff", 2), 255},
      {"\x12\xff\xff\xff\xff", 4294967295},
      {filled(filled("\x14", 8, '\0'), 8, '\xff'), 0x1p64},
      {filled("\x14", 15, '\0') + "\x07", 7},
      {filled("\x14", 16, '\xff'), -1},
      {std::string("\x22\x3f\x80\x00\x00", 5), 1.0},
      {std::string("\x33\x41\x00\x00\x00\x00\x00\x00\x00", 9),
       NSDate::dateWithTimeIntervalSinceReferenceDate(131072)},
      {filled("\x5f\x10\x10", 16, 'a'), std::string(16, 'a')},
      {std::string("\x62\x20\xac\xd8\x00", 5), "\u20ac\ufffd"},
      {std::string("\x62\xd8\x3c\xdf\x7a", 5), "\U0001F37A"},
  };
  for (const auto& [object, value] : cases) {
    const auto read = BinaryPropertyList::read(list({object}));
    ASSERT_TRUE(read) << testing::PrintToString(object);
    EXPECT_TRUE(isIdentical(*read, value)) << testing::PrintToString(object);
  }
}

TEST(BinaryPropertyListTest, RefusesWhatIsDamaged) {
  std::string otherVersion = list({"\x09"});
  otherVersion[7] = '1';
  const std::string cases[] = {
      "",
      "bplist00",
      otherVersion,
      list({}),
      list({std::string("\0", 1)}),          // null
      list({"\x80\x01"}),                    // UID
      list({filled("\x15", 32, 'a')}),       // 32-byte number
      list({"\x51\x80"}),                    // not ASCII
      list({"\x5f\x09"}),                    // length that is no number
      list({filled("\x5f\x14", 16, '\0')}),  // length of 16 bytes
      list({"\x5f\x13\xff\xff\xff\xff\xff\xff\xff\xff"}),
      list({"\xa1\x05"}),                  // an object that isn't there
      list({std::string("\xa1\0", 2)}),    // itself
      list({"\xd1\x01\x01", "\x10\x01"}),  // a key that is no text
  };
  for (const std::string& damaged : cases) {
    NSError error;
    EXPECT_FALSE(BinaryPropertyList::read(damaged, &error)) << testing::PrintToString(damaged);
    EXPECT_EQ(error.domain, NSCocoaErrorDomain);
    EXPECT_FALSE(error.localizedDescription.empty());
  }
}

TEST(BinaryPropertyListTest, RefusesEveryTruncationAndSurvivesEveryChangedByte) {
  PlistValue value = sample();
  value.editDictionary()->remove(KeyName("long"));
  const std::string whole = bytes(value);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(BinaryPropertyList::read(std::string_view(whole).substr(0, length)));
  }
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const unsigned flip : {0x01U, 0x10U, 0x80U, 0xFFU}) {
      std::string changed = whole;
      changed[at] = static_cast<char>(static_cast<unsigned char>(changed[at]) ^ flip);
      (void)BinaryPropertyList::read(changed);
    }
  }
}

TEST(BinaryPropertyListTest, SharedObjectsAreReadWithinABudget) {
  std::vector<std::string> doubling;
  for (char i = 1; i <= 60; ++i) doubling.push_back(filled("\xa2", 2, i));
  doubling.push_back("\x09");
  NSError error;
  EXPECT_FALSE(BinaryPropertyList::read(list(doubling), &error));
  EXPECT_NE(error.localizedDescription.find("too many values"), std::string::npos);

  std::vector<std::string> few(doubling.end() - 9, doubling.end());
  for (std::size_t i = 0; i + 1 < few.size(); ++i) {
    few[i] = filled("\xa2", 2, static_cast<char>(i + 1));
  }
  ASSERT_TRUE(BinaryPropertyList::read(list(few)));

  // The same megabyte of text fifteen times over in each of fifteen lists.
  const std::string text = filled(std::string("\x5f\x12\x00\x10\x00\x00", 6), 1U << 20U, 't');
  EXPECT_FALSE(BinaryPropertyList::read(
      list({filled("\xae", 14, '\x01'), filled("\xae", 14, '\x02'), text}), &error));
  EXPECT_NE(error.localizedDescription.find("too much text"), std::string::npos);
}

TEST(BinaryPropertyListTest, NestsToItsLimitBothWays) {
  PlistValue value = true;
  for (std::size_t i = 0; i < BinaryPropertyList::mostLevels; ++i) value = PlistArray{value};
  const std::string deepest = bytes(value);
  const auto back = BinaryPropertyList::read(deepest);
  ASSERT_TRUE(back);
  EXPECT_EQ(*back, value);
  NSError error;
  EXPECT_FALSE(BinaryPropertyList::write(PlistArray{value}, &error));
  EXPECT_EQ(error.domain, NSCocoaErrorDomain);
}

// Keys of 16 bytes that all have the same hash: the last eight undo what the first have done.
std::string collidingKey(std::uint64_t number) {
  std::uint64_t mixed = (16 ^ number) * 0x9E3779B97F4A7C15U;
  mixed ^= mixed >> 32U;
  const std::uint64_t words[] = {number, mixed ^ 12345};
  return {reinterpret_cast<const char*>(words), sizeof words};
}

TEST(BinaryPropertyListTest, ChosenKeysDoNotSlowItDown) {
  ASSERT_EQ(KeyName(collidingKey(1)).hash(), KeyName(collidingKey(2)).hash());
  constexpr std::uint64_t count = 40'000;
  const auto secondsFor = [&](const auto& keyOf) {
    const auto start = std::chrono::steady_clock::now();
    PlistDictionary dictionary;
    for (std::uint64_t i = 0; i < count; ++i) dictionary.set(KeyName(keyOf(i)), true);
    const auto read = BinaryPropertyList::read(BinaryPropertyList::write(dictionary).value());
    EXPECT_EQ(read->dictionary()->size(), count);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  const double usual =
      secondsFor([](std::uint64_t i) { return "a key of 16 bytes" + std::to_string(i); });
  EXPECT_LT(secondsFor(collidingKey), 0.1 + 10 * usual);
}

}  // namespace
}  // namespace zym
