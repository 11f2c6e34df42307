#include "tests/support/Test.h"
#include "zymcore/platform/events/NSNotificationCenter.h"

namespace zym {
namespace {

class NSNotificationCenterTest : public testing::Test {
 protected:
  NSNotificationCenter::Token observe(const char* name, const void* object, std::string mark) {
    return center.addObserverForName_object(
        name, object, [this, mark](const NSNotification&) { calls.push_back(mark); });
  }

  NSNotificationCenter center;
  std::vector<std::string> calls;
  using Calls = std::vector<std::string>;
};

TEST_F(NSNotificationCenterTest, DeliversByNameAndObjectInTheOrderOfRegistration) {
  const int one = 1;
  const int two = 2;
  const auto any = observe("news", nullptr, "any");
  const auto ofOne = observe("news", &one, "one");
  const auto other = observe("other", nullptr, "other");
  const auto again = observe("news", nullptr, "again");
  center.postNotificationName_object("news", &one);
  center.postNotificationName_object("news", &two);
  center.postNotificationName_object("nobody", &one);
  EXPECT_EQ(calls, (Calls{"any", "one", "again", "any", "again"}));
}

TEST_F(NSNotificationCenterTest, ObserversComeAndGoDuringDelivery) {
  NSNotificationCenter::Token added;
  NSNotificationCenter::Token second;
  NSNotificationCenter::Token first =
      center.addObserverForName_object("news", nullptr, [&](const NSNotification&) {
        calls.push_back("first");
        second.remove();
        first.remove();
        added = observe("news", nullptr, "added");
      });
  second = observe("news", nullptr, "second");
  const auto third = observe("news", nullptr, "third");
  center.postNotificationName_object("news", nullptr);
  EXPECT_EQ(calls, (Calls{"first", "third"}));
  center.postNotificationName_object("news", nullptr);
  EXPECT_EQ(calls, (Calls{"first", "third", "third", "added"}));
}

}  // namespace
}  // namespace zym
