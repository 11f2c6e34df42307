#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/store/Resources.h"
#include "zymcore/store/ZYMCachingModel.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMLibraryRegistry.h"

namespace zym {
namespace {

constexpr KeyName Version{"Version"};

// The seed files of the host, in the order in which they are read.
struct Seed {
  std::string_view resource;  // also the key of its records
  std::string_view entity;
  KeyName installedVersion;  // user default
};
constexpr Seed seeds[] = {
    {"Fermentables", "ZYMFermentableEntity", KeyName{"FermentablesVersion"}},
    {"Hops", "ZYMHopEntity", KeyName{"HopsVersion"}},
    {"OtherIngredients", "ZYMOtherIngredientEntity", KeyName{"OtherIngredientsVersion"}},
    {"Yeasts", "ZYMYeastEntity", KeyName{"YeastsVersion"}},
    {"Mash Schedules", "ZYMMashScheduleEntity", KeyName{"MashSchedulesVersion"}},
    {"Profiles", "ZYMProfileEntity", KeyName{"ProfilesVersion"}},
    {"Waters", "ZYMWaterEntity", KeyName{"WatersVersion"}},
    {"Retailers", "ZYMSupplierEntity", KeyName{"RetailersVersion"}},
};

// A file that is missing has neither records nor a version: the library then counts as not
// installed.
void install(const Seed& seed, const PlistDictionary& file) {
  ZYMCachingModel* library = ZYMLibraryRegistry::sharedInstance().libraryOfEntity(seed.entity);
  const PlistValue* records = file.find(KeyName(seed.resource));
  if (library && records && records->dictionary()) {
    library->addItemsFromDictionary(*records->dictionary());
  }
  if (library && records && records->array()) library->addItemsFromArray(*records->array());

  NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
  if (const PlistValue* version = file.find(Version)) {
    defaults.setObject_forKey(*version, seed.installedVersion);
  } else {
    defaults.removeObjectForKey(seed.installedVersion);
  }
}

bool isInstalled(const Seed& seed, const PlistDictionary& file) {
  const std::optional<std::string> installed =
      NSUserDefaults::standardUserDefaults().stringForKey(seed.installedVersion);
  const std::string* version = file.string(Version);
  return installed && version && *installed == *version;
}

}  // namespace

void ZYMCoreDataModel::installInitialState() {
  for (const Seed& seed : seeds) {
    install(seed, resourceDictionary(seed.resource).value_or(PlistDictionary()));
  }
  NSUserDefaults::standardUserDefaults().synchronize();
  NSNotificationCenter::defaultCenter().postNotificationName_object(
      CoreDataModelReloadNowNotification, this);
}

void ZYMCoreDataModel::checkVersionsAndUpdateIfNecessary() {
  bool changed = false;
  for (const Seed& seed : seeds) {
    const PlistDictionary file = resourceDictionary(seed.resource).value_or(PlistDictionary());
    if (isInstalled(seed, file)) continue;
    install(seed, file);
    changed = true;
  }
  NSUserDefaults::standardUserDefaults().synchronize();
  if (changed) {
    NSNotificationCenter::defaultCenter().postNotificationName_object(
        CoreDataModelReloadNowNotification, this);
  }
}

}  // namespace zym
