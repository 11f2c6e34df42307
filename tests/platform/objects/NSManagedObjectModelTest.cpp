#include "tests/platform/objects/LibraryStore.h"
#include "tests/support/Test.h"
#include "zymcore/platform/objects/NSManagedObjectModel.h"

namespace zym {
namespace {

constexpr KeyName entities{"entities"};

PlistDictionary changed(std::initializer_list<const char*> path, std::optional<PlistValue> value) {
  return changedDescription(libraryDescription(), path, std::move(value));
}

TEST(NSManagedObjectModelTest, IsNothingWithoutAReadableResource) {
  const TemporaryFolder folder;
  for (const char* const bytes : {"", "nothing", "bplist00", "<plist><array/></plist>"}) {
    putFile(folder / "model", bytes);
    NSError error;
    EXPECT_FALSE(NSManagedObjectModel::initWithContentsOfURL(folder / "model", &error)) << bytes;
    EXPECT_FALSE(error.localizedDescription.empty());
  }
  EXPECT_FALSE(NSManagedObjectModel::initWithContentsOfURL(folder / "none"));
}

TEST(NSManagedObjectModelTest, RefusesWhatIsNoModel) {
  PlistDictionary many;
  for (int i = 0; i < 65; ++i) many.set(KeyName("a" + std::to_string(i)), "string");
  const PlistDictionary cases[] = {
      {},
      {{entities, PlistDictionary()}},
      {{entities, PlistDictionary{{KeyName("Book"), "text"}}}},
      changed({"entities", "Book", "attributes"}, PlistArray()),
      changed({"entities", "Book", "attributes", "name"}, "unknown"),
      changed({"entities", "Book", "attributes", "NAME"}, "string"),
      changed({"entities", "Book", "attributes", "tags"}, "string"),
      changed({"entities", "Book", "attributes", ""}, "string"),
      changed({"entities", "Book", "attributes", "a\"b"}, "string"),
      changed({"entities", "Book", "attributes", "\u00e4"}, "string"),
      changed({"entities", "Book", "attributes"}, many),
      changed({"entities", "Sqlite_Book"}, PlistDictionary()),
      changed({"entities", "BOOK"}, PlistDictionary()),
      changed({"entities", "Tag"}, std::nullopt),
      changed({"entities", "Book", "relationships", "tags"}, std::nullopt),
      changed({"entities", "Book", "relationships", "tags", "destination"}, "Cover"),
      changed({"entities", "Book", "relationships", "tags", "inverse"}, std::nullopt),
      changed({"entities", "Book", "relationships", "tags", "deleteRule"}, "deny"),
      changed({"entities", "Cover", "relationships", "self"}, relationship("Cover", "self", false)),
  };
  int number = 0;
  for (const PlistDictionary& description : cases) {
    SCOPED_TRACE(number++);
    NSError error;
    EXPECT_FALSE(NSManagedObjectModel::initWithPropertyList(description, &error));
    EXPECT_FALSE(error.localizedDescription.empty());
  }
}

TEST(NSManagedObjectModelTest, IsCompatibleWithStoresOfTheSameEntities) {
  const TemporaryFolder folder;
  const std::string path = folder / "library.sqlite";
  openLibrary(path);
  NSError error;
  const auto metadata = NSPersistentStoreCoordinator::metadataForPersistentStoreOfType_URL(
      NSSQLiteStoreType, path, &error);
  ASSERT_TRUE(metadata) << error.localizedDescription;
  EXPECT_EQ(metadata->stringValue(NSStoreTypeKey), NSSQLiteStoreType);
  EXPECT_EQ(metadata->stringValue(NSStoreUUIDKey).size(), 36U);
  const auto isCompatible = [&](const PlistDictionary& description) {
    return modelFrom(description)
        ->isConfiguration_compatibleWithStoreMetadata(std::nullopt, metadata);
  };
  EXPECT_TRUE(isCompatible(changed({"version"}, "2")));
  EXPECT_TRUE(isCompatible(
      changed({"entities", "Book", "relationships", "tags", "deleteRule"}, "cascade")));
  EXPECT_FALSE(isCompatible(changed({"entities", "More"}, PlistDictionary())));
  EXPECT_FALSE(isCompatible(changed({"entities", "Book", "attributes", "name"}, "data")));
  const auto model = modelFrom(libraryDescription());
  EXPECT_FALSE(model->isConfiguration_compatibleWithStoreMetadata(std::nullopt, std::nullopt));
  EXPECT_FALSE(model->isConfiguration_compatibleWithStoreMetadata("other", metadata));
}

}  // namespace
}  // namespace zym
