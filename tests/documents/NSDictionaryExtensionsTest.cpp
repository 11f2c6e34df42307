#include "tests/support/Test.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/platform/values/NSNotFound.h"

namespace zym {
namespace {

const KeyName a{"a"};
const KeyName b{"b"};

TEST(NSDictionaryExtensions, CorrectionTurnsNumbersInDictionariesIntoText) {
  PlistDictionary tree{
      {a, 2},
      {b, PlistDictionary{{a, true}, {b, PlistArray{2, "2", PlistDictionary{{a, 72.3}}}}}},
      {KeyName{"text"}, "1.000"},
      {KeyName{"date"}, NSDate::dateWithTimeIntervalSince1970(5)},
      {KeyName{"data"}, NSData("\xff")}};
  correctForSerialization(tree);
  EXPECT_EQ(tree,
            (PlistDictionary{
                {a, "2.000000"},
                {b, PlistDictionary{{a, "1.000000"},
                                    {b, PlistArray{2, "2", PlistDictionary{{a, "72.300003"}}}}}},
                {KeyName{"text"}, "1.000"},
                {KeyName{"date"}, NSDate::dateWithTimeIntervalSince1970(5)},
                {KeyName{"data"}, NSData("\xff")}}));
}

TEST(NSDictionaryExtensions, CorrectionReplacesTextTooLongToBeTrue) {
  const std::string longest(10000, 'x');
  std::string wide;  // 10000 characters in 20000 bytes
  for (int i = 0; i < 10000; ++i) wide += "é";
  PlistDictionary tree{{a, longest}, {b, longest + "x"}, {KeyName{"wide"}, wide}};
  correctForSerialization(tree);
  EXPECT_EQ(tree.stringValue(a), longest);
  EXPECT_EQ(tree.stringValue(KeyName{"wide"}), wide);
  EXPECT_TRUE(
      tree.stringValue(b).starts_with("*Possible Corruption Detected. Text removed. Contact "));
  EXPECT_TRUE(tree.stringValue(b).ends_with(" for more info.*"));
}

TEST(NSDictionaryExtensions, CorrectionDropsWhatUTF8CantCarry) {
  PlistDictionary tree{{a, "K\xf6lsch \xc3\xb6\xed\xa0\x80!"}};
  correctForSerialization(tree);
  EXPECT_EQ(tree.stringValue(a), "Klsch ö!");
}

TEST(NSDictionaryExtensions, CorrectionOfAFitTreeCopiesNothing) {
  const PlistDictionary tree{{a, "1"}, {b, PlistArray{PlistDictionary{{a, "x"}}}}};
  PlistDictionary same = tree;
  correctForSerialization(same);
  EXPECT_EQ(same.begin(), tree.begin());
}

TEST(NSDictionaryExtensions, BlanksLeaveTheKeysAtEveryDepth) {
  PlistDictionary tree{
      {KeyName{"Wort Volume "}, "1"},
      {KeyName{"  "}, "2"},
      {KeyName{"Same"}, "old"},
      {KeyName{"Sa me"}, "new"},
      {KeyName{"Rows"},
       PlistArray{PlistDictionary{{KeyName{"a b"}, PlistDictionary{{KeyName{" c"}, 1}}}},
                  "left as is"}}};
  removeSpacesInKeys(tree);
  EXPECT_EQ(tree,
            (PlistDictionary{
                {KeyName{"WortVolume"}, "1"},
                {KeyName{""}, "2"},
                {KeyName{"Same"}, "new"},
                {KeyName{"Rows"},
                 PlistArray{PlistDictionary{{KeyName{"ab"}, PlistDictionary{{KeyName{"c"}, 1}}}},
                            "left as is"}}}));
}

TEST(NSDictionaryExtensions, BlanksOfAHundredThousandKeys) {
  PlistDictionary tree;
  for (int i = 0; i < 100000; ++i) tree.set(KeyName{"k " + std::to_string(i)}, i);
  removeSpacesInKeys(tree);
  EXPECT_EQ(tree.size(), 100000U);
  EXPECT_EQ(tree.integerValue(KeyName{"k99999"}), 99999);
}

TEST(NSDictionaryExtensions, RemovingBlanksFromAScalarIsAFault) {
  removeSpacesInKeysOfObject(nullptr);
  PlistValue text = "a b";
  std::string log;
  setNSLogSink([&](std::string_view line) { log += line; });
  try {
    removeSpacesInKeysOfObject(&text);
    ADD_FAILURE();
  } catch (const NSException& fault) {
    EXPECT_EQ(fault.reason(), "Non-mutable object passed to to removeSpacesInKeysOfObject:");
  }
  setNSLogSink({});
  EXPECT_NE(log.find("NSDictionaryExtensions"), std::string::npos) << "where to look";
}

TEST(NSDictionaryExtensions, IndexOfObjectWithUUID) {
  const PlistArray records{"X", PlistDictionary{{keys::Name, "X"}},
                           PlistDictionary{{keys::UUID, "X"}}, PlistDictionary{{keys::UUID, "X"}}};
  EXPECT_EQ(indexOfObjectWithUUID(records, "X"), 2);
  EXPECT_EQ(indexOfObjectWithUUID(records, "x"), NSNotFound);
  const std::vector<ZYMSummary> rows{{"A", "1", 0}, {"B", "2", 0}};
  EXPECT_EQ(indexOfObjectWithUUID(rows, "2"), 1);
  EXPECT_EQ(indexOfObjectWithUUID(rows, "B"), NSNotFound);
}

}  // namespace
}  // namespace zym
