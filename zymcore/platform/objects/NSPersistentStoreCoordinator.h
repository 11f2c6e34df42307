#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/platform/objects/NSManagedObjectModel.h"
#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

class SQLiteStore;

inline constexpr const char* NSSQLiteStoreType = "SQLite";
/// A store that is gone with its coordinator.
inline constexpr const char* NSInMemoryStoreType = "InMemory";

// Options of a store.
inline constexpr KeyName NSMigratePersistentStoresAutomaticallyOption{
    "NSMigratePersistentStoresAutomaticallyOption"};
inline constexpr KeyName NSInferMappingModelAutomaticallyOption{
    "NSInferMappingModelAutomaticallyOption"};
/// For how many seconds to wait for another process that holds the store; 5 when not given.
inline constexpr KeyName NSPersistentStoreTimeoutOption{"NSPersistentStoreTimeoutOption"};

// Metadata of a store.
inline constexpr KeyName NSStoreTypeKey{"NSStoreType"};
inline constexpr KeyName NSStoreUUIDKey{"NSStoreUUID"};
inline constexpr KeyName NSStoreModelVersionHashesKey{"NSStoreModelVersionHashes"};
inline constexpr KeyName NSStoreModelVersionIdentifiersKey{"NSStoreModelVersionIdentifiers"};

/// Holds the one store that contexts work on.
///
/// The store is one SQLite database. A save that returned is on disk. Nothing that is found wrong
/// with a file is repaired here: it is answered as an error, and the file stays as it was.
class NSPersistentStoreCoordinator {
 public:
  explicit NSPersistentStoreCoordinator(std::shared_ptr<const NSManagedObjectModel> model);
  ~NSPersistentStoreCoordinator();
  NSPersistentStoreCoordinator(const NSPersistentStoreCoordinator&) = delete;
  NSPersistentStoreCoordinator& operator=(const NSPersistentStoreCoordinator&) = delete;

  /// What the store says of itself. Absent, with an error, when there is no file, or it is no store
  /// of that type.
  [[nodiscard]] static std::optional<PlistDictionary> metadataForPersistentStoreOfType_URL(
      std::string_view type, const std::filesystem::path& url, NSError* error = nullptr);

  /// Opens the store there, or makes an empty one when there is no file. `configuration` is absent.
  ///
  /// A store of another model is an error, unless both migration options are true: then it is
  /// copied into the new form, and the copy takes its place when it is whole. What the model has no
  /// longer is dropped, what is new is empty, everything else is kept; a change that would lose or
  /// reinterpret a value (another kind of attribute, a relationship that can hold less) is an
  /// error.
  ///
  /// Answers whether it worked. Throws `NSInternalInconsistencyException` when there is a store
  /// already.
  bool addPersistentStoreWithType_configuration_URL_options(
      std::string_view type, const std::optional<std::string>& configuration,
      const std::filesystem::path& url, const PlistDictionary& options, NSError* error = nullptr);

  /// What is wrong with the file of the store, in words; nothing when it is sound. Reads all of it.
  [[nodiscard]] std::vector<std::string> integrityProblems() const;

  /// Writes the store as it stands at one moment into a new file, while others use it.
  bool copyStoreToPath(const std::string& path, NSError* error = nullptr) const;

  [[nodiscard]] const NSManagedObjectModel& managedObjectModel() const noexcept { return *model_; }
  /// Null before one was added.
  [[nodiscard]] SQLiteStore* store() const noexcept { return store_.get(); }

 private:
  std::shared_ptr<const NSManagedObjectModel> model_;
  std::unique_ptr<SQLiteStore> store_;
};

}  // namespace zym
