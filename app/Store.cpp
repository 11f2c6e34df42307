#include "app/Store.h"

#include <iostream>

#include "app/Defaults.h"
#include "app/Faults.h"
#include "app/LibraryKind.h"
#include "zymcore/platform/NSCocoaErrors.h"
#include "zymcore/platform/NSFileManager.h"
#include "zymcore/platform/NSPersistentStoreCoordinator.h"
#include "zymcore/platform/NSUserDefaults.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym::host {
namespace {

/// Application data, where the store belongs on this system.
constexpr std::uint64_t applicationSupport = 1;

ZYMCoreDataModel& model() {
  return ZYMCoreDataModel::sharedInstance();
}

// The library ends the process over a store that it can't read. The program says so instead.
void requireReadableStore() {
  NSError error;
  const auto metadata = NSPersistentStoreCoordinator::metadataForPersistentStoreOfType_URL(
      NSSQLiteStoreType, storePath(), &error);
  if (!metadata && NSFileManager::fileExistsAtPath(storePath())) {
    throw InputError(storePath() + ": " + error.localizedDescription);
  }
}

}  // namespace

void useDataFolder(const std::string& folder) {
  model().setDataStorage(applicationSupport);
  if (!folder.empty()) {
    NSError error;
    if (!NSFileManager::createDirectoryAtPath(folder, &error)) {
      throw InputError(folder + ": " + error.localizedDescription);
    }
    model().setDataFolder(folder);
    NSUserDefaults::standardUserDefaults().setPersistentFile(folder + "/Preferences.plist");
  }
  useKeptLocale();
}

std::string storePath() {
  return model().newV2Path() + "/" + kDataManagerSQLiteName;
}

void openStore() {
  requireReadableStore();
  (void)model().mainObjectContext();
  if (!model().firstRun()) {
    model().checkVersionsAndUpdateIfNecessary();
    return;
  }
  model().installInitialState();
  std::size_t records = 0;
  for (const LibraryKind& kind : libraryKinds()) {
    if (kind.library) records += kind.library().allItems().size();
  }
  std::cerr << "zym: made a new store with " << records << " records in " << model().newV2Path()
            << '\n';
}

}  // namespace zym::host
