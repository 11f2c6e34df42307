#include <sys/resource.h>
#include <unistd.h>

#include "tests/support/Child.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Test.h"
#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/formats/XMLPropertyList.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NSLog.h"

namespace zym {
namespace {

constexpr KeyName Key{"Key"};
constexpr KeyName Other{"Other"};

class NSUserDefaultsTest : public testing::Test {
 protected:
  NSUserDefaultsTest() {
    setNSLogSink([this](std::string_view line) { log += line; });
  }
  ~NSUserDefaultsTest() override { setNSLogSink(nullptr); }

  [[nodiscard]] PlistDictionary onDisk() const {
    return *NSPropertyListSerialization::propertyListWithData(bytesOf(file)).value().dictionary();
  }

  TemporaryFolder folder;
  std::string file = folder / "sub/Preferences.plist";
  std::string log;
};

TEST_F(NSUserDefaultsTest, LooksThroughTheLayers) {
  NSUserDefaults defaults;
  EXPECT_EQ(defaults.objectForKey(Key), std::nullopt);
  defaults.registerDefaults({{Key, 1}, {Other, "initial"}});
  EXPECT_EQ(defaults.integerForKey(Key), 1);
  defaults.setObject_forKey(2, Key);
  EXPECT_EQ(defaults.integerForKey(Key), 2);
  defaults.setArguments({{Key, 3}});
  EXPECT_EQ(defaults.integerForKey(Key), 3);
  defaults.setArguments({});
  EXPECT_EQ(defaults.integerForKey(Key), 2);
  defaults.removeObjectForKey(Key);
  EXPECT_EQ(defaults.integerForKey(Key), 1);
  defaults.registerDefaults({{Key, 5}});
  EXPECT_EQ(defaults.integerForKey(Key), 5);
  EXPECT_EQ(defaults.stringForKey(Other), "initial");
  defaults.reset();
  EXPECT_EQ(defaults.objectForKey(Other), std::nullopt);
}

TEST_F(NSUserDefaultsTest, ReadsLeniently) {
  struct Case {
    PlistValue value;
    std::optional<std::string> text;
    std::int64_t integer;
    double number;
    bool flag;
  };
  const Case cases[] = {
      {"0.3", "0.3", 0, 0.3, false},
      {"YES", "YES", 0, 0, true},
      {"true", "true", 0, 0, true},
      {"-01", "-01", -1, -1, true},
      {0.1, "0.1", 0, 0.1, true},
      {true, "1", 1, 1, true},
      {PlistArray{1}, std::nullopt, 0, 0, false},
  };
  NSUserDefaults defaults;
  for (const Case& c : cases) {
    defaults.setObject_forKey(c.value, Key);
    EXPECT_EQ(defaults.objectForKey(Key), c.value);
    EXPECT_EQ(defaults.stringForKey(Key), c.text);
    EXPECT_EQ(defaults.integerForKey(Key), c.integer);
    EXPECT_EQ(defaults.doubleForKey(Key), c.number);
    EXPECT_EQ(defaults.floatForKey(Key), static_cast<float>(c.number));
    EXPECT_EQ(defaults.boolForKey(Key), c.flag) << c.text.value_or("");
  }
}

TEST_F(NSUserDefaultsTest, KeepsWhatIsSetAndNothingElse) {
  NSUserDefaults first;
  first.setPersistentFile(file);
  first.registerDefaults({{Other, 1}});
  first.setArguments({{KeyName("Argument"), 1}});
  first.setObject_forKey("kept", Key);
  EXPECT_EQ(onDisk(), (PlistDictionary{{Key, "kept"}}));

  NSUserDefaults second;
  second.setPersistentFile(file);
  EXPECT_EQ(second.stringForKey(Key), "kept");
  second.removeObjectForKey(Key);
  EXPECT_EQ(onDisk(), PlistDictionary());
  EXPECT_EQ(first.stringForKey(Key), "kept");
  EXPECT_TRUE(first.synchronize());
  EXPECT_EQ(first.stringForKey(Key), std::nullopt);
}

TEST_F(NSUserDefaultsTest, MovesADamagedFileAside) {
  for (const char* damage : {"", "<plist><dict>", "<plist><array/></plist>", "\xFF\xFE"}) {
    const TemporaryFolder own;
    const std::string damaged = own / "Preferences.plist";
    putFile(damaged, damage);
    putFile(damaged + ".damaged", "an older one");
    NSUserDefaults defaults;
    defaults.setPersistentFile(damaged);
    EXPECT_EQ(defaults.integerForKey(Key), 0);
    EXPECT_EQ(bytesOf(damaged + ".damaged-2"), damage);
    EXPECT_EQ(bytesOf(damaged + ".damaged"), "an older one");
    defaults.setObject_forKey(1, Key);
    NSUserDefaults again;
    again.setPersistentFile(damaged);
    EXPECT_EQ(again.integerForKey(Key), 1);
  }
  EXPECT_THAT(log, HasSubstr("Preferences.plist are moved aside"));
}

TEST_F(NSUserDefaultsTest, TwoProcessesKeepEachOthersKeys) {
  constexpr int count = 60;
  const auto setKeys = [&](const std::string& prefix) {
    NSUserDefaults defaults;
    defaults.setPersistentFile(file);
    for (int i = 0; i < count; ++i) {
      defaults.setObject_forKey(i, KeyName(prefix + std::to_string(i)));
    }
  };
  NSUserDefaults reader;
  reader.setPersistentFile(file);
  EXPECT_EQ(reader.integerForKey(Key), 0);
  Child other([&](int) { setKeys("other"); });
  setKeys("own");
  EXPECT_EQ(other.join(), 0);
  EXPECT_EQ(onDisk().size(), 2U * count);
  // What is read at a change is known from then on.
  EXPECT_EQ(reader.integerForKey(KeyName("other1")), 0);
  reader.setObject_forKey(1, Key);
  EXPECT_EQ(reader.integerForKey(KeyName("other1")), 1);
}

TEST_F(NSUserDefaultsTest, LeavesAFileAloneThatItCannotRead) {
  const std::string before = XMLPropertyList::write(PlistDictionary{{Key, "kept"}}).value();
  putFile(file, before);
  NSUserDefaults defaults;
  defaults.setPersistentFile(file);
  rlimit files{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &files), 0);
  const rlimit none{0, files.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  defaults.setObject_forKey(2, Other);
  const bool isSynchronized = defaults.synchronize();
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &files), 0);

  EXPECT_FALSE(isSynchronized);
  EXPECT_THAT(log, HasSubstr("can't be read"));
  EXPECT_EQ(defaults.integerForKey(Other), 2);
  EXPECT_EQ(bytesOf(file), before);
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_EQ(onDisk(), (PlistDictionary{{Key, "kept"}, {Other, 2}}));
}

TEST_F(NSUserDefaultsTest, LosesNothingWhileTheDiskRefuses) {
  putFile(folder / "sub", "a file where the folder belongs");
  NSUserDefaults defaults;
  defaults.setPersistentFile(file);
  defaults.setObject_forKey(1, Key);
  EXPECT_EQ(defaults.integerForKey(Key), 1);
  EXPECT_FALSE(defaults.synchronize());
  EXPECT_EQ(defaults.integerForKey(Key), 1);
  EXPECT_THAT(log, HasSubstr("can't be written"));

  ASSERT_TRUE(NSFileManager::removeItemAtPath(folder / "sub"));
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_EQ(onDisk(), (PlistDictionary{{Key, 1}}));
}

TEST_F(NSUserDefaultsTest, ManyThreadsReadWhileOneWrites) {
  NSUserDefaults defaults;
  defaults.registerDefaults({{Key, 0}});
  std::atomic<bool> isDone{false};
  std::vector<std::jthread> readers;
  for (int i = 0; i < 3; ++i) {
    readers.emplace_back([&] {
      std::int64_t last = 0;
      while (!isDone) {
        const std::int64_t now = defaults.integerForKey(Key);
        EXPECT_GE(now, last);
        last = now;
        (void)defaults.stringForKey(Other);
      }
    });
  }
  for (int i = 1; i <= 2000; ++i) {
    defaults.setObject_forKey(i, Key);
    defaults.setObject_forKey(std::to_string(i), Other);
    if (i % 100 == 0) defaults.setArguments({{Other, i}});
  }
  isDone = true;
  readers.clear();
  EXPECT_EQ(defaults.integerForKey(Key), 2000);
}

}  // namespace
}  // namespace zym
