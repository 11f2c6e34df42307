#pragma once

#include "tests/support/Json.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Test.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"

namespace zym {

// A library of books, in which every kind of attribute and relationship occurs.

namespace key {
inline constexpr KeyName uuid{"uuid"};
inline constexpr KeyName name{"name"};
inline constexpr KeyName rank{"rank"};
inline constexpr KeyName price{"price"};
inline constexpr KeyName born{"born"};
inline constexpr KeyName stamp{"stamp"};
inline constexpr KeyName text{"text"};
inline constexpr KeyName books{"books"};
inline constexpr KeyName author{"author"};
inline constexpr KeyName tags{"tags"};
inline constexpr KeyName cover{"cover"};
inline constexpr KeyName book{"book"};
}  // namespace key

inline PlistDictionary relationship(const char* destination, const char* inverse, bool toMany,
                                    const char* deleteRule = "nullify") {
  return {{KeyName("destination"), destination},
          {KeyName("inverse"), inverse},
          {KeyName("toMany"), toMany},
          {KeyName("deleteRule"), deleteRule}};
}

inline PlistDictionary libraryDescription() {
  return R"({"version": "1", "entities": {
      "Author": {
        "attributes": {"uuid": "string", "name": "string", "rank": "integer", "price": "real",
                       "born": "date", "stamp": "data", "text": "document"},
        "relationships": {"books": {"destination": "Book", "inverse": "author", "toMany": true,
                                    "deleteRule": "cascade"}}},
      "Book": {
        "attributes": {"uuid": "string", "name": "string", "rank": "integer", "text": "document"},
        "relationships": {
          "author": {"destination": "Author", "inverse": "books", "toMany": false},
          "tags": {"destination": "Tag", "inverse": "books", "toMany": true},
          "cover": {"destination": "Cover", "inverse": "book", "toMany": false,
                    "deleteRule": "cascade"}}},
      "Tag": {
        "attributes": {"uuid": "string", "name": "string"},
        "relationships": {"books": {"destination": "Book", "inverse": "tags", "toMany": true}}},
      "Cover": {
        "attributes": {"uuid": "string", "name": "string"},
        "relationships": {"book": {"destination": "Book", "inverse": "cover", "toMany": false}}}
      }})"_json;
}

/// The description with one thing replaced by another or removed, at the end of a path of keys.
inline PlistDictionary changedDescription(PlistDictionary description,
                                          std::initializer_list<const char*> path,
                                          std::optional<PlistValue> value) {
  PlistDictionary* at = &description;
  for (const char* const* key = path.begin(); key + 1 != path.end(); ++key) {
    at = at->editDictionary(KeyName(*key));
  }
  at->setOrRemove(KeyName(*(path.end() - 1)), value ? &*value : nullptr);
  return description;
}

/// A model whose description is a mistake ends the test.
inline std::shared_ptr<NSManagedObjectModel> modelFrom(const PlistDictionary& description) {
  NSError error;
  auto model = NSManagedObjectModel::initWithPropertyList(description, &error);
  if (!model) throw std::runtime_error(error.localizedDescription);
  return model;
}

inline PlistDictionary migrating() {
  return {{NSMigratePersistentStoresAutomaticallyOption, true},
          {NSInferMappingModelAutomaticallyOption, true}};
}

/// The coordinator with its store open; null, with the error, when it can't be opened.
inline std::shared_ptr<NSPersistentStoreCoordinator> openStore(
    const std::string& path, std::shared_ptr<const NSManagedObjectModel> model,
    const PlistDictionary& options = {}, NSError* error = nullptr) {
  auto coordinator = std::make_shared<NSPersistentStoreCoordinator>(std::move(model));
  const bool isOpen = coordinator->addPersistentStoreWithType_configuration_URL_options(
      NSSQLiteStoreType, std::nullopt, path, options, error);
  return isOpen ? coordinator : nullptr;
}

/// The code of the error with which the store can't be opened, or 0.
inline std::int64_t refusalOf(const std::string& path, const PlistDictionary& options = {},
                              const PlistDictionary& description = libraryDescription()) {
  NSError error;
  if (openStore(path, modelFrom(description), options, &error)) return 0;
  return error.domain == NSCocoaErrorDomain && !error.localizedDescription.empty() ? error.code
                                                                                   : -1;
}

inline std::shared_ptr<NSPersistentStoreCoordinator> openLibrary(const std::string& path) {
  NSError error;
  auto coordinator = openStore(path, modelFrom(libraryDescription()), {}, &error);
  if (!coordinator) throw std::runtime_error(error.localizedDescription);
  return coordinator;
}

inline std::unique_ptr<NSManagedObjectContext> contextOn(
    std::shared_ptr<NSPersistentStoreCoordinator> coordinator,
    NSManagedObjectContextConcurrencyType type = NSMainQueueConcurrencyType) {
  auto context = std::make_unique<NSManagedObjectContext>(type);
  context->setPersistentStoreCoordinator(std::move(coordinator));
  if (context->undoManager()) context->undoManager()->setGroupsByEvent(false);
  return context;
}

inline NSFetchRequest request(const char* entityName) {
  return NSFetchRequest::fetchRequestWithEntityName(entityName);
}

inline NSFetchRequest request(const char* entityName, NSPredicate predicate) {
  NSFetchRequest result = request(entityName);
  result.setPredicate(std::move(predicate));
  return result;
}

inline std::string nameOf(const NSManagedObject& object) {
  const std::string* const name = object.stringForKey(key::name);
  return name ? *name : "-";
}

inline std::vector<std::string> namesOf(const std::vector<NSManagedObject*>& objects) {
  std::vector<std::string> names;
  for (const NSManagedObject* const object : objects) names.push_back(nameOf(*object));
  return names;
}

/// A main-queue context on a library in a folder of its own, each change a group for undo.
class LibraryTest : public testing::Test {
 protected:
  void SetUp() override { reopen(); }

  void reopen() {
    context.reset();
    coordinator.reset();
    coordinator = openLibrary(path());
    context = contextOn(coordinator);
  }
  [[nodiscard]] std::string path() const { return folder / "library.sqlite"; }

  template <class Work>
  void group(Work work) {
    context->undoManager()->beginUndoGrouping();
    work();
    context->undoManager()->endUndoGrouping();
  }
  NSManagedObject* insert(const char* entityName, const char* name) {
    NSManagedObject* object = nullptr;
    group([&] {
      object = context->insertNewObjectForEntityForName(entityName);
      object->setValue_forKey(PlistValue(name), key::name);
    });
    return object;
  }
  void save() {
    NSError error;
    ASSERT_TRUE(context->save(&error)) << error.localizedDescription;
  }
  [[nodiscard]] std::vector<NSManagedObject*> fetch(const NSFetchRequest& wanted) {
    NSError error;
    const auto found = context->executeFetchRequest(wanted, &error);
    EXPECT_TRUE(found) << error.localizedDescription;
    return found.value_or(std::vector<NSManagedObject*>());
  }
  [[nodiscard]] NSManagedObject* named(const char* entityName, const char* name) {
    const auto found = fetch(request(entityName, NSPredicate::equal(key::name, name)));
    return found.size() == 1 ? found.front() : nullptr;
  }
  NSUndoManager& undo() { return *context->undoManager(); }

  using Names = std::vector<std::string>;
  TemporaryFolder folder;
  std::shared_ptr<NSPersistentStoreCoordinator> coordinator;
  std::unique_ptr<NSManagedObjectContext> context;
};

}  // namespace zym
