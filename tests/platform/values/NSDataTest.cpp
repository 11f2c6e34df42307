#include <gtest/gtest.h>

#include "zymcore/platform/values/NSData.h"

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

}  // namespace
}  // namespace zym
