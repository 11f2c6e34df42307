#include "app/session/Store.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <utility>

#include "app/session/Defaults.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Words.h"
#include "app/values/LibraryKind.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/objects/NSPersistentStoreCoordinator.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym::host {
namespace {

/// Application data, where the store belongs on this system.
constexpr std::uint64_t applicationSupport = 1;

ZYMCoreDataModel& model() {
  return ZYMCoreDataModel::sharedInstance();
}

bool isOpen = false;

/// A folder that goes with the process.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "zymXXXXXX").string();
    if (!mkdtemp(name.data()))
      throw InputError(label("%1: no temporary folder can be made", {name}));
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

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
  passOverImpossibleDefaults();
  useKeptLocale();
}

std::string storePath() {
  return model().newV2Path() + "/" + kDataManagerSQLiteName;
}

void openStore() {
  if (std::exchange(isOpen, true)) return;
  // The library ends the process over a store that it can't read. The program says so instead.
  model().setFailureHandler([](const NSError& error) {
    isOpen = false;
    throw InputError(storePath() + ": " + error.localizedDescription);
  });
  const ZYMCoreDataModel::Lock lock = model().lockDataFolder();
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
  std::cerr << "zym: "
            << label("made a new store with %1 records in %2",
                     {std::to_string(records), model().newV2Path()})
            << '\n';
}

void openTemporaryStore() {
  if (std::exchange(isOpen, true)) return;
  static const TemporaryFolder folder;
  NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
  const std::filesystem::path kept = folder.path() / "Preferences.plist";
  std::error_code ignored;
  std::filesystem::copy_file(defaults.persistentFile(), kept, ignored);
  defaults.setPersistentFile(kept);
  model().setDataFolder(folder.path());
  (void)model().mainObjectContext();
  model().installInitialState();
}

}  // namespace zym::host
