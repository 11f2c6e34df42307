#include "zymcore/store/ZYMCoreDataModel.h"

#include <cstdlib>
#include <exception>
#include <mutex>
#include <utility>

#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/platform/host/FileLock.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/host/NSSearchPath.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/platform/values/ProcessTearDown.h"
#include "zymcore/store/internal/DataFolderCopy.h"
#include "zymcore/store/internal/EntityClasses.h"

namespace zym {
namespace {

std::string documentsFolder() {
  return NSSearchPathForDirectory(NSSearchPathDirectory::DocumentDirectory);
}

std::string made(const std::string& folder) {
  NSFileManager::createDirectoryAtPath(folder);
  return folder;
}

constexpr const char* lockName = ".Wortmeister.lock";
// Filling a store takes seconds. Whoever holds the lock for longer is stopped or broken.
constexpr double secondsToWaitForLock = 120;

TearDownPlace placeAmongServices(&ZYMCoreDataModel::tearDown);

// Stands the store's external data aside while the store is migrated. It is looked for in
// Documents, wherever the store is.
class ExternalDataAside {
 public:
  ExternalDataAside() {
    if (NSFileManager::fileExistsAtPath(external_)) {
      NSFileManager::moveItemAtPath_toPath(external_, holding_);
    }
  }
  void putBack() {
    NSFileManager::removeItemAtPath(external_);
    NSFileManager::moveItemAtPath_toPath(holding_, external_);
  }

 private:
  std::string external_ = documentsFolder() + "/.Wortmeister_SUPPORT/_EXTERNAL_DATA";
  std::string holding_ = documentsFolder() + "/tmpPathToReplacementData";
};

}  // namespace

std::unique_ptr<ZYMCoreDataModel>& ZYMCoreDataModel::instance() {
  // Never destroyed: what other singletons leave behind at the end of the process may still ask.
  static auto* instance = new std::unique_ptr<ZYMCoreDataModel>();
  return *instance;
}

ZYMCoreDataModel& ZYMCoreDataModel::sharedInstance() {
  static std::mutex guard;
  const std::lock_guard lock(guard);
  std::unique_ptr<ZYMCoreDataModel>& model = instance();
  if (!model) {
    model.reset(new ZYMCoreDataModel());
    placeAmongServices.take();
  }
  return *model;
}

void ZYMCoreDataModel::tearDown() noexcept {
  if (!instance()) return;
  try {
    instance()->saveNow();
  } catch (const std::exception& fault) {
    NSLog(std::string("An observer of the last save failed: ") + fault.what());
  } catch (...) {
    NSLog("An observer of the last save failed.");
  }
  const std::unique_ptr<ZYMCoreDataModel> going = std::move(instance());
}

ZYMCoreDataModel::ZYMCoreDataModel() {
  NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
  const auto reload = [this](const NSNotification& n) { postReloadNotification(n); };
  undone_ =
      center.addObserverForName_object(NSUndoManagerDidUndoChangeNotification, nullptr, reload);
  redone_ =
      center.addObserverForName_object(NSUndoManagerDidRedoChangeNotification, nullptr, reload);
}

std::string ZYMCoreDataModel::oldV2Path() const {
  if (!dataFolder_.empty()) return made(dataFolder_);
  switch (dataStorage_) {
    case 0:
      return made(documentsFolder());
    case 2:
      return pathForContainer();
    default:
      return made(documentsFolder() + "/Wortmeister-Data");
  }
}

std::string ZYMCoreDataModel::newV2Path() const {
  if (!dataFolder_.empty()) return made(dataFolder_);
  switch (dataStorage_) {
    case 0:
      return oldV2Path();
    case 1:
      return made(NSSearchPathForDirectory(NSSearchPathDirectory::ApplicationSupportDirectory) +
                  "/Wortmeister2");
    case 2:
      return pathForContainer();
    default:
      throw NSException(NSInternalInconsistencyException,
                        "dataStorage " + std::to_string(dataStorage_) + " has no folders");
  }
}

std::string ZYMCoreDataModel::pathForContainer() const {
  return NSSearchPathForDirectory(NSSearchPathDirectory::LibraryDirectory) + "/Containers/" +
         NSBundle::mainBundle().bundleIdentifier() + "/Data/Documents";
}

std::string ZYMCoreDataModel::imagesFolderPath() const {
  return made(newV2Path() + "/Images");
}

std::string ZYMCoreDataModel::historyFolderPath() const {
  return newV2Path();
}

const std::shared_ptr<NSManagedObjectModel>& ZYMCoreDataModel::objectModel() {
  if (objectModel_) return objectModel_;
  const std::optional<std::string> url =
      NSBundle::mainBundle().pathForResource_ofType("WortmeisterCoreDataModel", "momd");
  NSError error;
  if (!url) {
    fail(&error, NSCocoaErrorDomain, NSFileNoSuchFileError,
         "there is no resource WortmeisterCoreDataModel.momd");
    endWithoutStore(error);
  }
  objectModel_ = NSManagedObjectModel::initWithContentsOfURL(*url, &error);
  if (!objectModel_) endWithoutStore(error);
  setEntityClasses(*objectModel_);
  return objectModel_;
}

const std::shared_ptr<NSPersistentStoreCoordinator>&
ZYMCoreDataModel::persistentStoreCoordinator() {
  if (!coordinator_) {
    const Lock lock = lockDataFolder();
    const std::string storePath = newV2Path() + "/" + kDataManagerSQLiteName;
    copyOldFolderIfNeeded(storePath);
    openStore(storePath);
  }
  return coordinator_;
}

ZYMCoreDataModel::Lock ZYMCoreDataModel::lockDataFolder() {
  if (Lock held = lock_.lock()) return held;
  const std::string path = newV2Path() + "/" + lockName;
  const std::shared_ptr<FileLock> lock(new FileLock(FileLock::ofFile(path, secondsToWaitForLock)));
  if (lock->state() == FileLock::State::InUse) NSLog(path + " is held by another process");
  lock_ = lock;
  return lock;
}

void ZYMCoreDataModel::copyOldFolderIfNeeded(const std::string& storePath) {
  if (NSFileManager::fileExistsAtPath(storePath)) {
    if (oldV2Path() != newV2Path()) removeRemainsOfCopy(newV2Path());
    return;
  }
  const std::string from = oldV2Path();
  if (!NSFileManager::fileExistsAtPath(from + "/" + kDataManagerSQLiteName)) {
    firstRun_ = true;
    return;
  }
  NSError error;
  if (!copyDataFolder(from, newV2Path(), &error)) endWithoutStore(error);
}

// The store is opened as it is; only one of an older model is opened a second time, to migrate it.
void ZYMCoreDataModel::openStore(const std::string& storePath) {
  auto coordinator = std::make_shared<NSPersistentStoreCoordinator>(objectModel());
  NSError error;
  const auto isOpened = [&](bool migrates) {
    return coordinator->addPersistentStoreWithType_configuration_URL_options(
        NSSQLiteStoreType, std::nullopt, storePath,
        {{NSMigratePersistentStoresAutomaticallyOption, migrates},
         {NSInferMappingModelAutomaticallyOption, migrates}},
        &error);
  };
  if (!isOpened(false)) {
    if (error.code != NSPersistentStoreIncompatibleVersionHashError) endWithoutStore(error);
    ExternalDataAside externalData;
    if (!isOpened(true)) endWithoutStore(error);
    externalData.putBack();
  }
  coordinator_ = std::move(coordinator);
}

void ZYMCoreDataModel::endWithoutStore(const NSError& error) const {
  if (failureHandler_) failureHandler_(error);
  // Of its own accord the library says nothing of a store: that is the host's. Of a program that
  // lacks its resources nobody else could tell.
  if (!objectModel_) NSLog("The data store can't be opened: " + error.localizedDescription);
  std::abort();
}

NSManagedObjectContext* ZYMCoreDataModel::mainObjectContext() {
  if (NSManagedObjectContext* context = contextIfMade()) return context;
  if (!NSRunLoop::isMainThread()) {
    NSRunLoop::mainRunLoop().performOnMainThreadAndWait([this] { (void)mainObjectContext(); });
    return contextIfMade();
  }
  // A host that fills the store when it is told of the first run does so before others open it.
  const Lock lock = lockDataFolder();
  const std::shared_ptr<NSPersistentStoreCoordinator>& coordinator = persistentStoreCoordinator();
  if (!coordinator) return nullptr;
  mainContext_ = std::make_unique<NSManagedObjectContext>(NSMainQueueConcurrencyType);
  mainContext_->setPersistentStoreCoordinator(coordinator);
  madeContext_.store(mainContext_.get(), std::memory_order_release);
  if (firstRun_) {
    postNotificationOnMainThreadWithName(CoreDataModelReloadNowNotification);
    postNotificationOnMainThreadWithName(CoreDataModelFirstRunNotification);
  }
  return contextIfMade();
}

NSManagedObjectContext& mainContext() {
  return *ZYMCoreDataModel::sharedInstance().mainObjectContext();
}

}  // namespace zym
