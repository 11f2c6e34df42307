#include <malloc.h>

#include "tests/platform/objects/LibraryStore.h"
#include "tests/support/Test.h"
#include "zymcore/platform/objects/NSFetchRequest.h"
#include "zymcore/platform/values/NSException.h"

namespace zym {
namespace {

using Operator = NSPredicate::Operator;

NSDate day(double number) {
  return NSDate::dateWithTimeIntervalSinceReferenceDate(number);
}

/// The same authors twice: saved, and changed into these without a save. Whatever is asked must be
/// answered alike by the store and by the context.
class NSFetchRequestTest : public LibraryTest, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    LibraryTest::SetUp();
    const bool isSaved = GetParam();
    group([&] {
      add("b", 2, 20);
      add("a", 1, 10);
      add("", 0, 0);
      add(nullptr, std::nullopt, std::nullopt);
      add("B", 10, 30);
      add("\u00e4", -1, 20);
    });
    if (isSaved) return save();
    // Saved otherwise, and one of them not at all.
    std::vector<std::optional<PlistValue>> names;
    const auto all = fetch(request("Author"));
    for (NSManagedObject* const author : all) {
      const PlistValue* const name = author->valueForKey(key::name);
      names.push_back(name ? std::optional(*name) : std::nullopt);
    }
    group([&] {
      for (NSManagedObject* const author : all) {
        author->setValue_forKey(PlistValue("other"), key::name);
      }
    });
    save();
    group([&] {
      for (std::size_t i = 0; i < all.size(); ++i) all[i]->setValue_forKey(names[i], key::name);
      context->deleteObject(*all[5]);
      add("\u00e4", -1, 20);
    });
  }

  void add(const char* name, std::optional<int> rank, std::optional<double> born) {
    NSManagedObject* const author = context->insertNewObjectForEntityForName("Author");
    if (name) author->setValue_forKey(PlistValue(name), key::name);
    if (rank) author->setValue_forKey(PlistValue(*rank), key::rank);
    if (born) author->setValue_forKey(PlistValue(day(*born)), key::born);
  }

  Names found(const NSPredicate& predicate) {
    const NSFetchRequest wanted = request("Author", predicate);
    const Names names = namesOf(fetch(wanted));
    EXPECT_EQ(context->countForFetchRequest(wanted), names.size());
    const auto properties = context->propertiesForFetchRequest(wanted, {key::rank, key::name});
    EXPECT_TRUE(properties && properties->size() == names.size());
    for (std::size_t i = 0; properties && i < names.size(); ++i) {
      const std::string* const name = properties->string(i, 1);
      EXPECT_EQ(name ? *name : "-", names[i]);
    }
    return names;
  }
};

INSTANTIATE_TEST_SUITE_P(SavedOrNot, NSFetchRequestTest, testing::Bool());

TEST_P(NSFetchRequestTest, FindsByPredicate) {
  using P = NSPredicate;
  const auto compare = [](KeyName key, Operator op, PlistValue value) {
    return P::comparison(key, op, std::move(value));
  };
  const std::vector<P> none;
  const struct {
    NSPredicate predicate;
    Names names;
  } cases[] = {
      {P::equal(key::name, "b"), {"b"}},
      {P::equal(key::name, ""), {""}},
      {P::equal(key::name, std::nullopt), {"-"}},
      {P::equal(key::name, "' OR 1 --"), {}},
      {compare(key::name, Operator::NotEqualTo, "b"), {"a", "", "-", "B", "\u00e4"}},
      {compare(key::name, Operator::NotEqualTo, 7), {"b", "a", "", "-", "B", "\u00e4"}},
      {P::comparison(key::name, Operator::NotEqualTo, std::nullopt), {"b", "a", "", "B", "\u00e4"}},
      {compare(key::name, Operator::GreaterThan, "a"), {"b", "\u00e4"}},
      {compare(key::name, Operator::LessThan, "a"), {"", "B"}},
      {P::comparison(key::name, Operator::LessThan, std::nullopt), {}},
      {compare(key::rank, Operator::GreaterThanOrEqualTo, 2), {"b", "B"}},
      {compare(key::rank, Operator::LessThan, 1.5), {"a", "", "\u00e4"}},
      {P::equal(key::rank, true), {"a"}},
      {compare(key::born, Operator::GreaterThan, day(20)), {"B"}},
      {compare(key::born, Operator::LessThanOrEqualTo, day(20)), {"b", "a", "", "\u00e4"}},
      {P::in(key::name, {"a", "B", 5}), {"a", "B"}},
      {P::notPredicateWithSubpredicate(P::in(key::name, {"a", "B"})), {"b", "", "-", "\u00e4"}},
      {P::notPredicateWithSubpredicate(compare(key::rank, Operator::GreaterThan, 0)),
       {"", "-", "\u00e4"}},
      {P::andPredicateWithSubpredicates({compare(key::rank, Operator::GreaterThan, 0),
                                         compare(key::name, Operator::GreaterThan, "B")}),
       {"b", "a"}},
      {P::orPredicateWithSubpredicates(
           {P::equal(key::name, "a"),
            P::notPredicateWithSubpredicate(P::orPredicateWithSubpredicates(
                {compare(key::rank, Operator::LessThan, 100), P::equal(key::name, "b")}))}),
       {"a", "-"}},
      {P::andPredicateWithSubpredicates(none), {"b", "a", "", "-", "B", "\u00e4"}},
      {P::orPredicateWithSubpredicates(none), {}},
  };
  int number = 0;
  for (const auto& [predicate, names] : cases) {
    SCOPED_TRACE(number++);
    EXPECT_EQ(found(predicate), names);
  }
}

TEST_P(NSFetchRequestTest, FindsByMoreValuesThanAQueryHolds) {
  std::vector<PlistValue> values(40000, PlistValue("nobody"));
  values.emplace_back("a");
  EXPECT_EQ(found(NSPredicate::in(key::name, values)), Names{"a"});
}

TEST_P(NSFetchRequestTest, Sorts) {
  const auto sorted = [&](std::vector<NSSortDescriptor> descriptors) {
    NSFetchRequest wanted = request("Author");
    wanted.setSortDescriptors(std::move(descriptors));
    const Names names = namesOf(fetch(wanted));
    for (const auto& keys : {std::vector<KeyName>{key::name, key::born}, {key::name}}) {
      const auto rows = context->propertiesForFetchRequest(wanted, keys);
      for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(rows->string(i, 0) ? *rows->string(i, 0) : "-", names[i]);
      }
    }
    return names;
  };
  EXPECT_THAT(sorted({{key::name, true}}), ElementsAre("-", "", "B", "a", "b", "\u00e4"));
  EXPECT_THAT(sorted({{key::name, false}}), ElementsAre("\u00e4", "b", "a", "B", "", "-"));
  EXPECT_THAT(sorted({{key::rank, true}}), ElementsAre("-", "\u00e4", "", "a", "b", "B"));
  EXPECT_THAT(sorted({{key::born, false}, {key::rank, true}}),
              ElementsAre("B", "\u00e4", "b", "a", "", "-"));
  EXPECT_THAT(sorted({{key::born, true}}), ElementsAre("-", "", "a", "b", "\u00e4", "B"));
  EXPECT_THROW(sorted({{KeyName("nothing"), true}}), NSException);
  EXPECT_THROW(sorted({{key::text, true}}), NSException);
}

class NSFetchTest : public LibraryTest {};

TEST_F(NSFetchTest, WalkingAllDocumentsKeepsNoneOfThem) {
  constexpr int count = 500;
  constexpr std::size_t length = 12000;
  context->setUndoManager(nullptr);
  for (int i = 0; i < count; ++i) {
    context->insertNewObjectForEntityForName("Book")->setDocument_forKey(
        NSData(std::string(length, 'd')), key::text);
  }
  save();
  const auto bytesInUse = [] { return ::mallinfo2().uordblks; };
  const std::size_t before = bytesInUse();
  for (const NSManagedObject* const book : fetch(request("Book"))) {
    ASSERT_EQ(book->documentForKey(key::text)->length(), length);
  }
  EXPECT_LT(bytesInUse(), before + count * length / 10);
}

// Each record that is added looks for others of its name first.
TEST_F(NSFetchTest, AddingManyTakesTimeInProportion) {
  context->setUndoManager(nullptr);
  const auto secondsFor = [&](int count) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < count; ++i) {
      const std::string name = std::to_string(i);
      EXPECT_EQ(named("Book", name.c_str()), nullptr);
      context->insertNewObjectForEntityForName("Book")->setValue_forKey(PlistValue(name),
                                                                        key::name);
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    context->rollback();
    return seconds.count();
  };
  const double few = secondsFor(1000);
  EXPECT_LT(secondsFor(8000), 24 * few);
}

}  // namespace
}  // namespace zym
