#include <sys/resource.h>

#include "tests/platform/objects/LibraryStore.h"
#include "tests/support/Child.h"
#include "tests/support/Test.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

/// The model of the store in `tests/platform/fixtures/library-1.sqlite`.
PlistDictionary firstDescription() {
  return R"({"version": "0", "entities": {
      "Author": {
        "attributes": {"uuid": "string", "name": "string", "rank": "integer",
                       "nickname": "string", "text": "document"},
        "relationships": {"books": {"destination": "Book", "inverse": "author", "toMany": true,
                                    "deleteRule": "cascade"}}},
      "Book": {
        "attributes": {"uuid": "string", "name": "string", "text": "document"},
        "relationships": {"author": {"destination": "Author", "inverse": "books", "toMany": false},
                          "tags": {"destination": "Tag", "inverse": "books", "toMany": false}}},
      "Tag": {
        "attributes": {"uuid": "string", "name": "string"},
        "relationships": {"books": {"destination": "Book", "inverse": "tags", "toMany": true}}},
      "Shelf": {"attributes": {"name": "string"}, "relationships": {}}}})"_json;
}

void fillFirst(const std::string& path) {
  const auto context = contextOn(openStore(path, modelFrom(firstDescription())));
  context->setUndoManager(nullptr);
  const auto insert = [&](const char* entityName, const char* name) {
    NSManagedObject* const object = context->insertNewObjectForEntityForName(entityName);
    object->setValue_forKey(PlistValue(name), key::name);
    return object;
  };
  NSManagedObject* const author = insert("Author", "A");
  author->setValue_forKey(PlistValue(7), key::rank);
  author->setValue_forKey(PlistValue("nick"), KeyName("nickname"));
  author->setDocument_forKey(NSData("life"), key::text);
  NSManagedObject* const tag = insert("Tag", "T");
  for (const char* const name : {"B1", "B2", "B3"}) {
    NSManagedObject* const book = insert("Book", name);
    if (std::string(name) != "B3") author->addObject_forKey(*book, key::books);
    if (std::string(name) != "B1") tag->addObject_forKey(*book, key::books);
    book->setDocument_forKey(NSData(std::string(name) + " text"), key::text);
  }
  insert("Shelf", "S");
  ASSERT_TRUE(context->save());
  NSManagedObject* const gone = insert("Book", "gone");
  ASSERT_TRUE(context->save());
  context->deleteObject(*gone);
  ASSERT_TRUE(context->save());
}

/// Everything that both models know, in a store that has become one of the library.
void expectMigrated(const std::string& path) {
  const auto context = contextOn(openLibrary(path));
  context->setUndoManager(nullptr);
  const auto all = [&](const char* entityName) {
    return context->executeFetchRequest(request(entityName)).value();
  };
  ASSERT_EQ(all("Author").size(), 1U);
  NSManagedObject* const author = all("Author").front();
  EXPECT_EQ(nameOf(*author), "A");
  EXPECT_EQ(*author->valueForKey(key::rank), PlistValue(7));
  EXPECT_EQ(author->valueForKey(key::born), nullptr);
  EXPECT_EQ(author->documentForKey(key::text), NSData("life"));
  EXPECT_THAT(namesOf(author->objectsForKey(key::books)), ElementsAre("B1", "B2"));
  ASSERT_EQ(all("Tag").size(), 1U);
  NSManagedObject* const tag = all("Tag").front();
  EXPECT_THAT(namesOf(tag->objectsForKey(key::books)), ElementsAre("B2", "B3"));
  const auto books = all("Book");
  ASSERT_EQ(books.size(), 3U);
  for (NSManagedObject* const book : books) {
    EXPECT_EQ(book->documentForKey(key::text), NSData(nameOf(*book) + " text"));
    EXPECT_EQ(book->objectForKey(key::cover), nullptr);
  }
  EXPECT_THAT(books[1]->objectsForKey(key::tags), ElementsAre(tag));
  EXPECT_THAT(all("Cover"), testing::IsEmpty());

  // It is a store to work on, and gives no key of the old one a second time.
  NSManagedObject* const fresh = context->insertNewObjectForEntityForName("Book");
  tag->addObject_forKey(*fresh, key::books);
  ASSERT_TRUE(context->save());
  EXPECT_EQ(fresh->objectID().key, 5);
}

class StoreMigrationTest : public testing::Test {
 protected:
  void SetUp() override { fillFirst(path()); }
  [[nodiscard]] std::string path() const { return folder / "library.sqlite"; }
  /// The store still opens by its own model, and nothing lies beside it.
  void expectUntouched() const {
    const auto coordinator = openStore(path(), modelFrom(firstDescription()));
    ASSERT_TRUE(coordinator);
    EXPECT_EQ(contextOn(coordinator)->countForFetchRequest(request("Book")), 3U);
    EXPECT_FALSE(std::filesystem::exists(path() + ".new"));
  }
  static PlistDictionary with(std::initializer_list<const char*> keys, const PlistValue& value) {
    return changedDescription(firstDescription(), keys, value);
  }
  TemporaryFolder folder;
};

TEST_F(StoreMigrationTest, KeepsEveryValueThatTheNewModelKnows) {
  const std::string fixture = ZYM_FIXTURES "/library-1.sqlite";
  if (std::getenv("ZYM_WRITE_FIXTURES")) {
    std::filesystem::copy_file(path(), fixture, std::filesystem::copy_options::overwrite_existing);
  }
  for (const std::string& store : {path(), folder.file("fixture.sqlite", bytesOf(fixture))}) {
    const auto uuid = [&] {
      return std::string(NSPersistentStoreCoordinator::metadataForPersistentStoreOfType_URL(
                             NSSQLiteStoreType, store)
                             ->stringValue(NSStoreUUIDKey));
    };
    const std::string before = uuid();
    putFile(store + ".new", "half of a store, which a killed migration left");
    ASSERT_EQ(refusalOf(store, migrating()), 0);
    EXPECT_FALSE(std::filesystem::exists(store + ".new"));
    expectMigrated(store);
    EXPECT_EQ(uuid(), before);
  }
}

TEST_F(StoreMigrationTest, HappensOnlyWhenBothOptionsAreSet) {
  for (const PlistDictionary& options :
       {PlistDictionary(), PlistDictionary{{NSMigratePersistentStoresAutomaticallyOption, true}},
        PlistDictionary{{NSInferMappingModelAutomaticallyOption, true}}}) {
    EXPECT_EQ(refusalOf(path(), options), NSPersistentStoreIncompatibleVersionHashError);
  }
  expectUntouched();
}

TEST_F(StoreMigrationTest, RefusesWhatCannotBeInferred) {
  const PlistDictionary cases[] = {
      with({"entities", "Author", "attributes", "rank"}, "string"),
      with({"entities", "Author", "attributes", "text"}, "data"),
      // A tag had many books and would have one.
      with({"entities", "Tag", "relationships", "books"}, relationship("Book", "tags", false)),
  };
  for (const PlistDictionary& description : cases) {
    EXPECT_EQ(refusalOf(path(), migrating(), description), NSInferredMappingModelError);
  }
  expectUntouched();
}

TEST_F(StoreMigrationTest, LeavesAStoreAloneThatIsInUse) {
  const auto user = contextOn(openStore(path(), modelFrom(firstDescription())));
  user->setUndoManager(nullptr);
  PlistDictionary options = migrating();
  options.set(NSPersistentStoreTimeoutOption, 0.05);
  EXPECT_EQ(refusalOf(path(), options), NSPersistentStoreTimeoutError);
  user->insertNewObjectForEntityForName("Shelf")->setValue_forKey(PlistValue("S2"), key::name);
  ASSERT_TRUE(user->save());
  EXPECT_EQ(user->countForFetchRequest(request("Shelf")), 2U);
}

TEST_F(StoreMigrationTest, AFullDiskLeavesTheOldStore) {
  Child child([&](int) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{16384, RLIM_INFINITY};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::_exit(refusalOf(path(), migrating()) <= 0);
  });
  EXPECT_EQ(child.join(), 0);
  expectUntouched();
}

TEST_F(StoreMigrationTest, TakesInWhatIsStillInTheLog) {
  // A process that ends without closing leaves its last saves in the log beside the store.
  Child child([&](int) {
    const auto context = contextOn(openStore(path(), modelFrom(firstDescription())));
    context->setUndoManager(nullptr);
    context->insertNewObjectForEntityForName("Tag")->setValue_forKey(PlistValue("late"), key::name);
    ::_exit(context->save() ? 0 : 1);
  });
  ASSERT_EQ(child.join(), 0);
  ASSERT_TRUE(std::filesystem::exists(path() + "-wal"));
  EXPECT_TRUE(NSPersistentStoreCoordinator::metadataForPersistentStoreOfType_URL(NSSQLiteStoreType,
                                                                                 path()));
  const auto coordinator = openStore(path(), modelFrom(libraryDescription()), migrating());
  ASSERT_TRUE(coordinator);
  const auto context = contextOn(coordinator);
  EXPECT_THAT(namesOf(context->executeFetchRequest(request("Tag")).value()),
              ElementsAre("T", "late"));
}

}  // namespace
}  // namespace zym
