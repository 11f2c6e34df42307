#include <sys/resource.h>

#include "tests/platform/objects/NumberedSaves.h"
#include "tests/support/Test.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

class ObjectStoreDamageTest : public NumberedSavesTest {
 protected:
  /// That the store can't be opened, with that code, and that no byte of it changed.
  void expectRefused(std::int64_t code) const {
    const std::string before = bytesOf(path());
    EXPECT_EQ(refusalOf(path(), migrating()), code);
    EXPECT_EQ(bytesOf(path()), before);
  }
};

TEST_F(ObjectStoreDamageTest, RefusesWhatIsNoWholeStore) {
  make(5);
  const std::string whole = bytesOf(path());
  const std::string cases[] = {"",
                               "x",
                               std::string(100, '\0'),
                               "SQLite format 3",
                               whole.substr(0, 100),
                               whole.substr(0, 5000),
                               whole.substr(0, whole.size() / 2),
                               whole.substr(0, whole.size() - 4096),
                               std::string(whole.size(), 'x')};
  for (const std::string& bytes : cases) {
    SCOPED_TRACE(bytes.size());
    putFile(path(), bytes);
    expectRefused(NSFileReadCorruptFileError);
    NSError error;
    EXPECT_FALSE(NSPersistentStoreCoordinator::metadataForPersistentStoreOfType_URL(
        NSSQLiteStoreType, path(), &error));
    EXPECT_EQ(error.code, NSFileReadCorruptFileError);
  }
  putFile(path(), whole);
  EXPECT_EQ(expectWhole(path()), 5);
}

TEST_F(ObjectStoreDamageTest, AStoreWithDamageInsideAnswersErrorsAndKeepsWhatIsWhole) {
  make(40);
  std::string bytes = bytesOf(path());
  EXPECT_TRUE(openLibrary(path())->integrityProblems().empty());
  std::size_t problems = 0;
  std::mt19937 random(1);
  for (int i = 0; i < 60; ++i) {
    std::string damaged = bytes;
    for (int j = 0; j < 20; ++j) {
      damaged[4096 + random() % (damaged.size() - 4096)] = static_cast<char>(random());
    }
    putFile(path(), damaged);
    const auto coordinator = openStore(path(), modelFrom(libraryDescription()));
    if (!coordinator) continue;
    problems += coordinator->integrityProblems().size();
    const auto context = contextOn(coordinator);
    NSError error;
    const auto books = context->executeFetchRequest(request("Book"), &error);
    if (!books) {
      EXPECT_EQ(error.domain, NSCocoaErrorDomain);
      continue;
    }
    for (NSManagedObject* const book : *books) (void)book->documentForKey(key::text, &error);
  }
  EXPECT_GT(problems, 0U);
}

TEST_F(ObjectStoreDamageTest, RefusesTablesThatAreNotTheModels) {
  const char* const changes[] = {
      "CREATE TRIGGER t AFTER INSERT ON Book BEGIN DELETE FROM Author; END",
      "CREATE VIEW v AS SELECT * FROM Book",
      "ALTER TABLE Book ADD COLUMN more",
      "DROP TABLE Tag",
      "DELETE FROM _metadata",
      "UPDATE _metadata SET value = x'00' WHERE key = 'model'"};
  make(1);
  const std::string whole = bytesOf(path());
  for (const char* const change : changes) {
    putFile(path(), whole);
    {
      SQLiteDatabase database(path(), SQLiteDatabase::Access::ReadWrite, 0);
      database.execute(change);
      database.execute("PRAGMA journal_mode = DELETE");
    }
    expectRefused(NSFileReadCorruptFileError);
  }
  std::filesystem::remove(path());
  EXPECT_EQ(refusalOf(folder / "none/library.sqlite"), NSFileReadNoSuchFileError);
  SQLiteDatabase(path(), SQLiteDatabase::Access::Create, 0).execute("CREATE TABLE notes(text)");
  expectRefused(NSPersistentStoreInvalidTypeError);
}

TEST_F(ObjectStoreDamageTest, WaitsForALockAndThenGivesUp) {
  make(1);
  const auto holding = [&](const std::string& sql) {
    auto holder = std::make_unique<Child>([&, sql](int pipe) {
      SQLiteDatabase database(path(), SQLiteDatabase::Access::ReadWrite, 0);
      database.execute(sql);
      Child::tell(pipe, 1);
      for (;;) ::pause();
    });
    EXPECT_EQ(holder->hear(10000), 1);
    return holder;
  };
  const PlistDictionary brief = {{NSPersistentStoreTimeoutOption, 0.05}};
  {
    const auto holder = holding("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE");
    EXPECT_EQ(refusalOf(path(), brief), NSPersistentStoreTimeoutError);
  }
  const auto context = contextOn(openStore(path(), modelFrom(libraryDescription()), brief));
  context->setUndoManager(nullptr);
  NSManagedObject* const author = context->executeFetchRequest(request("Author"))->front();
  writeSave(*context, *author, 2);
  {
    const auto holder = holding("BEGIN IMMEDIATE");
    NSError error;
    EXPECT_FALSE(context->save(&error));
    EXPECT_EQ(error.code, NSPersistentStoreTimeoutError) << error.localizedDescription;
    EXPECT_TRUE(context->hasChanges());
    EXPECT_EQ(author->objectsForKey(key::books).size(), 2U * booksPerSave);
  }
  EXPECT_TRUE(context->save());
  EXPECT_EQ(expectWhole(path()), 2);
}

TEST_F(ObjectStoreDamageTest, AFullDiskFailsTheSaveAndKeepsTheChanges) {
  make(2);
  // A file may not grow past the limit, which stands for the end of the disk.
  Child child([&](int) {
    ::signal(SIGXFSZ, SIG_IGN);
    Library library(path());
    const rlimit limit{std::filesystem::file_size(path()) + 100000, RLIM_INFINITY};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    const std::int64_t begun = library.number();
    std::int64_t number = begun;
    NSError error;
    do {
      writeSave(*library.context, *library.author, ++number);
    } while (library.context->save(&error) && number < 10000);
    if (error.code != NSFileWriteOutOfSpaceError && error.code != NSFileWriteUnknownError)
      ::_exit(7);
    if (!library.context->hasChanges() || library.context->save()) ::_exit(8);
    const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
    ::setrlimit(RLIMIT_FSIZE, &none);
    if (!library.context->save()) ::_exit(9);
    if (library.number() != number) ::_exit(10);
  });
  const int status = child.join();
  EXPECT_EQ(status, 0) << WEXITSTATUS(status);
  EXPECT_GT(expectWhole(path()), 2);
}

TEST_F(ObjectStoreDamageTest, AFullDiskFailsTheMakingOfAStoreAndLeavesNothing) {
  Child child([&](int) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{8192, RLIM_INFINITY};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    const std::int64_t code = refusalOf(path());
    ::_exit(code != NSFileWriteOutOfSpaceError && code != NSFileWriteUnknownError);
  });
  EXPECT_EQ(child.join(), 0);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(ObjectStoreDamageTest, AReadOnlyFolderOrFileIsRefused) {
  make(1);
  // As root no folder is read-only, so the child is nobody.
  const auto refusedInChild = [&] {
    Child child([&](int) {
      if (::geteuid() == 0 && ::setuid(65534) != 0) ::_exit(6);
      ::_exit(refusalOf(path()) <= 0);
    });
    return child.join();
  };
  const auto permissions = [&](const std::string& item, unsigned mode) {
    std::filesystem::permissions(item, static_cast<std::filesystem::perms>(mode));
  };
  permissions(path(), 0444);
  permissions(folder.path(), 0777);
  EXPECT_EQ(refusedInChild(), 0);
  permissions(path(), 0666);
  permissions(folder.path(), 0555);
  EXPECT_EQ(refusedInChild(), 0);
  permissions(folder.path(), 0755);
  EXPECT_EQ(expectWhole(path()), 1);
}

}  // namespace
}  // namespace zym
