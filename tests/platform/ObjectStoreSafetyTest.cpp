#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <random>
#include <thread>

#include "LibraryStore.h"
#include "zymcore/platform/NSCocoaErrors.h"
#include "zymcore/platform/NSRunLoop.h"
#include "zymcore/platform/SQLiteDatabase.h"

namespace zym {
namespace {

constexpr int booksPerSave = 3;

/// What a save with that number writes: it touches several tables, so half of it would show.
NSData documentOf(std::int64_t number) {
  return NSData(std::string(static_cast<std::size_t>(1000 + number % 7000), 'a') +
                std::to_string(number));
}

void writeSave(NSManagedObjectContext& context, NSManagedObject& author, std::int64_t number) {
  author.setValue_forKey(PlistValue(number), key::rank);
  author.setDocument_forKey(documentOf(number), key::text);
  for (int i = 0; i < booksPerSave; ++i) {
    NSManagedObject* const book = context.insertNewObjectForEntityForName("Book");
    book->setValue_forKey(PlistValue(number), key::rank);
    book->setDocument_forKey(documentOf(number), key::text);
    book->setObject_forKey(&author, key::author);
  }
}

/// A context without undo and the one author, who is made if he isn't there.
struct Library {
  std::unique_ptr<NSManagedObjectContext> context;
  NSManagedObject* author = nullptr;

  explicit Library(const std::string& path) : context(contextOn(openLibrary(path))) {
    context->setUndoManager(nullptr);
    const auto authors = context->executeFetchRequest(request("Author"));
    author = authors && !authors->empty() ? authors->front()
                                          : context->insertNewObjectForEntityForName("Author");
  }
  [[nodiscard]] std::int64_t number() const {
    const PlistValue* const rank = author->valueForKey(key::rank);
    return rank ? rank->integerValue() : 0;
  }
};

[[nodiscard]] std::string integrityOf(const std::string& path) {
  SQLiteDatabase database(path, SQLiteDatabase::Access::ReadWrite, 5);
  SQLiteStatement check = database.statement("PRAGMA integrity_check");
  return check.step() ? std::string(check.text(0)) : "no answer";
}

/// Every save up to the last is there as a whole, and nothing else. Answers the number of the last.
std::int64_t expectWhole(const std::string& path) {
  EXPECT_EQ(integrityOf(path), "ok");
  const Library library(path);
  const std::int64_t last = library.number();
  const auto books = library.context->executeFetchRequest(request("Book"));
  EXPECT_TRUE(books);
  if (!books) return last;
  EXPECT_EQ(static_cast<std::int64_t>(books->size()), booksPerSave * last);
  EXPECT_EQ(library.author->objectsForKey(key::books).size(), books->size());
  if (last > 0) {
    EXPECT_EQ(library.author->documentForKey(key::text), documentOf(last));
  }
  for (std::size_t i = 0; i < books->size(); ++i) {
    const std::int64_t number = (*books)[i]->valueForKey(key::rank)->integerValue();
    EXPECT_EQ(number, static_cast<std::int64_t>(i) / booksPerSave + 1);
    if (number > last - 3) {
      EXPECT_EQ((*books)[i]->documentForKey(key::text), documentOf(number));
    }
  }
  return last;
}

/// A process of its own that runs the work and writes numbers into a pipe.
class Child {
 public:
  explicit Child(const std::function<void(int pipe)>& work) {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    process_ = ::fork();
    if (process_ == 0) {
      ::close(ends[0]);
      try {
        work(ends[1]);
      } catch (...) {
        ::_exit(3);
      }
      ::_exit(0);
    }
    ::close(ends[1]);
    pipe_ = ends[0];
  }
  ~Child() {
    if (process_ > 0) (void)kill();
    ::close(pipe_);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  static void tell(int pipe, std::int64_t number) {
    if (::write(pipe, &number, sizeof number) != sizeof number) ::_exit(4);
  }
  /// The next number, if one comes within that time and before the end.
  [[nodiscard]] std::optional<std::int64_t> hear(int milliseconds) const {
    pollfd waiting{pipe_, POLLIN, 0};
    std::int64_t number = 0;
    if (::poll(&waiting, 1, milliseconds) <= 0) return std::nullopt;
    if (::read(pipe_, &number, sizeof number) != sizeof number) return std::nullopt;
    return number;
  }
  int kill() {
    ::kill(process_, SIGKILL);
    return join();
  }
  int join() {
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = 0;
    return status;
  }

 private:
  pid_t process_ = 0;
  int pipe_ = -1;
};

int milliseconds(std::chrono::steady_clock::duration time) {
  return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

class ObjectStoreSafetyTest : public testing::Test {
 protected:
  [[nodiscard]] std::string path() const { return folder / "library.sqlite"; }
  void make(std::int64_t saves) const {
    Library library(path());
    for (std::int64_t i = 1; i <= saves; ++i) {
      writeSave(*library.context, *library.author, i);
      ASSERT_TRUE(library.context->save());
    }
  }
  /// That the store can't be opened, with that code, and that no byte of it changed.
  void expectRefused(std::int64_t code, const PlistDictionary& options = {}) const {
    const std::string before = bytesOf(path());
    NSError error;
    EXPECT_FALSE(openStore(path(), modelFrom(libraryDescription()), options, &error));
    EXPECT_EQ(error.domain, NSCocoaErrorDomain);
    EXPECT_EQ(error.code, code) << error.localizedDescription;
    EXPECT_FALSE(error.localizedDescription.empty());
    EXPECT_EQ(bytesOf(path()), before);
  }
  TemporaryFolder folder;
};

TEST_F(ObjectStoreSafetyTest, AKilledProcessLosesNoSaveThatReturnedAndLeavesNoHalfOfOne) {
  const char* const wanted = std::getenv("ZYM_KILLS");
  const int kills = wanted ? std::atoi(wanted) : 20;
  std::mt19937 random(4711);
  std::int64_t last = 0;
  for (int i = 0; i < kills && !HasFailure(); ++i) {
    Child child([&](int pipe) {
      Library library(path());
      for (std::int64_t number = library.number() + 1;; ++number) {
        writeSave(*library.context, *library.author, number);
        if (!library.context->save()) ::_exit(5);
        Child::tell(pipe, number);
      }
    });
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 120000);
    std::int64_t returned = last;
    for (auto now = std::chrono::steady_clock::now(); now < end;
         now = std::chrono::steady_clock::now()) {
      if (const auto number = child.hear(milliseconds(end - now))) returned = *number;
    }
    ASSERT_TRUE(WIFSIGNALED(child.kill()));
    while (const auto number = child.hear(0)) returned = *number;
    last = expectWhole(path());
    EXPECT_GE(last, returned);
    EXPECT_LE(last, returned + 1);
  }
  EXPECT_GT(last, 0);
}

TEST_F(ObjectStoreSafetyTest, TwoProcessesShareAStore) {
  constexpr int rounds = 60;
  make(0);
  // Each adds to one number; who finds that the other was there first begins again.
  const auto count = [&] {
    Library library(path());
    for (int done = 0; done < rounds;) {
      const auto authors = library.context->executeFetchRequest(request("Author"));
      if (!authors || authors->size() != 1) return false;
      writeSave(*library.context, *authors->front(),
                1 + (authors->front()->valueForKey(key::rank)
                         ? authors->front()->valueForKey(key::rank)->integerValue()
                         : 0));
      NSError error;
      if (library.context->save(&error)) {
        ++done;
      } else if (error.code == NSManagedObjectMergeError) {
        library.context->rollback();
      } else {
        return false;
      }
    }
    return true;
  };
  {
    Library library(path());
    ASSERT_TRUE(library.context->save());
  }
  Child child([&](int) { ::_exit(count() ? 0 : 6); });
  EXPECT_TRUE(count());
  EXPECT_EQ(child.join(), 0);
  EXPECT_EQ(expectWhole(path()), 2 * rounds);
}

TEST_F(ObjectStoreSafetyTest, APrivateContextReadsWholeSavesWhileTheMainOneWrites) {
  make(1);
  Library library(path());
  std::atomic<bool> finished = false;
  std::atomic<int> reads = 0;
  std::thread reader([&] {
    while (!finished) {
      NSManagedObjectContext context(NSPrivateQueueConcurrencyType);
      context.setPersistentStoreCoordinator(library.context->persistentStoreCoordinator());
      for (int i = 0; i < 5; ++i) {
        context.performBlockAndWait([&] {
          const auto authors = context.executeFetchRequest(request("Author"));
          ASSERT_TRUE(authors && authors->size() == 1);
          const NSManagedObject& author = *authors->front();
          const std::int64_t number = author.valueForKey(key::rank)->integerValue();
          EXPECT_EQ(author.documentForKey(key::text), documentOf(number));
          EXPECT_EQ(context.countForFetchRequest(request("Book")), booksPerSave * number);
        });
        ++reads;
      }
      // As others ask the main thread for what belongs to it.
      library.context->performBlockAndWait([&] { EXPECT_TRUE(NSRunLoop::isMainThread()); });
    }
  });
  for (std::int64_t number = 2; number < 60 || reads < 20; ++number) {
    writeSave(*library.context, *library.author, number);
    EXPECT_TRUE(library.context->save());
    NSRunLoop::mainRunLoop().runUntilDate(NSDate::date());
  }
  finished = true;
  bool joined = false;
  std::thread joining([&] {
    reader.join();
    NSRunLoop::mainRunLoop().performBlock([&] { joined = true; });
  });
  EXPECT_TRUE(NSRunLoop::mainRunLoop().runUntil([&] { return joined; }, 60));
  joining.join();
}

TEST_F(ObjectStoreSafetyTest, RefusesWhatIsNoWholeStore) {
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
    expectRefused(NSFileReadCorruptFileError, migrating());
    NSError error;
    EXPECT_FALSE(NSPersistentStoreCoordinator::metadataForPersistentStoreOfType_URL(
        NSSQLiteStoreType, path(), &error));
    EXPECT_EQ(error.code, NSFileReadCorruptFileError);
  }
  putFile(path(), whole);
  EXPECT_EQ(expectWhole(path()), 5);
}

TEST_F(ObjectStoreSafetyTest, AStoreWithDamageInsideAnswersErrorsAndKeepsWhatIsWhole) {
  make(40);
  std::string bytes = bytesOf(path());
  std::mt19937 random(1);
  for (int i = 0; i < 60; ++i) {
    std::string damaged = bytes;
    for (int j = 0; j < 20; ++j) {
      damaged[4096 + random() % (damaged.size() - 4096)] = static_cast<char>(random());
    }
    putFile(path(), damaged);
    const auto coordinator = openStore(path(), modelFrom(libraryDescription()));
    if (!coordinator) continue;
    const auto context = contextOn(coordinator);
    NSError error;
    const auto books = context->executeFetchRequest(request("Book"), &error);
    if (!books) {
      EXPECT_EQ(error.domain, NSCocoaErrorDomain);
      continue;
    }
    for (NSManagedObject* const book : *books) (void)book->documentForKey(key::text, &error);
  }
}

TEST_F(ObjectStoreSafetyTest, RefusesTheFileOfAnotherProgram) {
  {
    SQLiteDatabase other(path(), SQLiteDatabase::Access::Create, 0);
    other.execute("CREATE TABLE notes(text); INSERT INTO notes VALUES('mine')");
  }
  expectRefused(NSPersistentStoreInvalidTypeError, migrating());
}

TEST_F(ObjectStoreSafetyTest, RefusesTablesThatAreNotTheModels) {
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
    expectRefused(NSFileReadCorruptFileError, migrating());
  }
}

TEST_F(ObjectStoreSafetyTest, WaitsForALockAndThenGivesUp) {
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
    NSError error;
    EXPECT_FALSE(openStore(path(), modelFrom(libraryDescription()), brief, &error));
    EXPECT_EQ(error.code, NSPersistentStoreTimeoutError) << error.localizedDescription;
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

TEST_F(ObjectStoreSafetyTest, AFullDiskFailsTheSaveAndKeepsTheChanges) {
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

TEST_F(ObjectStoreSafetyTest, AFullDiskFailsTheMakingOfAStoreAndLeavesNothing) {
  Child child([&](int) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{8192, RLIM_INFINITY};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    NSError error;
    if (openStore(path(), modelFrom(libraryDescription()), {}, &error)) ::_exit(7);
    if (error.code != NSFileWriteOutOfSpaceError && error.code != NSFileWriteUnknownError) {
      ::_exit(8);
    }
  });
  EXPECT_EQ(child.join(), 0);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(ObjectStoreSafetyTest, AReadOnlyFolderOrFileIsRefused) {
  make(1);
  // As root no folder is read-only, so the child is nobody.
  const auto refusedInChild = [&] {
    Child child([&](int) {
      if (::geteuid() == 0 && ::setuid(65534) != 0) ::_exit(6);
      NSError error;
      if (openStore(path(), modelFrom(libraryDescription()), {}, &error)) ::_exit(7);
      if (error.domain != NSCocoaErrorDomain || error.localizedDescription.empty()) ::_exit(8);
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
  std::filesystem::rename(path(), folder / "other");
  EXPECT_EQ(refusedInChild(), 0);
  permissions(folder.path(), 0755);
  std::filesystem::rename(folder / "other", path());
  EXPECT_EQ(expectWhole(path()), 1);
}

TEST_F(ObjectStoreSafetyTest, NamesAFolderThatIsNotThere) {
  NSError error;
  EXPECT_FALSE(
      openStore(folder / "none/library.sqlite", modelFrom(libraryDescription()), {}, &error));
  EXPECT_EQ(error.code, NSFileReadNoSuchFileError);
}

}  // namespace
}  // namespace zym
