#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

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
  const auto table0 = static_cast<char>(result.size());
  result += table + std::string(6, '\0') + filled("\x01\x01", 7, '\0') +
            static_cast<char>(objects.size()) + std::string(8, '\0') + std::string(7, '\0') +
            table0;
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

void expectSameKinds(const PlistValue& a, const PlistValue& b) {
  ASSERT_EQ(a.kind(), b.kind());
  if (const PlistArray* array = a.array()) {
    for (std::size_t i = 0; i < array->size(); ++i)
      expectSameKinds(*array->find(i), *b.array()->find(i));
  } else if (const PlistDictionary* dictionary = a.dictionary()) {
    for (const PlistEntry& entry : *dictionary) {
      expectSameKinds(entry.value, *b.dictionary()->find(entry.key));
    }
  }
}

TEST(BinaryPropertyListTest, KeepsEveryKindAndValue) {
  const auto back = BinaryPropertyList::read(bytes(sample()));
  ASSERT_TRUE(back);
  EXPECT_EQ(*back, sample());
  expectSameKinds(*back, sample());
}

TEST(BinaryPropertyListTest, ReadsTheFormsThatOthersWrite) {
  const struct {
    std::string object;
    PlistValue value;
  } cases[] = {
      {"\x09", true},
      {std::string("\x10\xff", 2), 255},
      {"\x11\xff\xfe", 65534},
      {"\x12\xff\xff\xff\xff", 4294967295},
      {"\x13\xff\xff\xff\xff\xff\xff\xff\xff", -1},
      {filled(filled("\x14", 8, '\0'), 8, '\xff'), 0x1p64},
      {filled("\x14", 15, '\0') + "\x07", 7},
      {filled("\x14", 16, '\xff'), -1},
      {std::string("\x22\x3f\x80\x00\x00", 5), 1.0},
      {std::string("\x33\x41\x00\x00\x00\x00\x00\x00\x00", 9),
       NSDate::dateWithTimeIntervalSinceReferenceDate(131072)},
      {"\x42qr", NSData(std::string_view("qr"))},
      {filled("\x5f\x10\x10", 16, 'a'), std::string(16, 'a')},
      {std::string("\x62\x20\xac\xd8\x00", 5), "\u20ac\ufffd"},
      {std::string("\x62\xd8\x3c\xdf\x7a", 5), "\U0001F37A"},
  };
  for (const auto& [object, value] : cases) {
    const auto read = BinaryPropertyList::read(list({object}));
    ASSERT_TRUE(read) << testing::PrintToString(object);
    EXPECT_EQ(*read, value) << testing::PrintToString(object);
    EXPECT_EQ(read->kind(), value.kind()) << testing::PrintToString(object);
  }
}

TEST(BinaryPropertyListTest, RefusesWhatIsDamaged) {
  std::string otherVersion = list({"\x09"});
  otherVersion[7] = '1';
  const std::string cases[] = {
      "",
      "bplist00",
      otherVersion,
      "<?xml version=\"1.0\"?><plist/>",
      list({}),
      list({std::string("\0", 1)}),     // null
      list({"\x80\x01"}),               // UID
      list({"\xc0"}),                   // set
      list({"\x0b"}),                   // neither true nor false
      list({filled("\x15", 32, 'a')}),  // 32-byte number
      list({"\x13\x01"}),               // number cut off
      list({"\x21\x01\x01"}),           // two-byte real
      list({"\x55"
            "abc"}),                         // text cut off
      list({"\x51\x80"}),                    // not ASCII
      list({"\x5f\x09"}),                    // length that is no number
      list({filled("\x5f\x14", 16, '\0')}),  // length of 16 bytes
      list({"\x5f\x13\xff\xff\xff\xff\xff\xff\xff\xff"}),
      list({"\x6f\x13\x7f\xff\xff\xff\xff\xff\xff\xff"}),
      list({"\xa1\x05"}),                             // an object that isn't there
      list({"\xa1"}),                                 // members cut off
      list({std::string("\xa1\0", 2)}),               // itself
      list({"\xd1\x01\x01", "\x10\x01"}),             // a key that is no text
      list({std::string("\xd1\x01\0", 3), "\x51k"}),  // a dictionary that holds itself
      list({"\xdf\x10\x40"}),
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

  const std::string text = filled(std::string("\x5f\x12\x00\x10\x00\x00", 6), 1U << 20U, 't');
  std::string many = "bplist00";
  const std::size_t first = many.size();
  many += filled(std::string("\xaf\x11\x10\x00", 4), 4096, '\x01');
  const std::size_t second = many.size();
  many += text;
  const std::size_t table = many.size();
  const auto four = [](std::size_t n) {
    return std::string{static_cast<char>(n >> 24U), static_cast<char>(n >> 16U),
                       static_cast<char>(n >> 8U), static_cast<char>(n)};
  };
  many += four(first) + four(second) + std::string(6, '\0') + filled("\x04\x01", 7, '\0') +
          filled("\x02", 8, '\0') + std::string(4, '\0') + four(table);
  EXPECT_FALSE(BinaryPropertyList::read(many, &error));
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

TEST(BinaryPropertyListTest, WritesEachKeyOnce) {
  PlistArray rows;
  for (int i = 0; i < 100; ++i) rows.append(PlistDictionary{{KeyName("RepeatedKey"), i}});
  const std::string written = bytes(rows);
  const std::size_t at = written.find("RepeatedKey");
  ASSERT_NE(at, std::string::npos);
  EXPECT_EQ(written.find("RepeatedKey", at + 1), std::string::npos);
}

TEST(BinaryPropertyListTest, BytesThatAreNoUTF8BecomeTheReplacementCharacter) {
  const auto back = BinaryPropertyList::read(bytes(PlistValue("a\xff\u00e9")));
  ASSERT_TRUE(back);
  EXPECT_EQ(*back, PlistValue("a\ufffd\u00e9"));
}

PlistValue tree(int depth) {
  const int kind = *rc::gen::inRange(0, depth > 0 ? 8 : 6);
  switch (kind) {
    case 0:
      return *rc::gen::arbitrary<std::int64_t>();
    case 1:
      return *rc::gen::arbitrary<double>();
    case 2:
      return *rc::gen::arbitrary<bool>();
    case 3:
      return NSDate::dateWithTimeIntervalSinceReferenceDate(*rc::gen::arbitrary<double>());
    case 4:
      return NSData(*rc::gen::arbitrary<std::vector<std::uint8_t>>());
    case 5:
      return *rc::gen::container<std::string>(rc::gen::inRange<char>(0, 127)) +
             (*rc::gen::arbitrary<bool>() ? "\u00e9\U0001F37A" : "");
    case 6: {
      PlistArray array;
      for (int i = *rc::gen::inRange(0, 20); i > 0; --i) array.append(tree(depth - 1));
      return array;
    }
    default: {
      PlistDictionary dictionary;
      for (int i = *rc::gen::inRange(0, 20); i > 0; --i) {
        dictionary.set(KeyName(std::string("k").append(std::to_string(*rc::gen::inRange(0, 30)))),
                       tree(depth - 1));
      }
      return dictionary;
    }
  }
}

RC_GTEST_PROP(BinaryPropertyListProperty, AnyTreeComesBackTheSame, ()) {
  const PlistValue value = tree(3);
  const auto back = BinaryPropertyList::read(bytes(value));
  RC_ASSERT(back.has_value());
  RC_ASSERT(*back == value);
}

/// Both directions against another implementation of the format.
TEST(BinaryPropertyListTest, AgreesWithPlistutil) {
  if (std::system("command -v plistutil >/dev/null 2>&1") != 0) GTEST_SKIP() << "no plistutil";
  const auto folder =
      std::filesystem::temp_directory_path() / ("zym-bplist-" + std::to_string(getpid()));
  std::filesystem::create_directories(folder);
  const std::string ours = (folder / "ours").string();
  const std::string xml = (folder / "xml").string();
  const std::string theirs = (folder / "theirs").string();
  std::ofstream(ours, std::ios::binary) << bytes(sample());
  const std::string there = "plistutil -i " + ours + " -f xml -o " + xml;
  const std::string back = "plistutil -i " + xml + " -f bin -o " + theirs;
  ASSERT_EQ(std::system((there + " && " + back).c_str()), 0);
  std::ifstream file(theirs, std::ios::binary);
  const std::string content{std::istreambuf_iterator<char>(file), {}};
  std::filesystem::remove_all(folder);

  const auto read = BinaryPropertyList::read(content);
  ASSERT_TRUE(read);
  // The XML between them has whole seconds only.
  PlistValue expected = sample();
  expected.editDictionary()->set(KeyName("date"),
                                 NSDate::dateWithTimeIntervalSinceReferenceDate(123456789));
  PlistValue rounded = *read;
  const NSDate date = *rounded.dictionary()->date(KeyName("date"));
  rounded.editDictionary()->set(KeyName("date"),
                                NSDate::dateWithTimeIntervalSinceReferenceDate(
                                    std::floor(date.timeIntervalSinceReferenceDate())));
  EXPECT_EQ(rounded, expected);
}

}  // namespace
}  // namespace zym
