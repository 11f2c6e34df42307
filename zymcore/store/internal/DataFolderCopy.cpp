#include "zymcore/store/internal/DataFolderCopy.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {
namespace {

// The last saves may stand only in the log beside the store.
const std::string store = kDataManagerSQLiteName;
const std::string logOfStore = store + "-wal";
// Made anew by whoever opens the store.
const std::string indexOfLog = store + "-shm";
// What is copied gathers here first, since a name must not show half of what it stands for.
const std::string incoming = ".Wortmeister.incoming";

std::vector<std::string> namesIn(const std::string& folder) {
  return NSFileManager::contentsOfDirectoryAtPath(folder).value_or(std::vector<std::string>());
}

bool isOfStore(const std::string& name) {
  return name == store || name == logOfStore;
}

/// Copies a file, or a folder file by file, so that one that can't be copied costs none but itself.
/// Answers the first reason for which something was left out.
std::optional<NSError> copyEach(const std::string& from, const std::string& to) {
  NSError reason;
  std::error_code none;
  if (std::filesystem::symlink_status(from, none).type() != std::filesystem::file_type::directory) {
    if (NSFileManager::copyItemAtPath_toPath(from, to, &reason)) return std::nullopt;
    NSLog("Left out of the copy: " + reason.localizedDescription);
    return reason;
  }
  if (!NSFileManager::createDirectoryAtPath(to, &reason)) return reason;
  std::optional<NSError> first;
  for (const std::string& name : namesIn(from)) {
    const auto left = copyEach(from + "/" + name, to + "/" + name);
    if (left && (!first || left->code == NSFileWriteOutOfSpaceError)) first = left;
  }
  return first;
}

bool gather(const std::string& from, const std::string& to, NSError* error) {
  NSFileManager::removeItemAtPath(to);
  if (!NSFileManager::createDirectoryAtPath(to, error)) return false;
  for (const std::string& name : namesIn(from)) {
    if (name == indexOfLog || name == incoming) continue;
    const auto left = copyEach(from + "/" + name, to + "/" + name);
    if (!left || (!isOfStore(name) && left->code != NSFileWriteOutOfSpaceError)) continue;
    if (error) *error = *left;
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
