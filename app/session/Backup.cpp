#include "app/session/Backup.h"

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "app/session/Store.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "zymcore/platform/host/FolderArchive.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/objects/NSPersistentStoreCoordinator.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* preferences = "Preferences.plist";
// Pictures come and go while others use the store.
constexpr int mostAttempts = 10;

/// A new folder beside a path, so that what is made there can take its place; gone with this.
class Workshop {
 public:
  explicit Workshop(const fs::path& beside) {
    std::string name = (fs::absolute(beside).parent_path() / ".zym-XXXXXX").string();
    if (!mkdtemp(name.data())) {
      throw InputError(label("'%1' is no folder to write into",
                             {printable(fs::absolute(beside).parent_path().string())}));
    }
    path_ = name;
  }
  ~Workshop() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  Workshop(const Workshop&) = delete;
  Workshop& operator=(const Workshop&) = delete;

  [[nodiscard]] const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

bool isOfProcesses(const std::string& name) {
  return name.ends_with(".lock") || name.starts_with(kDataManagerSQLiteName);
}

/// What lies in the data folder beside the store.
std::set<fs::path> filesBeside(const fs::path& folder) {
  std::set<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file() && !isOfProcesses(entry.path().filename().string())) {
      files.insert(fs::relative(entry.path(), folder));
    }
  }
  return files;
}

void copyFile(const fs::path& from, const fs::path& to) {
  fs::create_directories(to.parent_path());
  fs::copy_file(from, to, fs::copy_options::overwrite_existing);
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
  for (const fs::path& file : files) copyFile(data / file, folder / file);
  const fs::path settings = NSUserDefaults::standardUserDefaults().persistentFile();
  if (fs::exists(settings)) copyFile(settings, folder / preferences);
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
  std::error_code none;
  for (const auto& entry : fs::directory_iterator(folder, none)) {
    if (!entry.path().filename().string().ends_with(".lock")) {
      throw InputError(label("'%1' holds data already; another folder can be named with --into",
                             {printable(folder.string())}));
    }
  }
  fs::remove_all(folder);
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
  const fs::path target = folder.empty() ? fs::path(storePath()).parent_path() : fs::path(folder);
  const Workshop workshop(target);
  const fs::path found = workshop.path() / "data";
  fs::create_directories(found);
  NSError error;
  if (!FolderArchive::readPath_intoFolder(file, found.string(), &error)) {
    throw InputError(
        label("'%1' is no backup: %2", {printable(file), error.localizedFailureReason}));
  }
  try {
    checkStore(found);
    clear(target);
    NSFileManager::synchronizeFileSystemAtPath(found.string());
    fs::rename(found, target);
    const fs::path settings = NSUserDefaults::standardUserDefaults().persistentFile();
    const bool areElsewhere = folder.empty() && settings.parent_path() != target;
    if (areElsewhere && !fs::exists(settings) && fs::exists(target / preferences)) {
      copyFile(target / preferences, settings);
    }
  } catch (const InputError& reason) {
    throw InputError(printable(file) + ": " + reason.what());
  } catch (const fs::filesystem_error& fault) {
    throw InputError(printable(target.string()) + ": " + fault.code().message());
  }
}

}  // namespace zym::host
