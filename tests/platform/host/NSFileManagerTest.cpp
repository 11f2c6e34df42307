#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/Test.h"
#include "zymcore/platform/host/NSFileManager.h"

namespace zym {
namespace {

TEST(NSFileManager, ReadsRegularFilesUpToABound) {
  const TemporaryFolder folder;
  const std::string file = folder / "file";
  putFile(file, std::string(100'000, 'x'));
  EXPECT_EQ(NSFileManager::contentsAtPath(file, 100'000)->size(), 100'000U);
  NSError error;
  EXPECT_FALSE(NSFileManager::contentsAtPath(file, 99'999, &error));
  EXPECT_EQ(error.code, NSFileReadTooLargeError);
  // Tells no size beforehand.
  EXPECT_THAT(NSFileManager::contentsAtPath("/proc/self/status", 1 << 20).value(),
              HasSubstr("Threads"));
}

TEST(NSFileManager, RefusesWhatIsNoFile) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  struct Case {
    std::string path;
    std::int64_t code;
    const char* reason;
  };
  const Case cases[] = {
      {folder / "absent", NSFileNoSuchFileError, "No such file"},
      {folder.path(), NSFileReadUnknownError, "directory"},
      {folder / "pipe", NSFileReadUnknownError, "Not a regular file"},
      {"/dev/zero", NSFileReadUnknownError, "Not a regular file"},
  };
  for (const Case& c : cases) {
    NSError error;
    EXPECT_FALSE(NSFileManager::contentsAtPath(c.path, 1000, &error));
    EXPECT_EQ(error.code, c.code) << c.path;
    EXPECT_THAT(error.localizedDescription, HasSubstr(c.path));
    EXPECT_THAT(error.localizedDescription, HasSubstr(c.reason));
  }
}

TEST(NSFileManager, ReplacesAFileAsAWhole) {
  const TemporaryFolder folder;
  const std::string file = folder / "file";
  ASSERT_TRUE(NSFileManager::writeData_toPath("first", file));
  ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
  std::filesystem::create_symlink(file, folder / "link");

  ASSERT_TRUE(NSFileManager::writeData_toPath("second", folder / "link"));
  EXPECT_EQ(bytesOf(file), "second");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
  struct stat status {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
  EXPECT_THAT(NSFileManager::contentsOfDirectoryAtPath(folder.path()).value(),
              ElementsAre("file", "link"));
}

TEST(NSFileManager, LeavesNothingBehindWhenItCannotWrite) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "taken");
  NSError error;
  EXPECT_FALSE(NSFileManager::writeData_toPath("x", folder / "taken", &error));
  EXPECT_THAT(error.localizedDescription, HasSubstr("taken"));
  EXPECT_FALSE(NSFileManager::writeData_toPath("x", folder / "absent/file", &error));
  EXPECT_EQ(error.code, NSFileNoSuchFileError);
  EXPECT_THAT(NSFileManager::contentsOfDirectoryAtPath(folder.path()).value(),
              ElementsAre("taken"));
}

TEST(NSFileManager, AReaderNeverSeesHalfAFile) {
  const TemporaryFolder folder;
  const std::string file = folder / "file";
  const std::string versions[] = {std::string(200'000, 'a'), std::string(100, 'b')};
  ASSERT_TRUE(NSFileManager::writeData_toPath(versions[0], file));
  std::jthread writer([&] {
    for (int i = 0; i < 40; ++i) (void)NSFileManager::writeData_toPath(versions[i % 2], file);
  });
  for (int i = 0; i < 200; ++i) {
    const std::string seen = NSFileManager::contentsAtPath(file, 1 << 20).value();
    ASSERT_TRUE(seen == versions[0] || seen == versions[1]);
  }
}

TEST(NSFileManager, CopiesMovesAndRemovesFolders) {
  const TemporaryFolder folder;
  putFile(folder / "a/b/file", "text");
  std::filesystem::create_symlink("nowhere", folder / "a/link");

  NSError error;
  ASSERT_TRUE(NSFileManager::copyItemAtPath_toPath(folder / "a", folder / "c", &error));
  EXPECT_EQ(bytesOf(folder / "c/b/file"), "text");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "c/link"));
  EXPECT_FALSE(NSFileManager::copyItemAtPath_toPath(folder / "a", folder / "c", &error));
  EXPECT_EQ(error.code, NSFileWriteFileExistsError);
  EXPECT_FALSE(NSFileManager::moveItemAtPath_toPath(folder / "a", folder / "c", &error));
  EXPECT_EQ(error.code, NSFileWriteFileExistsError);
  EXPECT_FALSE(NSFileManager::copyItemAtPath_toPath(folder / "a", folder / "a/b/c", &error));
  EXPECT_FALSE(NSFileManager::copyItemAtPath_toPath(folder / "none", folder / "d", &error));
  EXPECT_EQ(error.code, NSFileNoSuchFileError);

  ASSERT_TRUE(NSFileManager::moveItemAtPath_toPath(folder / "a", folder / "d", &error));
  ASSERT_TRUE(NSFileManager::removeItemAtPath(folder / "c", &error));
  EXPECT_FALSE(NSFileManager::removeItemAtPath(folder / "c", &error));
  EXPECT_THAT(NSFileManager::contentsOfDirectoryAtPath(folder.path()).value(), ElementsAre("d"));
  EXPECT_FALSE(NSFileManager::contentsOfDirectoryAtPath(folder / "d/b/file", &error));
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(NSFileManager::createDirectoryAtPath(folder / "x/y"));
  EXPECT_FALSE(NSFileManager::createDirectoryAtPath(folder / "d/b/file"));
}

}  // namespace
}  // namespace zym
