#include "tests/platform/objects/LibraryStore.h"
#include "tests/support/Test.h"
#include "zymcore/platform/events/NSNotificationCenter.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/platform/values/NSException.h"

namespace zym {
namespace {

class NSManagedObjectContextTest : public LibraryTest {};

TEST_F(NSManagedObjectContextTest, KeepsEveryKindOfValueAcrossAReopening) {
  const struct {
    KeyName key;
    PlistValue value;
  } cases[] = {
      {key::name, std::string("Gr\u00fc\u00dfe \U0001F37A\0 end", 17)},
      {key::rank, std::int64_t{-9007199254740993}},
      {key::price, 0.1},
      {key::born, NSDate::dateWithTimeIntervalSinceReferenceDate(-1.0 / 3)},
      {key::stamp, NSData(std::string_view("\0\xff", 2))},
  };
  group([&] {
    NSManagedObject* const full = context->insertNewObjectForEntityForName("Author");
    for (const auto& [key, value] : cases) full->setValue_forKey(value, key);
    full->setDocument_forKey(NSData(std::string(100000, 'x')), key::text);
    NSManagedObject* const empty = context->insertNewObjectForEntityForName("Author");
    empty->setValue_forKey(PlistValue(""), key::name);
    empty->setValue_forKey(PlistValue(NSData()), key::stamp);
    empty->setDocument_forKey(NSData(), key::text);
    context->insertNewObjectForEntityForName("Author")->setValue_forKey(PlistValue(true),
                                                                        key::rank);
  });
  save();
  reopen();
  const auto found = fetch(request("Author"));
  ASSERT_EQ(found.size(), 3U);
  for (const auto& [key, value] : cases) {
    ASSERT_TRUE(found[0]->valueForKey(key)) << key.text();
    EXPECT_EQ(*found[0]->valueForKey(key), value) << key.text();
    EXPECT_EQ(found[0]->valueForKey(key)->kind(), value.kind()) << key.text();
  }
  EXPECT_EQ(found[0]->documentForKey(key::text), NSData(std::string(100000, 'x')));
  EXPECT_EQ(*found[1]->valueForKey(key::name), PlistValue(""));
  EXPECT_EQ(*found[1]->valueForKey(key::stamp), PlistValue(NSData()));
  EXPECT_EQ(found[1]->documentForKey(key::text), NSData());
  EXPECT_EQ(found[2]->valueForKey(key::name), nullptr);
  EXPECT_EQ(found[2]->valueForKey(key::stamp), nullptr);
  EXPECT_EQ(found[2]->documentForKey(key::text), std::nullopt);
  EXPECT_EQ(found[2]->valueForKey(key::rank)->kind(), PlistValue::Kind::Integer);
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

TEST_F(NSManagedObjectContextTest, HasOneObjectForARow) {
  NSManagedObject* const author = insert("Author", "A");
  const NSManagedObjectID temporary = author->objectID();
  EXPECT_TRUE(temporary.isTemporaryID());
  EXPECT_EQ(context->objectWithID(temporary), author);
  save();
  const NSManagedObjectID id = author->objectID();
  EXPECT_FALSE(id.isTemporaryID());
  EXPECT_EQ(named("Author", "A"), author);
  EXPECT_EQ(context->objectWithID(id), author);
  EXPECT_EQ(context->objectWithID({id.entity, 12345}), nullptr);
  const auto other = contextOn(coordinator);
  NSManagedObject* const elsewhere = other->objectWithID(id);
  ASSERT_NE(elsewhere, nullptr);
  EXPECT_NE(elsewhere, author);
  EXPECT_EQ(nameOf(*elsewhere), "A");
}

TEST_F(NSManagedObjectContextTest, MakesObjectsOfTheClassOfTheirEntity) {
  struct AuthorObject : NSManagedObject {
    using NSManagedObject::NSManagedObject;
  };
  insert("Author", "A");
  insert("Tag", "T");
  save();
  const auto model = modelFrom(libraryDescription());
  model->setManagedObjectClass<AuthorObject>("Author");
  EXPECT_THROW(model->setManagedObjectClass<AuthorObject>("Nobody"), NSException);
  context = contextOn(openStore(path(), model));
  EXPECT_NE(dynamic_cast<AuthorObject*>(named("Author", "A")), nullptr);
  EXPECT_NE(dynamic_cast<AuthorObject*>(insert("Author", "B")), nullptr);
  EXPECT_EQ(dynamic_cast<AuthorObject*>(named("Tag", "T")), nullptr);
}

TEST_F(NSManagedObjectContextTest, ADeletedObjectTakesNoChanges) {
  NSManagedObject* const book = insert("Book", "B");
  NSManagedObject* const author = insert("Author", "A");
  save();
  group([&] { context->deleteObject(*author); });
  EXPECT_TRUE(author->isDeleted());
  EXPECT_EQ(nameOf(*author), "A");
  group([&] {
    author->setValue_forKey(PlistValue("X"), key::name);
    author->addObject_forKey(*book, key::books);
    book->setObject_forKey(author, key::author);
    context->deleteObject(*author);
  });
  EXPECT_EQ(nameOf(*author), "A");
  EXPECT_EQ(book->objectForKey(key::author), nullptr);
  EXPECT_THAT(author->objectsForKey(key::books), IsEmpty());
}

TEST_F(NSManagedObjectContextTest, PostsWhatItSaved) {
  std::vector<PlistDictionary> posts;
  const auto token = NSNotificationCenter::defaultCenter().addObserverForName_object(
      NSManagedObjectContextDidSaveNotification, context.get(),
      [&](const NSNotification& notification) { posts.push_back(notification.userInfo); });
  save();
  EXPECT_THAT(posts, IsEmpty());
  NSManagedObject* const book = insert("Book", "B");
  save();
  group([&] { context->deleteObject(*book); });
  save();
  ASSERT_EQ(posts.size(), 2U);
  EXPECT_EQ(*posts[0].array(NSInsertedObjectsKey), PlistArray{"Book/p1"});
  EXPECT_EQ(*posts[1].array(NSDeletedObjectsKey), PlistArray{"Book/p1"});
  EXPECT_TRUE(posts[1].array(NSInsertedObjectsKey)->empty());
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

TEST_F(NSManagedObjectContextTest, AFetchTakesOverWhatSomebodyElseSaved) {
  NSManagedObject* const a = insert("Author", "A");
  save();
  const auto other = contextOn(openLibrary(path()));
  other->setUndoManager(nullptr);
  other->objectWithID(a->objectID())->setValue_forKey(PlistValue("B"), key::name);
  ASSERT_TRUE(other->save());
  EXPECT_EQ(named("Author", "B"), a);
  EXPECT_EQ(nameOf(*a), "B");
  group([&] { a->setValue_forKey(PlistValue("C"), key::name); });
  save();
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
