#include "zymcore/platform/objects/NSPersistentStoreCoordinator.h"

#include <utility>

#include "zymcore/platform/objects/internal/SQLiteStore.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NSException.h"

namespace zym {

NSPersistentStoreCoordinator::NSPersistentStoreCoordinator(
    std::shared_ptr<const NSManagedObjectModel> model)
    : model_(std::move(model)) {}

NSPersistentStoreCoordinator::~NSPersistentStoreCoordinator() = default;

std::optional<PlistDictionary> NSPersistentStoreCoordinator::metadataForPersistentStoreOfType_URL(
    std::string_view type, const std::filesystem::path& url, NSError* error) {
  if (type != NSSQLiteStoreType) {
    fail(error, NSCocoaErrorDomain, NSPersistentStoreInvalidTypeError,
         "A store of that type has no metadata.");
    return std::nullopt;
  }
  try {
    return SQLiteStore::metadataAt(url);
  } catch (const StoreFailure& failure) {
    if (error) *error = failure.error;
    return std::nullopt;
  }
}

bool NSPersistentStoreCoordinator::addPersistentStoreWithType_configuration_URL_options(
    std::string_view type, const std::optional<std::string>& configuration,
    const std::filesystem::path& url, const PlistDictionary& options, NSError* error) {
  if (store_) {
    throw NSException(NSInternalInconsistencyException, "the coordinator has its store already");
  }
  if (configuration || (type != NSSQLiteStoreType && type != NSInMemoryStoreType)) {
    return fail(error, NSCocoaErrorDomain, NSPersistentStoreInvalidTypeError,
                "There are no stores of that type or configuration.");
  }
  SQLiteStore::Options opening;
  opening.migrates = options.boolValue(NSMigratePersistentStoresAutomaticallyOption) &&
                     options.boolValue(NSInferMappingModelAutomaticallyOption);
  if (options.contains(NSPersistentStoreTimeoutOption)) {
    opening.secondsToWait = options.doubleValue(NSPersistentStoreTimeoutOption);
  }
  try {
    store_ = type == NSSQLiteStoreType ? SQLiteStore::open(url, model_, opening)
                                       : SQLiteStore::openInMemory(model_);
    return true;
  } catch (const StoreFailure& failure) {
    if (error) *error = failure.error;
    return false;
  }
}

bool NSPersistentStoreCoordinator::copyStoreToPath(const std::string& path, NSError* error) const {
  if (!store_) {
    return fail(error, NSCocoaErrorDomain, NSPersistentStoreOperationError, "There is no store.");
  }
  SQLiteDatabase& database = store_->writer();
  const std::lock_guard lock(database.mutex);
  try {
    database.endMoment();
    SQLiteStatement copy = database.statement("VACUUM INTO ?");
    copy.bind(1, std::string_view(path));
    copy.run();
    return true;
  } catch (const StoreFailure& failure) {
    if (error) *error = failure.error;
    return false;
  }
}

std::vector<std::string> NSPersistentStoreCoordinator::integrityProblems() const {
  std::vector<std::string> problems;
  if (!store_) return problems;
  SQLiteDatabase& database = store_->writer();
  const std::lock_guard lock(database.mutex);
  try {
    SQLiteStatement check = database.statement("PRAGMA integrity_check");
    while (check.step()) {
      if (check.text(0) != "ok") problems.emplace_back(check.text(0));
    }
  } catch (const StoreFailure& failure) {
    problems.push_back(failure.error.localizedDescription);
  }
  return problems;
}

}  // namespace zym
