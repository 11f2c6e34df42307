#include "tests/platform/objects/LibraryStore.h"
#include "tests/support/Test.h"
#include "zymcore/platform/events/NSRunLoop.h"

namespace zym {
namespace {

/// What one object should be. The objects at the other end are named by their numbers.
struct Record {
  std::string entity;
  std::optional<std::string> name;
  std::optional<std::string> text;
  int author = 0;
  int cover = 0;
  std::set<int> tags;

  friend bool operator==(const Record&, const Record&) = default;
};

using State = std::map<int, Record>;

/// The whole store as plain values: undo and roll-back are copies of all of it.
struct Reference {
  State state;
  State saved;
  std::vector<State> undoable;
  std::vector<State> redoable;

  void erase(int number) {
    const Record record = state.at(number);
    state.erase(number);
    std::vector<int> doomed;
    for (auto& [other, its] : state) {
      if (its.author == number) doomed.push_back(other);
      if (its.cover == number) its.cover = 0;
      its.tags.erase(number);
    }
    if (record.cover != 0) doomed.push_back(record.cover);
    for (const int other : doomed) {
      if (state.contains(other)) erase(other);
    }
  }
};

class ObjectStorePropertyTest : public LibraryTest, public testing::WithParamInterface<int> {
 protected:
  [[nodiscard]] int below(int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  }
  [[nodiscard]] std::optional<std::string> anyText() {
    static const char* const texts[] = {"", "a", "B", "\u00e4", "longer than a short string is"};
    const int choice = below(6);
    return choice == 5 ? std::nullopt : std::optional<std::string>(texts[choice]);
  }
  /// The number of a living object of the entity, or 0.
  [[nodiscard]] int any(const std::string& entity) {
    std::vector<int> numbers;
    for (const auto& [number, record] : reference.state) {
      if (record.entity == entity) numbers.push_back(number);
    }
    return numbers.empty() ? 0 : numbers[static_cast<std::size_t>(below(int(numbers.size())))];
  }
  [[nodiscard]] NSManagedObject* object(int number) const {
    return number == 0 ? nullptr : objects.at(number);
  }
  static std::optional<PlistValue> asValue(const std::optional<std::string>& text) {
    return text ? std::optional<PlistValue>(*text) : std::nullopt;
  }
  static std::optional<NSData> asDocument(const std::optional<std::string>& text) {
    return text ? std::optional<NSData>(NSData(*text)) : std::nullopt;
  }

  // One change in both. Each answers whether it registered something to undo.

  bool insertOne() {
    static const char* const entities[] = {"Author", "Book", "Tag", "Cover"};
    const char* const entityName = entities[below(4)];
    const int number = ++lastNumber;
    NSManagedObject* const fresh = context->insertNewObjectForEntityForName(entityName);
    fresh->setValue_forKey(PlistValue(std::to_string(number)), key::uuid);
    objects[number] = fresh;
    reference.state[number].entity = entityName;
    return true;
  }
  bool changeName() {
    const int number = any(below(2) ? "Author" : "Book");
    if (!number) return false;
    const auto text = anyText();
    object(number)->setValue_forKey(asValue(text), key::name);
    return std::exchange(reference.state[number].name, text) != text;
  }
  bool changeText() {
    const int number = any(below(2) ? "Author" : "Book");
    if (!number) return false;
    reference.state[number].text = anyText();
    object(number)->setDocument_forKey(asDocument(reference.state[number].text), key::text);
    return true;
  }
  bool relateAuthor() {
    const int book = any("Book");
    const int author = below(4) ? any("Author") : 0;
    if (!book) return false;
    const int former = std::exchange(reference.state[book].author, author);
    if (author && below(2)) {
      object(author)->addObject_forKey(*object(book), key::books);
    } else if (!author && former && below(2)) {
      object(former)->removeObject_forKey(*object(book), key::books);
    } else {
      object(book)->setObject_forKey(object(author), key::author);
    }
    return former != author;
  }
  bool replaceBooks() {
    const int author = any("Author");
    if (!author) return false;
    std::set<int> books;
    std::vector<NSManagedObject*> wanted;
    for (int i = below(4); i > 0; --i) {
      const int book = any("Book");
      if (book && books.insert(book).second) wanted.push_back(object(book));
    }
    const State before = reference.state;
    for (auto& [number, record] : reference.state) {
      if (record.author == author) record.author = 0;
      if (books.contains(number)) record.author = author;
    }
    object(author)->setObjects_forKey(wanted, key::books);
    return reference.state != before;
  }
  bool relateTag() {
    const int book = any("Book");
    const int tag = any("Tag");
    if (!book || !tag) return false;
    NSManagedObject& one = *object(book);
    NSManagedObject& other = *object(tag);
    const bool fromTag = below(2) != 0;
    if (below(2)) {
      fromTag ? other.addObject_forKey(one, key::books) : one.addObject_forKey(other, key::tags);
      return reference.state[book].tags.insert(tag).second;
    }
    fromTag ? other.removeObject_forKey(one, key::books)
            : one.removeObject_forKey(other, key::tags);
    return reference.state[book].tags.erase(tag) != 0;
  }
  bool relateCover() {
    const int book = any("Book");
    const int cover = below(4) ? any("Cover") : 0;
    if (!book) return false;
    const State before = reference.state;
    for (auto& [number, record] : reference.state) {
      if (cover && record.cover == cover) record.cover = 0;
    }
    reference.state[book].cover = cover;
    if (cover && below(2)) {
      object(cover)->setObject_forKey(object(book), key::book);
    } else {
      object(book)->setObject_forKey(object(cover), key::cover);
    }
    return reference.state != before;
  }
  bool deleteOne() {
    static const char* const entities[] = {"Author", "Book", "Tag", "Cover"};
    const int number = any(entities[below(4)]);
    if (!number) return false;
    context->deleteObject(*object(number));
    reference.erase(number);
    return true;
  }

  void change() {
    using Step = bool (ObjectStorePropertyTest::*)();
    static constexpr Step steps[] = {
        &ObjectStorePropertyTest::insertOne,    &ObjectStorePropertyTest::insertOne,
        &ObjectStorePropertyTest::changeName,   &ObjectStorePropertyTest::changeText,
        &ObjectStorePropertyTest::relateAuthor, &ObjectStorePropertyTest::replaceBooks,
        &ObjectStorePropertyTest::relateTag,    &ObjectStorePropertyTest::relateTag,
        &ObjectStorePropertyTest::relateCover,  &ObjectStorePropertyTest::deleteOne};
    const State before = reference.state;
    bool isRegistered = false;
    group([&] {
      for (int i = below(4); i >= 0; --i) {
        isRegistered = (this->*steps[below(std::size(steps))])() || isRegistered;
      }
    });
    if (!std::exchange(isInEvent, groupsByEvent)) reference.undoable.push_back(before);
    if (isRegistered) reference.redoable.clear();
  }
  void endEvent() {
    if (groupsByEvent) NSRunLoop::mainRunLoop().runUntilDate(NSDate::date());
    isInEvent = false;
  }
  void move(std::vector<State>& from, std::vector<State>& to) {
    isInEvent = false;
    if (from.empty()) return;
    to.push_back(reference.state);
    reference.state = from.back();
    from.pop_back();
  }
  void saveBoth() {
    save();
    EXPECT_FALSE(context->hasChanges());
    reference.saved = reference.state;
  }
  void rollbackBoth() {
    context->rollback();
    EXPECT_FALSE(context->hasChanges());
    endEvent();
    reference.state = reference.saved;
    reference.undoable.clear();
    reference.redoable.clear();
  }
  void reopenBoth() {
    reopen();
    undo().setGroupsByEvent(groupsByEvent);
    isInEvent = false;
    reference.state = reference.saved;
    reference.undoable.clear();
    reference.redoable.clear();
    objects.clear();
    for (const char* const entityName : {"Author", "Book", "Tag", "Cover"}) {
      for (NSManagedObject* const found : fetch(request(entityName))) {
        objects[std::stoi(*found->stringForKey(key::uuid))] = found;
      }
    }
  }

  void step() {
    if (below(2)) endEvent();
    const int choice = below(100);
    if (choice < 60) return change();
    if (choice < 72) {
      undo().undo();
      return move(reference.undoable, reference.redoable);
    }
    if (choice < 82) {
      undo().redo();
      return move(reference.redoable, reference.undoable);
    }
    if (choice < 94) return saveBoth();
    if (choice < 98) return rollbackBoth();
    reopenBoth();
  }

  // Comparing.

  [[nodiscard]] int numberOf(const NSManagedObject* found) const {
    return found ? std::stoi(*found->stringForKey(key::uuid)) : 0;
  }
  [[nodiscard]] std::set<int> numbersOf(const std::vector<NSManagedObject*>& found) const {
    std::set<int> numbers;
    for (const NSManagedObject* const one : found) numbers.insert(numberOf(one));
    EXPECT_EQ(numbers.size(), found.size());
    return numbers;
  }
  [[nodiscard]] Record recordOf(const NSManagedObject& found) const {
    Record record;
    record.entity = found.entity().name();
    if (record.entity == "Author" || record.entity == "Book") {
      if (const std::string* name = found.stringForKey(key::name)) record.name = *name;
      if (const auto text = found.documentForKey(key::text)) record.text = text->view();
    }
    if (record.entity == "Book") {
      record.author = numberOf(found.objectForKey(key::author));
      record.cover = numberOf(found.objectForKey(key::cover));
      record.tags = numbersOf(found.objectsForKey(key::tags));
    }
    return record;
  }

  void compare() {
    State found;
    for (const char* const entityName : {"Author", "Book", "Tag", "Cover"}) {
      for (NSManagedObject* const one : fetch(request(entityName))) {
        const int number = numberOf(one);
        EXPECT_EQ(one, objects.at(number));
        EXPECT_FALSE(one->isDeleted());
        found[number] = recordOf(*one);
        EXPECT_EQ(found[number], reference.state[number]) << entityName << " " << number;
      }
    }
    ASSERT_EQ(found, reference.state);
    compareOtherEnds();
    compareFetches();
    EXPECT_EQ(undo().canUndo(), !reference.undoable.empty());
    EXPECT_EQ(undo().canRedo(), !reference.redoable.empty());
  }
  void compareOtherEnds() {
    for (const auto& [number, record] : reference.state) {
      std::set<int> expected;
      int book = 0;
      for (const auto& [other, its] : reference.state) {
        if (its.author == number || its.tags.contains(number)) expected.insert(other);
        if (its.cover == number) book = other;
      }
      if (record.entity == "Author" || record.entity == "Tag") {
        EXPECT_EQ(numbersOf(object(number)->objectsForKey(key::books)), expected);
      } else if (record.entity == "Cover") {
        EXPECT_EQ(numberOf(object(number)->objectForKey(key::book)), book);
      }
    }
  }
  void compareFetches() {
    const auto text = anyText();
    std::vector<std::string> expected;
    std::set<int> named;
    for (const auto& [number, record] : reference.state) {
      if (record.entity != "Book") continue;
      expected.push_back(record.name.value_or(" absent"));
      if (record.name == text) named.insert(number);
    }
    const auto predicate = NSPredicate::equal(key::name, asValue(text));
    EXPECT_EQ(numbersOf(fetch(request("Book", predicate))), named);
    EXPECT_EQ(context->countForFetchRequest(request("Book", predicate)), named.size());

    NSFetchRequest sorted = request("Book");
    sorted.setSortDescriptors({{key::name, true}});
    const auto rows = context->propertiesForFetchRequest(sorted, {key::name});
    ASSERT_TRUE(rows);
    std::sort(expected.begin(), expected.end(), [](const std::string& a, const std::string& b) {
      return a == " absent" ? b != " absent" : b != " absent" && a < b;
    });
    std::vector<std::string> names;
    for (std::size_t i = 0; i < rows->size(); ++i) {
      names.push_back(rows->string(i, 0) ? *rows->string(i, 0) : " absent");
    }
    EXPECT_EQ(names, expected);
  }

  std::mt19937 random;
  Reference reference;
  std::map<int, NSManagedObject*> objects;
  int lastNumber = 0;
  // All groups of one turn of the loop are one step then.
  bool groupsByEvent = GetParam() % 2 != 0;
  bool isInEvent = false;
};

INSTANTIATE_TEST_SUITE_P(Seeds, ObjectStorePropertyTest, testing::Range(0, 12));

TEST_P(ObjectStorePropertyTest, AnySequenceOfChangesMatchesTheReference) {
  const char* const wanted = std::getenv("ZYM_STORE_STEPS");
  const int steps = wanted ? std::atoi(wanted) : 150;
  random.seed(static_cast<unsigned>(GetParam()));
  undo().setGroupsByEvent(groupsByEvent);
  for (int i = 0; i < steps && !HasFailure(); ++i) {
    SCOPED_TRACE("step " + std::to_string(i));
    ASSERT_NO_FATAL_FAILURE(step());
    ASSERT_NO_FATAL_FAILURE(compare());
  }
}

}  // namespace
}  // namespace zym
