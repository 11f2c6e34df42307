#include "tests/platform/objects/LibraryStore.h"
#include "tests/support/Test.h"
#include "zymcore/platform/events/NSNotificationCenter.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/platform/values/NSException.h"

namespace zym {
namespace {

class NSManagedObjectContextTest : public LibraryTest {};

TEST_F(NSManagedObjectContextTest, KeepsEveryKindOfValueAcrossAReopening) {
  const std::vector<std::pair<KeyName, PlistValue>> records[] = {
      {{key::name, std::string("Gr\u00fc\u00dfe \U0001F37A\0 end", 17)},
       {key::rank, std::int64_t{-9007199254740993}},
       {key::price, 0.1},
       {key::born, NSDate::dateWithTimeIntervalSinceReferenceDate(-1.0 / 3)},
       {key::stamp, NSData(std::string_view("\0\xff", 2))}},
      {{key::name, ""}, {key::stamp, NSData()}},
      {{key::rank, 7}}};
  const std::optional<NSData> documents[] = {NSData(std::string(100000, 'x')), NSData(), {}};
  group([&] {
    for (std::size_t i = 0; i < 3; ++i) {
      NSManagedObject* const author = context->insertNewObjectForEntityForName("Author");
      for (const auto& [key, value] : records[i]) author->setValue_forKey(value, key);
      author->setDocument_forKey(documents[i], key::text);
    }
  });
  save();
  reopen();
  const auto found = fetch(request("Author"));
  ASSERT_EQ(found.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    std::size_t present = 0;
    for (const NSAttributeDescription& each : found[i]->entity().attributes()) {
      if (each.type == NSAttributeType::Document) continue;
      present += found[i]->valueForKey(KeyName(each.name)) ? 1 : 0;
    }
    EXPECT_EQ(present, records[i].size());
    for (const auto& [key, value] : records[i]) {
      ASSERT_TRUE(found[i]->valueForKey(key)) << key.text();
      EXPECT_EQ(*found[i]->valueForKey(key), value) << key.text();
      EXPECT_EQ(found[i]->valueForKey(key)->kind(), value.kind()) << key.text();
    }
    EXPECT_EQ(found[i]->documentForKey(key::text), documents[i]);
  }
}

TEST_F(NSManagedObjectContextTest, RefusesWhatTheModelDoesNotKnow) {
  NSManagedObject* const author = insert("Author", "A");
  NSManagedObject* const tag = insert("Tag", "T");
  const auto other = contextOn(coordinator);
  EXPECT_THROW((void)context->insertNewObjectForEntityForName("Nobody"), NSException);
  EXPECT_THROW((void)fetch(request("Nobody")), NSException);
  EXPECT_THROW((void)fetch(request("Author", NSPredicate::equal(KeyName("nothing"), 1))),
               NSException);
  EXPECT_THROW((void)fetch(request("Author", NSPredicate::equal(key::text, "x"))), NSException);
  EXPECT_THROW((void)author->valueForKey(KeyName("nothing")), NSException);
  EXPECT_THROW((void)author->valueForKey(key::text), NSException);
  EXPECT_THROW((void)author->documentForKey(key::name), NSException);
  EXPECT_THROW((void)author->objectForKey(key::books), NSException);
  EXPECT_THROW(author->addObject_forKey(*tag, key::books), NSException);
  EXPECT_THROW(author->setValue_forKey(PlistValue(1), key::name), NSException);
  EXPECT_THROW(author->setValue_forKey(PlistValue("x"), key::text), NSException);
  EXPECT_THROW((void)author->valueAtIndex(99), NSException);
  author->setValue_forKey(PlistValue(std::nan("")), key::price);
  EXPECT_EQ(author->valueForKey(key::price), nullptr);
}

TEST_F(NSManagedObjectContextTest, TakesInWhatAnotherContextSaved) {
  NSManagedObject* const a = insert("Author", "A");
  NSManagedObject* const b = insert("Author", "B");
  NSManagedObject* const gone = insert("Author", "Gone");
  save();
  EXPECT_THAT(a->objectsForKey(key::books), IsEmpty());

  const auto other = contextOn(coordinator, NSPrivateQueueConcurrencyType);
  const auto token = NSNotificationCenter::defaultCenter().addObserverForName_object(
      NSManagedObjectContextDidSaveNotification, other.get(),
      [&](const NSNotification& notification) {
        context->mergeChangesFromContextDidSaveNotification(notification);
      });
  NSManagedObject* const book = other->insertNewObjectForEntityForName("Book");
  book->setObject_forKey(other->objectWithID(a->objectID()), key::author);
  other->objectWithID(a->objectID())->setValue_forKey(PlistValue("News"), key::name);
  other->objectWithID(b->objectID())->setValue_forKey(PlistValue("Lost"), key::name);
  other->deleteObject(*other->objectWithID(gone->objectID()));
  group([&] { b->setValue_forKey(PlistValue("Mine"), key::name); });
  ASSERT_TRUE(other->save());
  EXPECT_EQ(nameOf(*a), "News");
  EXPECT_EQ(a->objectsForKey(key::books).size(), 1U);
  EXPECT_EQ(nameOf(*b), "Mine");
  EXPECT_EQ(gone->valueForKey(key::name), nullptr);
  EXPECT_TRUE(gone->isDeleted());

  NSError error;
  EXPECT_FALSE(context->save(&error));
  EXPECT_EQ(error.code, 133020);
  EXPECT_EQ(nameOf(*b), "Mine");
  context->rollback();
  EXPECT_EQ(nameOf(*b), "Lost");
}

TEST_F(NSManagedObjectContextTest, ABlockReadsOneMomentUntilItSaves) {
  NSManagedObject* const a = insert("Author", "A");
  save();
  const auto other = contextOn(openLibrary(path()));
  other->setUndoManager(nullptr);
  context->performBlockAndWait([&] {
    EXPECT_EQ(named("Author", "A"), a);
    other->objectWithID(a->objectID())->setValue_forKey(PlistValue("B"), key::name);
    ASSERT_TRUE(other->save());
    EXPECT_EQ(named("Author", "B"), nullptr);
    insert("Author", "C");
    save();
    EXPECT_EQ(named("Author", "B"), a);
  });
}

// After a fetch a relationship made elsewhere is known, and its rule holds; before one, nothing
// is left dangling.
TEST_F(NSManagedObjectContextTest, DeletesWithWhatSomebodyElseRelated) {
  for (const bool isFetched : {true, false}) {
    NSManagedObject* const author = insert("Author", "A");
    NSManagedObject* const tag = insert("Tag", "T");
    save();
    EXPECT_THAT(author->objectsForKey(key::books), IsEmpty());
    const auto other = contextOn(openLibrary(path()));
    other->setUndoManager(nullptr);
    NSManagedObject* const book = other->insertNewObjectForEntityForName("Book");
    book->setObject_forKey(other->objectWithID(author->objectID()), key::author);
    book->addObject_forKey(*other->objectWithID(tag->objectID()), key::tags);
    ASSERT_TRUE(other->save());
    group([&] {
      context->deleteObject(isFetched ? *named("Author", "A") : *author);
      context->deleteObject(*tag);
    });
    save();
    const auto books = fetch(request("Book"));
    ASSERT_EQ(books.size(), isFetched ? 0U : 1U);
    if (isFetched) continue;
    EXPECT_EQ(books[0]->objectForKey(key::author), nullptr);
    EXPECT_THAT(books[0]->objectsForKey(key::tags), IsEmpty());
  }
}

TEST_F(NSManagedObjectContextTest, UndoActionsOutliveTheirContextQuietly) {
  const auto shared = std::make_shared<NSUndoManager>();
  shared->setGroupsByEvent(false);
  context->setUndoManager(shared);
  insert("Book", "B");
  context.reset();
  shared->undo();
  EXPECT_TRUE(shared->canRedo());
}

}  // namespace
}  // namespace zym
