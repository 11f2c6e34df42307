#include "tests/support/Test.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {
namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

// Those of one row equal each other and none of another row.
TEST(PlistValue, EqualsWhatIsTheSame) {
  const std::vector<PlistValue> rows[] = {
      {0, 0.0, -0.0, false},
      {1, 1.0, true},
      {1.5},
      {std::nan(""), -std::nan("")},
      {most},
      {0x1p63},
      {least, -0x1p63},
      {std::int64_t{1} << 53, 0x1p53},
      {(std::int64_t{1} << 53) + 1},
      {"1"},
      {""},
      {NSData("1")},
      {NSData()},
      {NSDate::dateWithTimeIntervalSinceReferenceDate(1)},
      {PlistArray(), PlistArray{}},
      {PlistArray{1}, PlistArray{1.0}},
      {PlistArray{2, 1}},
      {PlistDictionary()},
      {PlistDictionary{{KeyName("a"), 1}, {KeyName("b"), PlistArray{1}}},
       PlistDictionary{{KeyName("b"), PlistArray{true}}, {KeyName("a"), 1}}},
      {PlistDictionary{{KeyName("a"), 1}, {KeyName("b"), PlistArray{2}}}},
      {PlistDictionary{{KeyName("a"), 1}, {KeyName("c"), PlistArray{1}}}},
  };
  for (const auto& row : rows) {
    for (const auto& other : rows) {
      for (const PlistValue& a : row) {
        for (const PlistValue& b : other) {
          EXPECT_EQ(a == b, &row == &other) << &row - rows << ' ' << &other - rows;
        }
      }
    }
  }
}

TEST(PlistValue, ReadsAsANumber) {
  struct Case {
    PlistValue value;
    double number;
    std::int64_t integer;
    bool flag;
    const char* className;
  };
  const Case cases[] = {
      {" 12.5 l", 12.5, 12, true, "NSString"},
      {"-3", -3, -3, false, "NSString"},
      {most, static_cast<double>(most), most, true, "NSNumber"},
      {-1.9, -1.9, -1, false, "NSNumber"},
      {1e300, 1e300, most, true, "NSNumber"},
      {-1e300, -1e300, least, false, "NSNumber"},
      {0.21, 0.21, 0, true, "NSNumber"},
      {false, 0, 0, false, "NSNumber"},
      {NSDate::dateWithTimeIntervalSinceReferenceDate(5), 0, 0, false, "NSDate"},
      {NSData("5"), 0, 0, false, "NSData"},
      {PlistArray{5}, 0, 0, false, "NSArray"},
      {PlistDictionary(), 0, 0, false, "NSDictionary"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.value.doubleValue(), c.number) << c.number;
    EXPECT_EQ(c.value.integerValue(), c.integer) << c.number;
    EXPECT_EQ(c.value.boolValue(), c.flag) << c.number;
    EXPECT_STREQ(c.value.className(), c.className);
  }
}

TEST(PlistArray, ChangesWithoutItsCopies) {
  PlistArray array{1, 2};
  const PlistArray copy = array;
  array.insert(0, 0);
  array.insert(3, 3);
  array.set(1, "one");
  array.remove(2);
  array.append(PlistArray());
  array.edit(3).editArray()->append(4);
  EXPECT_EQ(array, (PlistArray{0, "one", 3, PlistArray{4}}));
  EXPECT_EQ(copy, (PlistArray{1, 2}));
  EXPECT_EQ(array.find(4), nullptr);
  EXPECT_THROW(array.insert(5, 0), NSException);
  EXPECT_THROW(array.set(4, 0), NSException);
  EXPECT_THROW(array.remove(4), NSException);
  array.clear();
  EXPECT_TRUE(array.empty());
  EXPECT_THROW((void)array.edit(0), NSException);
}

}  // namespace
}  // namespace zym
