#include "tests/support/Test.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/PlistDictionary.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {
namespace {

// Sets and removes keys as a map does, across the sizes at which the way of finding them changes.
RC_GTEST_PROP(PlistDictionary, FindsWhatAMapFinds, ()) {
  const int keys = *rc::gen::element(8, 60, 600);
  const std::string prefix = *rc::gen::element("", "ACommonBeginning", "\xFF");
  PlistDictionary dictionary;
  std::map<std::string, std::int64_t> map;
  for (int step = 0; step < 4 * keys; ++step) {
    const std::string key = prefix + std::to_string(*rc::gen::inRange(0, keys).as("key"));
    if (*rc::gen::inRange(0, 3) == 0) {
      RC_ASSERT(dictionary.remove(KeyName(key)) == (map.erase(key) == 1));
    } else {
      dictionary.set(KeyName(key), step);
      map[key] = step;
    }
  }
  RC_ASSERT(dictionary.size() == map.size());
  for (int i = 0; i < keys; ++i) {
    const std::string key = prefix + std::to_string(i);
    const PlistValue* value = dictionary.find(KeyName(key));
    RC_ASSERT((value != nullptr) == map.contains(key));
    if (value) RC_ASSERT(*value->integer() == map[key]);
  }
  PlistDictionary copy = dictionary;
  RC_ASSERT(copy == dictionary);
  copy.set(KeyName("another"), 1);
  RC_ASSERT(dictionary.size() == map.size());
  RC_ASSERT(!(copy == dictionary));
}

TEST(PlistDictionary, TakesKeysAndValuesAtOnceAndTheLastOfEqualKeys) {
  std::vector<PlistKey> keys;
  std::vector<PlistValue> values;
  for (int i = 0; i < 600; ++i) {
    keys.emplace_back(KeyName(std::to_string(i % 500)));
    values.emplace_back(i);
  }
  const PlistDictionary dictionary(keys, values);
  EXPECT_EQ(dictionary.size(), 500U);
  EXPECT_EQ(dictionary.integerValue(KeyName("99")), 599);
  EXPECT_EQ(dictionary.integerValue(KeyName("100")), 100);
  EXPECT_EQ(dictionary.begin()->key.text(), "0");
}

// A key known to the compiler and the same key read at run time are one.
TEST(PlistDictionary, HashesAlikeAtCompileTimeAndAtRunTime) {
  static constexpr KeyName known[] = {KeyName(""),         KeyName("abc"),
                                      KeyName("abcd"),     KeyName("abcdefg"),
                                      KeyName("abcdefgh"), KeyName("abcdefghijklmnopqrstuvw\xFC")};
  for (const KeyName name : known) {
    EXPECT_EQ(KeyName(std::string(name.text())).hash(), name.hash()) << name.text();
  }
}

TEST(PlistDictionary, ManyThreadsReadOneAndWriteTheirCopies) {
  PlistDictionary shared;
  for (int i = 0; i < 60; ++i) shared.set(KeyName("Key" + std::to_string(i)), i);
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 3; ++thread) {
    threads.emplace_back([shared, thread] {
      for (int i = 0; i < 2000; ++i) {
        PlistDictionary own = shared;
        const std::string key = "Key" + std::to_string((i + thread) % 60);
        EXPECT_EQ(own.integerValue(KeyName(key)), (i + thread) % 60);
        own.remove(KeyName(key));
        own.set(KeyName("Own" + std::to_string(thread * 2000 + i)), i);
        EXPECT_FALSE(own.contains(KeyName(key)));
      }
    });
  }
  threads.clear();
  EXPECT_EQ(shared.size(), 60U);
}

TEST(PlistDictionary, EditsByKeyAndPosition) {
  PlistDictionary dictionary{{KeyName("a"), PlistArray{PlistDictionary(), 5}}};
  const PlistDictionary copy = dictionary;
  for (PlistDictionary& row : dictionary.editRows(KeyName("a"))) row.setNumber(KeyName("x"), 0.5);
  EXPECT_EQ(dictionary.rows(KeyName("a")).begin()->stringValue(KeyName("x")), "0.500000");
  EXPECT_TRUE(copy.rows(KeyName("a")).begin()->empty());
  dictionary.editAt(0) = 1;
  EXPECT_EQ(dictionary, (PlistDictionary{{KeyName("a"), 1}}));
  EXPECT_EQ(dictionary.edit(KeyName("b")), nullptr);
  EXPECT_EQ(dictionary.editArray(KeyName("a")), nullptr);
  EXPECT_THROW((void)dictionary.editAt(1), NSException);
}

}  // namespace
}  // namespace zym
