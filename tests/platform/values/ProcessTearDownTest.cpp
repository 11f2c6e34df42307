#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "zymcore/platform/values/NSLog.h"
#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

std::string ended;
TearDownPlace place([] { ended += "place "; });

TEST(ProcessTearDown, EndsInReverseOrderOnceAndPassesOverWhatThrows) {
  tearDownProcess();
  std::string logged;
  ended.clear();
  setNSLogSink([&](std::string_view line) { logged += line; });
  atTearDown([] { ended += "first "; });
  place.take();
  atTearDown([] { throw std::runtime_error("no way"); });
  place.take();
  atTearDown([] { throw 1; });
  atTearDown([] {
    ended += "last ";
    atTearDown([] { ended += "meanwhile "; });
  });

  tearDownProcess();
  EXPECT_EQ(ended, "last meanwhile place first ");
  EXPECT_NE(logged.find("no way"), std::string::npos);

  tearDownProcess();
  EXPECT_EQ(ended, "last meanwhile place first ");
  place.take();
  tearDownProcess();
  EXPECT_EQ(ended, "last meanwhile place first place ");
}

}  // namespace
}  // namespace zym
