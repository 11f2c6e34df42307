#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/store/Resources.h"
#include "zymcore/store/ZYMCachingModel.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMLibraryRegistry.h"

namespace zym {
namespace {

using Library = ZYMLibraryRegistry::Library;

constexpr KeyName Version{"Version"};

// A file that is missing has neither records nor a version: the library then counts as not
// installed.
void install(const Library& row, const PlistDictionary& file) {
  const PlistValue* records = file.find(KeyName(row.seed));
  if (records && records->dictionary()) {
    row.sharedInstance().addItemsFromDictionary(*records->dictionary());
  }
  if (records && records->array()) row.sharedInstance().addItemsFromArray(*records->array());

  NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
  if (const PlistValue* version = file.find(Version)) {
    defaults.setObject_forKey(*version, row.installedVersion);
  } else {
    defaults.removeObjectForKey(row.installedVersion);
  }
}

bool isInstalled(const Library& row, const PlistDictionary& file) {
  const std::optional<std::string> installed =
      NSUserDefaults::standardUserDefaults().stringForKey(row.installedVersion);
  const std::string* version = file.string(Version);
  return installed && version && *installed == *version;
}

}  // namespace

void ZYMCoreDataModel::installInitialState() {
  const Lock lock = lockDataFolder();
  for (const Library& row : ZYMLibraryRegistry::sharedInstance().libraries()) {
    install(row, resourceDictionary(row.seed).value_or(PlistDictionary()));
  }
  NSUserDefaults::standardUserDefaults().synchronize();
  NSNotificationCenter::defaultCenter().postNotificationName_object(
      CoreDataModelReloadNowNotification, this);
}

void ZYMCoreDataModel::checkVersionsAndUpdateIfNecessary() {
  // What another process has installed meanwhile is read with its version.
  const Lock lock = lockDataFolder();
  NSUserDefaults::standardUserDefaults().synchronize();
  bool changed = false;
  for (const Library& row : ZYMLibraryRegistry::sharedInstance().libraries()) {
    const PlistDictionary file = resourceDictionary(row.seed).value_or(PlistDictionary());
    if (isInstalled(row, file)) continue;
    install(row, file);
    changed = true;
  }
  NSUserDefaults::standardUserDefaults().synchronize();
  if (changed) {
    NSNotificationCenter::defaultCenter().postNotificationName_object(
        CoreDataModelReloadNowNotification, this);
  }
}

}  // namespace zym
