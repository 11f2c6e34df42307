#pragma once

#include "tests/platform/objects/LibraryStore.h"
#include "tests/support/Child.h"
#include "tests/support/Test.h"
#include "zymcore/platform/objects/internal/SQLiteDatabase.h"

namespace zym {

// Saves that are numbered from 1, so that a store tells which of them it holds.

inline constexpr int booksPerSave = 3;

/// What a save with that number writes: it touches several tables, so half of it would show.
inline NSData documentOf(std::int64_t number) {
  return NSData(std::string(static_cast<std::size_t>(1000 + number % 7000), 'a') +
                std::to_string(number));
}

inline void writeSave(NSManagedObjectContext& context, NSManagedObject& author,
                      std::int64_t number) {
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

[[nodiscard]] inline std::string integrityOf(const std::string& path) {
  SQLiteDatabase database(path, SQLiteDatabase::Access::ReadWrite, 5);
  SQLiteStatement check = database.statement("PRAGMA integrity_check");
  return check.step() ? std::string(check.text(0)) : "no answer";
}

/// Every save up to the last is there as a whole, and nothing else. Answers the number of the last.
inline std::int64_t expectWhole(const std::string& path) {
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

class NumberedSavesTest : public testing::Test {
 protected:
  [[nodiscard]] std::string path() const { return folder / "library.sqlite"; }
  void make(std::int64_t saves) const {
    Library library(path());
    for (std::int64_t i = 1; i <= saves; ++i) {
      writeSave(*library.context, *library.author, i);
      ASSERT_TRUE(library.context->save());
    }
  }
  TemporaryFolder folder;
};

}  // namespace zym
