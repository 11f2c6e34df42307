#include "tests/platform/formats/AnyPlistValue.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Test.h"
#include "zymcore/platform/formats/NSPropertyListSerialization.h"

namespace zym {
namespace {

RC_GTEST_PROP(NSPropertyListSerialization, RecognisesTheForm, (const PlistValue& tree)) {
  using enum NSPropertyListFormat;
  const auto xml = NSPropertyListSerialization::dataWithPropertyList_format(tree, XMLFormat_v1_0);
  const auto binary =
      NSPropertyListSerialization::dataWithPropertyList_format(tree, BinaryFormat_v1_0);
  RC_ASSERT(xml.value().starts_with("<?xml"));
  RC_ASSERT(binary.value().starts_with("bplist00"));
  RC_ASSERT(isIdentical(NSPropertyListSerialization::propertyListWithData(*xml).value(), tree));
  RC_ASSERT(isIdentical(NSPropertyListSerialization::propertyListWithData(*binary).value(), tree));
}

// Each form is turned into the other by another program, so that nothing of our bytes survives.
TEST(NSPropertyListSerialization, IsReadAndWrittenByOthersTheSame) {
  if (std::system("plistutil --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "no plistutil";
  const PlistDictionary tree{
      {KeyName("text & <tags>"), "Märzen \u2212 \U0001F37A ]]>"},
      {KeyName("integers"), PlistArray{0, -1, 65536, std::numeric_limits<std::int64_t>::max()}},
      {KeyName("reals"), PlistArray{0.5, -2.25, 1e10}},
      {KeyName("flags"), PlistArray{true, false}},
      {KeyName("date"), NSDate::dateWithTimeIntervalSinceReferenceDate(123456789)},
      {KeyName("data"), NSData(std::vector<std::uint8_t>(200, 0xA5))},
      {KeyName("nested"), PlistDictionary{{KeyName("empty"), PlistArray()}}}};
  using enum NSPropertyListFormat;
  for (const auto& [form, other] :
       {std::pair(XMLFormat_v1_0, "bin"), std::pair(BinaryFormat_v1_0, "xml")}) {
    const TemporaryFolder folder;
    const auto ours = NSPropertyListSerialization::dataWithPropertyList_format(tree, form);
    const std::string theirs = folder / "theirs";
    ASSERT_EQ(std::system(("plistutil -i " + folder.file("ours", ours.value()) + " -f " + other +
                           " -o " + theirs)
                              .c_str()),
              0);
    const auto read = NSPropertyListSerialization::propertyListWithData(bytesOf(theirs));
    ASSERT_TRUE(read);
    EXPECT_TRUE(isIdentical(*read, tree)) << other;
  }
}

}  // namespace
}  // namespace zym
