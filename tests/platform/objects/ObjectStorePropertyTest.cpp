#include "tests/platform/objects/LibraryStore.h"
#include "tests/support/Test.h"
#include "zymcore/platform/events/NSRunLoop.h"

namespace zym {
namespace {

constexpr const char* entityNames[] = {"Author", "Book", "Tag", "Cover"};

/// A relationship with its inverse: the entity, key and kind at either end.
struct Pairing {
  const char* entities[2];
  KeyName keys[2];
  bool isToMany[2];
};
constexpr Pairing pairings[] = {{{"Book", "Author"}, {key::author, key::books}, {false, true}},
                                {{"Book", "Tag"}, {key::tags, key::books}, {true, true}},
                                {{"Book", "Cover"}, {key::cover, key::book}, {false, false}}};

/// What one object should be.
struct Record {
  std::string entity;
  std::optional<std::string> name, text;
  friend bool operator==(const Record&, const Record&) = default;
};

/// The whole store as plain values: undo and roll-back are copies of all of it.
struct State {
  std::map<int, Record> records;
  std::set<std::array<int, 2>> links[std::size(pairings)];
  friend bool operator==(const State&, const State&) = default;

  void unlink(std::size_t pairing, std::size_t end, int number) {
    std::erase_if(links[pairing], [&](const auto& link) { return link[end] == number; });
  }
  void link(std::size_t pairing, const std::array<int, 2>& numbers) {
    for (const std::size_t end : {0U, 1U}) {
      if (!pairings[pairing].isToMany[end]) unlink(pairing, end, numbers[end]);
    }
    links[pairing].insert(numbers);
  }
  /// With an author go its books, with a book goes its cover.
  void erase(int number) {
    if (records.erase(number) == 0) return;
    const State before = *this;
    for (std::size_t i = 0; i < std::size(pairings); ++i) {
      unlink(i, 0, number);
      unlink(i, 1, number);
    }
    for (const auto& [book, author] : before.links[0]) {
      if (author == number) erase(book);
    }
    for (const auto& [book, cover] : before.links[2]) {
      if (book == number) erase(cover);
    }
  }
};

class ObjectStorePropertyTest : public LibraryTest, public testing::WithParamInterface<int> {
 protected:
  [[nodiscard]] int below(std::size_t limit) { return static_cast<int>(random() % limit); }
  [[nodiscard]] std::optional<std::string> anyText() {
    static const char* const texts[] = {"", "a", "B", "\u00e4", "longer than a short string is"};
    const int choice = below(6);
    return choice == 5 ? std::nullopt : std::optional<std::string>(texts[choice]);
  }
  /// The number of a living object of the entity, or 0.
  [[nodiscard]] int any(const std::string& entity) {
    std::vector<int> numbers;
    for (const auto& [number, record] : state.records) {
      if (record.entity == entity) numbers.push_back(number);
    }
    return numbers.empty() ? 0 : numbers[static_cast<std::size_t>(below(numbers.size()))];
  }
  template <class Value>
  static std::optional<Value> as(const std::optional<std::string>& text) {
    return text ? std::optional<Value>(Value(*text)) : std::nullopt;
  }

  // One change in both.

  void insertOne() {
    const char* const entityName = entityNames[below(4)];
    const int number = ++lastNumber;
    objects[number] = context->insertNewObjectForEntityForName(entityName);
    objects[number]->setValue_forKey(PlistValue(std::to_string(number)), key::uuid);
    state.records[number].entity = entityName;
  }
  void changeOne(int number) {
    const auto text = anyText();
    if (below(2)) {
      objects[number]->setValue_forKey(as<PlistValue>(text), key::name);
      state.records[number].name = text;
    } else {
      objects[number]->setDocument_forKey(as<NSData>(text), key::text);
      state.records[number].text = text;
      isRegistered = true;  // as long as documents aren't compared
    }
  }
  void relate() {
    const auto pairing = static_cast<std::size_t>(below(std::size(pairings)));
    const auto end = static_cast<std::size_t>(below(2));
    const Pairing& its = pairings[pairing];
    const int one = any(its.entities[end]);
    if (!one) return;
    NSManagedObject& object = *objects[one];
    const auto link = [&](int other) {
      state.link(pairing, end == 0 ? std::array{one, other} : std::array{other, one});
    };
    const int other = below(4) ? any(its.entities[1 - end]) : 0;
    if (!its.isToMany[end]) {
      object.setObject_forKey(other ? objects[other] : nullptr, its.keys[end]);
      state.unlink(pairing, end, one);
      if (other) link(other);
    } else if (!other) {
      std::set<int> others;
      for (int i = below(4); i > 0; --i) others.insert(any(its.entities[1 - end]));
      others.erase(0);
      std::vector<NSManagedObject*> wanted;
      for (const int each : others) wanted.push_back(objects[each]);
      object.setObjects_forKey(wanted, its.keys[end]);
      state.unlink(pairing, end, one);
      for (const int each : others) link(each);
    } else if (below(2)) {
      object.addObject_forKey(*objects[other], its.keys[end]);
      link(other);
    } else {
      object.removeObject_forKey(*objects[other], its.keys[end]);
      state.links[pairing].erase(end == 0 ? std::array{one, other} : std::array{other, one});
    }
  }

  void change() {
    const State before = state;
    isRegistered = false;
    group([&] {
      for (int i = below(4); i >= 0; --i) {
        const State former = state;
        const int choice = below(10);
        const int number = any(choice == 2   ? "Author"
                               : choice == 3 ? "Book"
                                             : entityNames[below(4)]);
        if (choice < 2) {
          insertOne();
        } else if (choice < 4) {
          if (number) changeOne(number);
        } else if (choice < 9) {
          relate();
        } else if (number) {
          context->deleteObject(*objects[number]);
          state.erase(number);
        }
        isRegistered = isRegistered || state != former;
      }
    });
    if (!std::exchange(isInEvent, groupsByEvent)) undoable.push_back(before);
    if (isRegistered) redoable.clear();
  }
  void endEvent() {
    if (groupsByEvent) NSRunLoop::mainRunLoop().runUntilDate(NSDate::date());
    isInEvent = false;
  }
  void move(std::vector<State>& from, std::vector<State>& to) {
    isInEvent = false;
    if (from.empty()) return;
    to.push_back(std::exchange(state, from.back()));
    from.pop_back();
  }
  void goBack() {
    state = saved;
    undoable.clear();
    redoable.clear();
  }
  void reopenBoth() {
    reopen();
    undo().setGroupsByEvent(groupsByEvent);
    isInEvent = false;
    goBack();
    objects.clear();
    for (const char* const entityName : entityNames) {
      for (NSManagedObject* const found : fetch(request(entityName))) {
        objects[numberOf(found)] = found;
      }
    }
  }
  void step() {
    if (below(2)) endEvent();
    const int choice = below(100);
    if (choice < 60) {
      change();
    } else if (choice < 72) {
      undo().undo();
      move(undoable, redoable);
    } else if (choice < 82) {
      undo().redo();
      move(redoable, undoable);
    } else if (choice < 94) {
      save();
      EXPECT_FALSE(context->hasChanges());
      saved = state;
    } else if (choice < 98) {
      context->rollback();
      EXPECT_FALSE(context->hasChanges());
      endEvent();
      goBack();
    } else {
      reopenBoth();
    }
  }

  // Comparing.

  [[nodiscard]] static int numberOf(const NSManagedObject* found) {
    return found ? std::stoi(*found->stringForKey(key::uuid)) : 0;
  }
  [[nodiscard]] static std::set<int> numbersOf(const std::vector<NSManagedObject*>& found) {
    std::set<int> numbers;
    for (const NSManagedObject* const one : found) numbers.insert(numberOf(one));
    EXPECT_EQ(numbers.size(), found.size());
    return numbers;
  }
  [[nodiscard]] State foundState() {
    State found;
    for (const char* const entityName : entityNames) {
      for (NSManagedObject* const one : fetch(request(entityName))) {
        Record& record = found.records[numberOf(one)];
        EXPECT_EQ(one, objects.at(numberOf(one)));
        EXPECT_FALSE(one->isDeleted());
        record.entity = entityName;
        if (const std::string* name = one->stringForKey(key::name)) record.name = *name;
        if (!one->entity().attributeIndex(key::text)) continue;
        if (const auto text = one->documentForKey(key::text)) record.text = text->view();
      }
    }
    return found;
  }
  /// The relationships as that end of each tells them.
  void readLinks(State& found, std::size_t end) {
    for (std::size_t i = 0; i < std::size(pairings); ++i) {
      found.links[i].clear();
      for (const auto& [number, record] : found.records) {
        if (record.entity != pairings[i].entities[end]) continue;
        const KeyName key = pairings[i].keys[end];
        const NSManagedObject& object = *objects.at(number);
        std::set<int> others = pairings[i].isToMany[end]
                                   ? numbersOf(object.objectsForKey(key))
                                   : std::set<int>{numberOf(object.objectForKey(key))};
        others.erase(0);
        for (const int other : others) {
          found.links[i].insert(end == 0 ? std::array{number, other} : std::array{other, number});
        }
      }
    }
  }
  void compare() {
    State found = foundState();
    for (const std::size_t end : {0U, 1U}) {
      readLinks(found, end);
      ASSERT_TRUE(found == state) << end;
    }
    compareFetches();
    EXPECT_EQ(undo().canUndo(), !undoable.empty());
    EXPECT_EQ(undo().canRedo(), !redoable.empty());
    EXPECT_TRUE(state == saved || context->hasChanges());
  }
  void compareFetches() {
    const auto text = anyText();
    std::vector<std::optional<std::string>> expected;
    std::set<int> named;
    for (const auto& [number, record] : state.records) {
      if (record.entity != "Book") continue;
      expected.push_back(record.name);
      if (record.name == text) named.insert(number);
    }
    const auto wanted = request("Book", NSPredicate::equal(key::name, as<PlistValue>(text)));
    EXPECT_EQ(numbersOf(fetch(wanted)), named);
    EXPECT_EQ(context->countForFetchRequest(wanted), named.size());

    NSFetchRequest sorted = request("Book");
    sorted.setSortDescriptors({{key::name, true}});
    const auto rows = context->propertiesForFetchRequest(sorted, {key::name});
    ASSERT_TRUE(rows);
    std::sort(expected.begin(), expected.end());
    std::vector<std::optional<std::string>> names;
    for (std::size_t i = 0; i < rows->size(); ++i) {
      const std::string* const name = rows->string(i, 0);
      names.push_back(name ? std::optional(*name) : std::nullopt);
    }
    EXPECT_EQ(names, expected);
  }

  std::mt19937 random;
  State state, saved;
  std::vector<State> undoable, redoable;
  std::map<int, NSManagedObject*> objects;
  int lastNumber = 0;
  // All groups of one turn of the loop are one step then.
  bool groupsByEvent = GetParam() % 2 != 0;
  bool isInEvent = false;
  bool isRegistered = false;
};

INSTANTIATE_TEST_SUITE_P(Seeds, ObjectStorePropertyTest, testing::Range(0, 20));

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
