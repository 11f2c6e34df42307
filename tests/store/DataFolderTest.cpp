#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "tests/support/Child.h"
#include "tests/support/Store.h"

namespace zym {
namespace {

namespace fs = std::filesystem;

/// Environment with folders of its own for a user.
class WithHome : public testing::WithDefaults {
 protected:
  WithHome() {
    setenv("HOME", home.path().c_str(), 1);
    setenv("XDG_DATA_HOME", (home / "data").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);
    NSBundle::setMainBundle(NSBundle(ZYM_RESOURCES, "org.example", "1"));
  }
  ~WithHome() override {
    ZYMCoreDataModel::tearDown();
    NSBundle::setMainBundle(NSBundle());
    if (before.empty())
      unsetenv("HOME");
    else
      setenv("HOME", before.c_str(), 1);
    unsetenv("XDG_DATA_HOME");
    unsetenv("XDG_CONFIG_HOME");
  }
  static ZYMCoreDataModel& model() { return ZYMCoreDataModel::sharedInstance(); }

  const std::string before = getenv("HOME") ? getenv("HOME") : "";
  const TemporaryFolder home;
};

TEST_F(WithHome, FoldersByLayout) {
  const std::string documents = home / "Documents";
  EXPECT_EQ(model().newV2Path(), documents);
  EXPECT_EQ(model().oldV2Path(), documents);
  EXPECT_EQ(model().imagesFolderPath(), documents + "/Images");
  EXPECT_TRUE(fs::is_directory(documents + "/Images"));
  model().setDataStorage(1);
  EXPECT_EQ(model().oldV2Path(), documents + "/Wortmeister-Data");
  EXPECT_EQ(model().newV2Path(), home / "data/Wortmeister2");
  EXPECT_EQ(model().historyFolderPath(), home / "data/Wortmeister2");
  model().setDataStorage(2);
  EXPECT_EQ(model().newV2Path(), home / "Containers/org.example/Data/Documents");
  EXPECT_FALSE(fs::exists(home / "Containers"));
  model().setDataStorage(3);
  EXPECT_EQ(model().oldV2Path(), documents + "/Wortmeister-Data");
  EXPECT_THROW((void)model().newV2Path(), NSException);
}

/// An old data folder as a running program leaves it: the last save stands in the log beside the
/// store. It has pictures, and a pipe, which can't be copied.
class OldFolder : public WithHome {
 protected:
  OldFolder() {
    model().setDataFolder(home / "made");
    PlistDictionary record{{keys::Variety, "Fuggle"}};
    ZYMHopEntity::insertInContext(*model().mainObjectContext())
        .updateWithDictionaryRepresentation(record);
    model().save();
    fs::create_directories(home / "Documents");
    fs::copy(home / "made", old, fs::copy_options::recursive);
    ZYMCoreDataModel::tearDown();
    for (int i = 0; i < pictures; ++i) {
      putFile(old + "/Images/deep/" + std::to_string(i), std::string(20'000, 'p'));
    }
    putFile(old + "/History.plist", "history");
    ::mkfifo((old + "/pipe").c_str(), 0600);
  }
  void expectWhole() const {
    EXPECT_EQ(fs::file_size(present + "/History.plist"), 7U);
    for (int i = 0; i < pictures; ++i) {
      EXPECT_EQ(bytesOf(present + "/Images/deep/" + std::to_string(i)).size(), 20'000U);
    }
    model().setDataStorage(1);
    ASSERT_EQ(ZYMHopEntity::findAllObjects()->size(), 1U);
    EXPECT_FALSE(model().firstRun());
    EXPECT_FALSE(fs::exists(present + "/.Wortmeister.incoming"));
    ZYMCoreDataModel::tearDown();
  }
  static void open() {
    model().setDataStorage(1);
    (void)model().mainObjectContext();
  }
  static constexpr int pictures = 100;
  const std::string old = home / "Documents/Wortmeister-Data";
  const std::string present = home / "data/Wortmeister2";
};

TEST_F(OldFolder, IsCopiedWholeOnceAndLeftAlone) {
  ASSERT_GT(fs::file_size(old + "/Wortmeister.sqlite-wal"), 0U);
  const std::string before = bytesOf(old + "/Wortmeister.sqlite-wal");
  putFile(present + "/Preferences.plist", "present");
  putFile(old + "/Preferences.plist", "old");
  open();
  expectWhole();
  EXPECT_EQ(bytesOf(present + "/Preferences.plist"), "present");
  EXPECT_EQ(bytesOf(old + "/Wortmeister.sqlite-wal"), before);
  putFile(old + "/History.plist", "changed");
  open();
  EXPECT_EQ(bytesOf(present + "/History.plist"), "history");
}

TEST_F(OldFolder, IsCopiedAgainWhereTheProcessEnded) {
  for (int round = 0; round < 12; ++round) {
    Child child([](int pipe) {
      Child::tell(pipe, 1);
      open();
      Child::tell(pipe, 2);
      ::pause();
    });
    ASSERT_TRUE(child.hear(60'000));
    (void)child.hear(2 * round);  // so long, or until it is done
    child.kill();
    open();
    expectWhole();
    fs::remove_all(present);
  }
}

TEST_F(OldFolder, IsTriedAgainAfterAFullDisk) {
  Child child([&](int) {
    ::dup2(::open((home / "log").c_str(), O_CREAT | O_WRONLY, 0600), STDERR_FILENO);
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit tight{30'000, 30'000};  // room for a picture and not for the store
    ::setrlimit(RLIMIT_FSIZE, &tight);
    open();
  });
  const int status = child.join();
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT);
  EXPECT_THAT(bytesOf(home / "log"), HasSubstr(".Wortmeister.incoming/Wortmeister.sqlite: "));
  EXPECT_FALSE(fs::exists(present + "/Wortmeister.sqlite"));
  open();
  expectWhole();
}

// SQLite would take such a log for part of the store that is copied.
TEST_F(OldFolder, ALogWithoutItsStoreIsNotKept) {
  putFile(present + "/Wortmeister.sqlite-wal", bytesOf(old + "/Wortmeister.sqlite-wal"));
  fs::remove(old + "/Wortmeister.sqlite-wal");
  open();
  EXPECT_EQ(ZYMHopEntity::findAllObjects()->size(), 0U);
}

TEST_F(WithHome, ExternalDataStandsAsideOnlyWhileAStoreIsMigrated) {
  const std::string external = home / "Documents/.Wortmeister_SUPPORT/_EXTERNAL_DATA";
  putFile(external + "/blob", "blob");
  (void)model().mainObjectContext();  // a new store counts as one to migrate
  EXPECT_TRUE(fs::exists(external + "/blob"));
  EXPECT_FALSE(fs::exists(home / "Documents/tmpPathToReplacementData"));
}

using DeathTest = WithHome;

TEST_F(DeathTest, AStoreThatCantBeOpenedEndsTheProcessAndStaysAsItWas) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const std::string path = home / "Documents/Wortmeister.sqlite";
  for (const std::string& content :
       {std::string("not a database"), std::string(), std::string(4096, 'x')}) {
    putFile(path, content);
    EXPECT_DEATH((void)model().mainObjectContext(), "");
    EXPECT_EQ(bytesOf(path), content);
  }
}

TEST_F(DeathTest, NoObjectModelEndsTheProcess) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  NSBundle::setMainBundle(NSBundle(home.path(), "org.example", "1"));
  EXPECT_DEATH((void)model().mainObjectContext(), "WortmeisterCoreDataModel.momd");
}

}  // namespace
}  // namespace zym
