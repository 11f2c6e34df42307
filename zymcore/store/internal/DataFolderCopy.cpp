#include "zymcore/store/internal/DataFolderCopy.h"

#include <optional>
#include <string_view>
#include <vector>

#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {
namespace {

// The last saves may stand only in the log beside the store.
const std::string store = kDataManagerSQLiteName;
const std::string logOfStore = store + "-wal";
// Made anew by whoever opens the store.
const std::string indexOfLog = store + "-shm";
// What is copied gathers here first, since a name must not show half of what it stands for.
const std::string incoming = ".incoming";

std::vector<std::string> namesIn(const std::string& folder) {
  return NSFileManager::contentsOfDirectoryAtPath(folder).value_or(std::vector<std::string>());
}

bool isOfStore(const std::string& name) {
  return name == store || name == logOfStore;
}

bool gather(const std::string& from, const std::string& to, NSError* error) {
  NSFileManager::removeItemAtPath(to);
  if (!NSFileManager::createDirectoryAtPath(to, error)) return false;
  for (const std::string& name : namesIn(from)) {
    if (name == indexOfLog || name == incoming) continue;
    NSError reason;
    if (NSFileManager::copyItemAtPath_toPath(from + "/" + name, to + "/" + name, &reason)) continue;
    if (!isOfStore(name) && reason.code != NSFileWriteOutOfSpaceError) continue;
    if (error) *error = reason;
    return false;
  }
  return NSFileManager::synchronizeFileSystemAtPath(to, error);
}

bool settle(const std::string& from, const std::string& to, NSError* error) {
  for (const std::string& name : namesIn(from)) {
    if (!isOfStore(name)) NSFileManager::moveItemAtPath_toPath(from + "/" + name, to + "/" + name);
  }
  // A log without its store is what an earlier copy left.
  NSFileManager::removeItemAtPath(to + "/" + logOfStore);
  if (NSFileManager::fileExistsAtPath(from + "/" + logOfStore) &&
      !NSFileManager::moveItemAtPath_toPath(from + "/" + logOfStore, to + "/" + logOfStore,
                                            error)) {
    return false;
  }
  return NSFileManager::synchronizeFileSystemAtPath(to, error) &&
         NSFileManager::moveItemAtPath_toPath(from + "/" + store, to + "/" + store, error) &&
         NSFileManager::synchronizeFileSystemAtPath(to, error);
}

}  // namespace

bool copyDataFolder(const std::string& from, const std::string& to, NSError* error) {
  const std::string place = to + "/" + incoming;
  const bool copied = gather(from, place, error) && settle(place, to, error);
  removeRemainsOfCopy(to);
  return copied;
}

void removeRemainsOfCopy(const std::string& to) {
  NSFileManager::removeItemAtPath(to + "/" + incoming);
}

}  // namespace zym
