#include <gtest/gtest.h>

#include "zymcore/platform/values/NSLog.h"

namespace zym {
namespace {

TEST(NSLog, WritesEachTextAsOneLine) {
  testing::internal::CaptureStderr();
  NSLog("100 %s of\nlines \x1B[0m ü");
  NSLog("");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "100 %s of\\nlines \\x1b[0m ü\n\n");
}

}  // namespace
}  // namespace zym
