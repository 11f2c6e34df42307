#include "tests/support/Test.h"
#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSDate.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

TEST(NSData, KeepsAndSharesWhatIsMovedIn) {
  std::string text(100, 'x');
  std::vector<std::uint8_t> bytes(100, 'x');
  const void* const places[] = {text.data(), bytes.data()};
  NSData data[] = {NSData(std::move(text)), NSData(std::move(bytes))};
  for (int i = 0; i < 2; ++i) {
    const NSData copy = data[i];
    const NSData moved = std::move(data[i]);
    EXPECT_EQ(copy.bytes().data(), places[i]);
    EXPECT_EQ(moved.view().data(), places[i]);
    EXPECT_EQ(data[i], NSData());  // NOLINT: what was moved from holds nothing
    data[i] = copy;
  }
  EXPECT_EQ(data[0], data[1]);
  EXPECT_NE(data[0], NSData("x"));
}

TEST(NSLog, WritesEachTextAsOneLine) {
  testing::internal::CaptureStderr();
  NSLog("100 %s of\nlines \x1B[0m ü");
  NSLog("");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "100 %s of\\nlines \\x1b[0m ü\n\n");
}

TEST(NSDate, DescribesItselfInUTC) {
  constexpr std::pair<double, const char*> cases[] = {
      {0, "1970-01-01 00:00:00 +0000"},
      {-0.5, "1969-12-31 23:59:59 +0000"},
      {951868799, "2000-02-29 23:59:59 +0000"},
      {-62167219200, "0000-01-01 00:00:00 +0000"},
      {-62167219201, "-63145526401.000000"},  // seconds since 2001
      {253402300799.5, "9999-12-31 23:59:59 +0000"},
      {253402300800, "252423993600.000000"},
      {NAN, "nan"}};
  for (const auto& [since1970, text] : cases) {
    EXPECT_EQ(NSDate::dateWithTimeIntervalSince1970(since1970).description(), text);
  }
}

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
  for (int i = 0; i < 2; ++i) {
    tearDownProcess();
    EXPECT_EQ(ended, "last meanwhile place first ");
  }
  EXPECT_NE(logged.find("no way"), std::string::npos);
  place.take();
  tearDownProcess();
  EXPECT_EQ(ended, "last meanwhile place first place ");
}

}  // namespace
}  // namespace zym
