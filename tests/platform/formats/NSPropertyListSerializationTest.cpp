#include <gtest/gtest.h>

#include "tests/platform/formats/AnyPlistValue.h"
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

}  // namespace
}  // namespace zym
