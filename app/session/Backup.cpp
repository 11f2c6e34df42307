#include "app/session/Backup.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "app/session/Store.h"
#include "app/session/Workshop.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "zymcore/platform/host/FolderArchive.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/objects/NSPersistentStoreCoordinator.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* preferences = "Preferences.plist";
// Pictures come and go while others use the store.
constexpr int mostAttempts = 10;

bool isOfProcesses(const std::string& name) {
  return name.ends_with(".lock") || name.starts_with(kDataManagerSQLiteName);
}

/// What lies in the data folder beside the store, and in no workshop.
std::set<fs::path> filesBeside(const fs::path& folder) {
  std::set<fs::path> files;
  for (auto at = fs::recursive_directory_iterator(folder); at != fs::recursive_directory_iterator();
       ++at) {
    const std::string name = at->path().filename().string();
    if (at->is_directory() && name.starts_with(Workshop::prefix)) {
      at.disable_recursion_pending();
    } else if (at->is_regular_file() && !isOfProcesses(name)) {
      files.insert(fs::relative(at->path(), folder));
    }
  }
  return files;
}

/// Answers whether it was still there.
bool copyFile(const fs::path& from, const fs::path& to) {
  fs::create_directories(to.parent_path());
  std::error_code fault;
  fs::copy_file(from, to, fs::copy_options::overwrite_existing, fault);
  if (fault && (fault != std::errc::no_such_file_or_directory || fs::exists(from))) {
    throw fs::filesystem_error("copy", from, to, fault);
  }
  return !fault;
}

/// Answers whether nothing came or went meanwhile.
bool collect(const fs::path& folder) {
  const fs::path data = fs::path(storePath()).parent_path();
  fs::remove_all(folder);
  fs::create_directories(folder);
  const std::set<fs::path> files = filesBeside(data);
  NSError error;
  const auto& coordinator = ZYMCoreDataModel::sharedInstance().persistentStoreCoordinator();
  if (!coordinator->copyStoreToPath((folder / kDataManagerSQLiteName).string(), &error)) {
    throw InputError(error.localizedDescription);
  }
  for (const fs::path& file : files) {
    if (!copyFile(data / file, folder / file)) return false;
  }
  copyFile(NSUserDefaults::standardUserDefaults().persistentFile(), folder / preferences);
  return filesBeside(data) == files;
}

void checkStore(const fs::path& folder) {
  const std::string path = (folder / kDataManagerSQLiteName).string();
  if (!NSFileManager::fileExistsAtPath(path)) throw InputError(label("there is no store in it"));
  NSPersistentStoreCoordinator coordinator(ZYMCoreDataModel::sharedInstance().objectModel());
  NSError error;
  const PlistDictionary options{{NSMigratePersistentStoresAutomaticallyOption, true},
                                {NSInferMappingModelAutomaticallyOption, true}};
  if (!coordinator.addPersistentStoreWithType_configuration_URL_options(
          NSSQLiteStoreType, std::nullopt, path, options, &error)) {
    throw InputError(error.localizedDescription);
  }
  if (!coordinator.integrityProblems().empty()) throw InputError(label("its store is damaged"));
}

/// Only what processes leave may be there, and it goes.
void clear(const fs::path& folder) {
  if (!fs::exists(folder)) return;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (!entry.path().filename().string().ends_with(".lock")) {
      throw InputError(label("'%1' holds data already; another folder can be named with --into",
                             {printable(folder.string())}));
    }
  }
  fs::remove_all(folder);
}

/// The folder that links lead to, without a slash at its end: what stands beside it is on the same
/// file system.
fs::path itself(const fs::path& folder) {
  const fs::path path = fs::weakly_canonical(fs::absolute(folder));
  return path.has_filename() ? path : path.parent_path();
}

// Whole or not at all, for it isn't overwritten the next time.
void bringSettings(const fs::path& from) {
  constexpr std::size_t mostBytes = 64U << 20U;
  const std::string settings = NSUserDefaults::standardUserDefaults().persistentFile();
  if (fs::exists(settings)) return;
  const auto bytes = NSFileManager::contentsAtPath(from.string(), mostBytes);
  if (!bytes) return;
  NSError error;
  if (!NSFileManager::createDirectoryAtPath(fs::path(settings).parent_path(), &error) ||
      !NSFileManager::writeData_toPath(*bytes, settings, &error)) {
    throw InputError(error.localizedDescription);
  }
}

void replace(const fs::path& target, const std::string& file, bool isDataFolder) {
  fs::create_directories(target.parent_path());
  const Workshop workshop(target);
  const fs::path found = workshop.path() / "data";
  fs::create_directories(found);
  NSError error;
  if (!FolderArchive::readPath_intoFolder(file, found.string(), &error)) {
    if (error.code == NSFileWriteOutOfSpaceError) {
      throw InputError(label("can't write '%1': %2",
                             {printable(target.string()), error.localizedFailureReason}));
    }
    throw InputError(
        label("'%1' is no backup: %2", {printable(file), error.localizedFailureReason}));
  }
  try {
    checkStore(found);
    NSFileManager::synchronizeFileSystemAtPath(found.string());
    // Whoever fills a new store holds the lock until it is there.
    ZYMCoreDataModel::Lock lock;
    if (isDataFolder && fs::exists(target)) {
      lock = ZYMCoreDataModel::sharedInstance().lockDataFolder();
    }
    clear(target);
    fs::rename(found, target);
    if (isDataFolder) bringSettings(target / preferences);
  } catch (const InputError& reason) {
    throw InputError(printable(file) + ": " + reason.what());
  }
}

}  // namespace

void backUp(const std::string& file) {
  const Workshop workshop(file);
  const fs::path folder = workshop.path() / "backup";
  try {
    for (int attempt = 1; !collect(folder); ++attempt) {
      if (attempt == mostAttempts) throw InputError(label("the pictures change all the time"));
    }
  } catch (const fs::filesystem_error& error) {
    throw InputError(error.code().message());
  }
  NSError error;
  if (!FolderArchive::writeFolder_toPath(folder.string(), file, &error)) {
    throw InputError(
        label("can't write '%1': %2", {printable(file), error.localizedFailureReason}));
  }
}

void restore(const std::string& file, const std::string& folder) {
  const std::string named = folder.empty() ? fs::path(storePath()).parent_path().string() : folder;
  try {
    replace(itself(named), file, folder.empty());
  } catch (const fs::filesystem_error& fault) {
    throw InputError(printable(named) + ": " + fault.code().message());
  }
}

}  // namespace zym::host
