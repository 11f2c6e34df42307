#include "zymcore/platform/objects/internal/SQLiteStore.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <utility>

#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/host/FileLock.h"
#include "zymcore/platform/objects/NSPersistentStoreCoordinator.h"
#include "zymcore/platform/text/NSUUID.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

[[noreturn]] void failWith(std::int64_t code, const std::string& description) {
  throw StoreFailure{{NSCocoaErrorDomain, code, description, {}, {}}};
}

[[noreturn]] void failWithErrno(const std::string& description) {
  const int reason = errno;
  const std::int64_t code =
      reason == EACCES || reason == EPERM || reason == EROFS    ? NSFileWriteNoPermissionError
      : reason == ENOSPC || reason == EDQUOT || reason == EFBIG ? NSFileWriteOutOfSpaceError
      : reason == ENOENT                                        ? NSFileReadNoSuchFileError
                                                                : NSFileWriteUnknownError;
  failWith(code, description + " (" + std::strerror(reason) + ").");
}

void sync(const std::filesystem::path& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) failWithErrno("\"" + path.string() + "\" can't be opened");
  if (::fsync(file.get()) != 0) {
    failWithErrno("\"" + path.string() + "\" can't be written to disk");
  }
}

std::filesystem::path folderOf(const std::filesystem::path& path) {
  return std::filesystem::absolute(path).parent_path();
}

/// Stores are opened, made and replaced in a folder by one process at a time. A file can't stand
/// for the lock, since the store's own file is what gets replaced.
void requireHeld(const FileLock& lock, const std::filesystem::path& path) {
  if (lock.state() == FileLock::State::NotOpened) {
    failWithErrno("\"" + folderOf(path).string() + "\" can't be opened");
  }
  if (lock.state() == FileLock::State::InUse) {
    failWith(NSPersistentStoreTimeoutError, "The store is being opened by another process.");
  }
}

std::filesystem::path beside(const std::filesystem::path& path, const char* suffix) {
  return path.string() + suffix;
}

void removeFile(const std::filesystem::path& path) {
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
}

// SQLite would take a file that lost all or nearly all its bytes for a new database.
void requireContent(const std::filesystem::path& path) {
  constexpr std::uintmax_t leastBytes = 512;
  std::error_code unknown;
  if (std::filesystem::file_size(path, unknown) < leastBytes && !unknown) {
    failWith(NSFileReadCorruptFileError, "The store's file is cut off.");
  }
}

std::string textOfMetadata(SQLiteDatabase& database, std::string_view key) {
  SQLiteStatement query = database.statement("SELECT value FROM _metadata WHERE key = ?");
  query.bind(1, key);
  if (!query.step()) failWith(NSFileReadCorruptFileError, "The store doesn't say what it holds.");
  return std::string(query.data(0).view());
}

void requireStore(SQLiteDatabase& database) {
  if (database.integer("PRAGMA application_id") != StoreSchema::applicationID) {
    failWith(NSPersistentStoreInvalidTypeError, "The file is another program's, and no store.");
  }
  if (database.integer("PRAGMA user_version") != StoreSchema::formatVersion) {
    failWith(NSPersistentStoreInvalidTypeError, "The store was written by another version.");
  }
}

// A file may claim a model and hold other tables than that model's.
void requireTables(SQLiteDatabase& database, const StoreSchema& schema) {
  std::map<std::string, std::string> found;
  SQLiteStatement query = database.statement(
      "SELECT name, sql FROM sqlite_schema WHERE substr(name, 1, 7) <> 'sqlite_'");
  while (query.step()) found.emplace(query.text(0), query.text(1));
  // An index holds nothing of its own: a file of before it was asked for gets it.
  constexpr std::string_view index = "CREATE INDEX ";
  std::string missing;
  for (const auto& [name, sql] : schema.statements()) {
    if (!sql.starts_with(index) || !found.emplace(name, sql).second) continue;
    missing += std::string(index) + "IF NOT EXISTS " + sql.substr(index.size()) + ";";
  }
  if (found != schema.statements()) {
    failWith(NSFileReadCorruptFileError, "The store's tables aren't those of its model.");
  }
  if (!missing.empty()) database.execute(missing);
}

std::unique_ptr<SQLiteDatabase> openWriter(const std::filesystem::path& path,
                                           double secondsToWait) {
  auto database =
      std::make_unique<SQLiteDatabase>(path, SQLiteDatabase::Access::ReadWrite, secondsToWait);
  database->execute("PRAGMA synchronous = FULL; PRAGMA cell_size_check = ON");
  return database;
}

}  // namespace

void createTables(SQLiteDatabase& database, const NSManagedObjectModel& model,
                  const StoreSchema& schema, const std::string& storeUUID) {
  for (const auto& [name, sql] : schema.statements()) database.execute(sql);
  NSError error;
  const auto description = BinaryPropertyList::write(model.propertyList(), &error);
  if (!description) throw StoreFailure{error};
  SQLiteStatement insert = database.statement("INSERT INTO _metadata(key, value) VALUES(?, ?)");
  for (const auto& [key, value] :
       {std::pair<std::string_view, std::string_view>{"model", *description},
        {"uuid", storeUUID}}) {
    const NSData data(value);
    insert.add(key);
    insert.add(data);
    insert.run();
  }
  database.execute("PRAGMA application_id = " + std::to_string(StoreSchema::applicationID));
  database.execute("PRAGMA user_version = " + std::to_string(StoreSchema::formatVersion));
}

std::shared_ptr<const NSManagedObjectModel> modelOfStore(SQLiteDatabase& database) {
  requireStore(database);
  const std::string bytes = textOfMetadata(database, "model");
  NSError error;
  const auto description = BinaryPropertyList::read(bytes, &error);
  const auto model = description && description->dictionary()
                         ? NSManagedObjectModel::initWithPropertyList(*description->dictionary())
                         : nullptr;
  if (!model) failWith(NSFileReadCorruptFileError, "The store's own model is damaged.");
  requireTables(database, StoreSchema(*model));
  return model;
}

std::string uuidOfStore(SQLiteDatabase& database) {
  return textOfMetadata(database, "uuid");
}

void replaceStore(const std::filesystem::path& path,
                  const std::function<void(SQLiteDatabase&)>& fill) {
  const std::filesystem::path fresh = beside(path, ".new");
  const std::filesystem::path journal = beside(fresh, "-journal");
  removeFile(fresh);
  removeFile(journal);
  try {
    {
      SQLiteDatabase database(fresh, SQLiteDatabase::Access::Create, 0);
      database.execute("PRAGMA synchronous = FULL");
      SQLiteTransaction transaction(database);
      fill(database);
      transaction.commit();
    }
    sync(fresh);
    std::error_code failed;
    std::filesystem::rename(fresh, path, failed);
    if (failed) {
      errno = failed.value();
      failWithErrno("The store can't be put in its place");
    }
  } catch (...) {
    removeFile(fresh);
    removeFile(journal);
    throw;
  }
  sync(folderOf(path));
}

SQLiteStore::SQLiteStore(std::shared_ptr<const NSManagedObjectModel> model,
                         std::unique_ptr<SQLiteDatabase> writer, std::filesystem::path path,
                         const Options& options)
    : model_(std::move(model)),
      schema_(*model_),
      writer_(std::move(writer)),
      path_(std::move(path)),
      options_(options) {}

std::unique_ptr<SQLiteDatabase> SQLiteStore::newReader() const {
  if (path_.empty()) return nullptr;
  return std::make_unique<SQLiteDatabase>(path_, SQLiteDatabase::Access::ReadOnly,
                                          options_.secondsToWait);
}

std::unique_ptr<SQLiteStore> SQLiteStore::open(const std::filesystem::path& path,
                                               std::shared_ptr<const NSManagedObjectModel> model,
                                               const Options& options) {
  const FileLock lock = FileLock::ofFolder(folderOf(path), options.secondsToWait);
  requireHeld(lock, path);
  removeFile(beside(path, ".new"));
  if (!std::filesystem::exists(path)) {
    // What SQLite left of a file that is gone would be taken for part of the new one.
    for (const char* suffix : {"-wal", "-shm", "-journal"}) removeFile(beside(path, suffix));
    replaceStore(path, [&](SQLiteDatabase& database) {
      createTables(database, *model, StoreSchema(*model), NSUUID::UUIDString());
    });
  }
  requireContent(path);

  std::unique_ptr<SQLiteDatabase> writer = openWriter(path, options.secondsToWait);
  const auto storedModel = modelOfStore(*writer);
  if (storedModel->entityVersionHashes() != model->entityVersionHashes()) {
    if (!options.migrates) {
      failWith(NSPersistentStoreIncompatibleVersionHashError,
               "The store was made for another version of the model.");
    }
    writer.reset();
    migrateStore(path, *storedModel, *model, options.secondsToWait);
    writer = openWriter(path, options.secondsToWait);
    (void)modelOfStore(*writer);
  }
  writer->execute("PRAGMA journal_mode = WAL");
  return std::unique_ptr<SQLiteStore>(
      new SQLiteStore(std::move(model), std::move(writer), path, options));
}

std::unique_ptr<SQLiteStore> SQLiteStore::openInMemory(
    std::shared_ptr<const NSManagedObjectModel> model) {
  auto database = std::make_unique<SQLiteDatabase>("", SQLiteDatabase::Access::Create, 0);
  createTables(*database, *model, StoreSchema(*model), NSUUID::UUIDString());
  return std::unique_ptr<SQLiteStore>(
      new SQLiteStore(std::move(model), std::move(database), {}, {}));
}

PlistDictionary SQLiteStore::metadataAt(const std::filesystem::path& path) {
  constexpr double secondsToWait = Options().secondsToWait;
  const FileLock lock = FileLock::ofFolder(folderOf(path), secondsToWait);
  requireHeld(lock, path);
  if (!std::filesystem::exists(path)) {
    failWith(NSFileReadNoSuchFileError, "There is no store at \"" + path.string() + "\".");
  }
  requireContent(path);
  SQLiteDatabase database(path, SQLiteDatabase::Access::ReadOnly, secondsToWait);
  const auto model = modelOfStore(database);
  return {{NSStoreTypeKey, NSSQLiteStoreType},
          {NSStoreUUIDKey, uuidOfStore(database)},
          {NSStoreModelVersionHashesKey, model->entityVersionHashes()},
          {NSStoreModelVersionIdentifiersKey, PlistArray{model->versionIdentifier()}}};
}

}  // namespace zym
