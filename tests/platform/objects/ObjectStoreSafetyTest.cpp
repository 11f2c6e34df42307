#include "tests/platform/objects/NumberedSaves.h"
#include "tests/support/Test.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

int milliseconds(std::chrono::steady_clock::duration time) {
  return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

class ObjectStoreSafetyTest : public NumberedSavesTest {};

TEST_F(ObjectStoreSafetyTest, AKilledProcessLosesNoSaveThatReturnedAndLeavesNoHalfOfOne) {
  const char* const wanted = std::getenv("ZYM_KILLS");
  const int kills = wanted ? std::atoi(wanted) : 20;
  std::mt19937 random(4711);
  // A child may be killed before it has made the file.
  make(0);
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

}  // namespace
}  // namespace zym
