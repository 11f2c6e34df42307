#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

#include "zymcore/platform/objects/NSManagedObjectModel.h"
#include "zymcore/platform/objects/internal/SQLiteDatabase.h"
#include "zymcore/platform/objects/internal/StoreSchema.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// A store of one model in one SQLite file. Every operation throws `StoreFailure`.
class SQLiteStore {
 public:
  struct Options {
    bool migrates = false;
    double secondsToWait = 5;
  };

  /// Opens the store, migrates it where that is needed and allowed, or makes a new one.
  [[nodiscard]] static std::unique_ptr<SQLiteStore> open(
      const std::filesystem::path& path, std::shared_ptr<const NSManagedObjectModel> model,
      const Options& options);
  [[nodiscard]] static std::unique_ptr<SQLiteStore> openInMemory(
      std::shared_ptr<const NSManagedObjectModel> model);
  [[nodiscard]] static PlistDictionary metadataAt(const std::filesystem::path& path);

  [[nodiscard]] const NSManagedObjectModel& model() const noexcept { return *model_; }
  [[nodiscard]] const StoreSchema& schema() const noexcept { return schema_; }
  /// The connection that writes.
  [[nodiscard]] SQLiteDatabase& writer() noexcept { return *writer_; }
  /// A further connection that only reads; null for a store in memory, which has but one.
  [[nodiscard]] std::unique_ptr<SQLiteDatabase> newReader() const;

  /// How often any context saved through this, which SQLite doesn't tell those that share its
  /// connection.
  [[nodiscard]] std::atomic<std::uint64_t>& saves() noexcept { return saves_; }

 private:
  SQLiteStore(std::shared_ptr<const NSManagedObjectModel> model,
              std::unique_ptr<SQLiteDatabase> writer, std::filesystem::path path,
              const Options& options);

  std::shared_ptr<const NSManagedObjectModel> model_;
  StoreSchema schema_;
  std::unique_ptr<SQLiteDatabase> writer_;
  std::filesystem::path path_;
  Options options_;
  std::atomic<std::uint64_t> saves_{0};
};

// What opening and migrating share.

/// Makes the tables of the model in an empty database.
void createTables(SQLiteDatabase& database, const NSManagedObjectModel& model,
                  const StoreSchema& schema, const std::string& storeUUID);

/// The model that the store was made for. Throws unless it is a store and has exactly that model's
/// tables.
[[nodiscard]] std::shared_ptr<const NSManagedObjectModel> modelOfStore(SQLiteDatabase& database);
[[nodiscard]] std::string uuidOfStore(SQLiteDatabase& database);

/// Replaces the store by one of the other model. The caller has locked its folder.
void migrateStore(const std::filesystem::path& path, const NSManagedObjectModel& from,
                  const NSManagedObjectModel& to, double secondsToWait);

/// Makes a file beside the store from nothing, by `fill`, and puts it in the store's place when all
/// of it is on disk. The caller has locked the folder.
void replaceStore(const std::filesystem::path& path,
                  const std::function<void(SQLiteDatabase&)>& fill);

}  // namespace zym
