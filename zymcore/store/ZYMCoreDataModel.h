#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "zymcore/platform/events/NSNotificationCenter.h"
#include "zymcore/platform/events/NSTimer.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/platform/objects/NSManagedObjectModel.h"
#include "zymcore/platform/objects/NSPersistentStoreCoordinator.h"

namespace zym {

/// There is none: resources come from the main bundle.
inline constexpr const char* kDataManagerBundleName = nullptr;
inline constexpr const char* kDataManagerModelName = "Wortmeister";
inline constexpr const char* kDataManagerSQLiteName = "Wortmeister.sqlite";

// Notifications, on the main thread, with the model as object.
inline constexpr const char* CoreDataModelDidSaveNotification = "CoreDataModelDidSaveNotification";
inline constexpr const char* CoreDataModelDidSaveFailedNotification =
    "CoreDataModelDidSaveFailedNotification";
/// The store is new and wants its initial state.
inline constexpr const char* CoreDataModelFirstRunNotification =
    "CoreDataModelFirstRunNotification";
/// What is shown may have changed: after an undo, a redo, a merge, an installation.
inline constexpr const char* CoreDataModelReloadNowNotification =
    "CoreDataModelReloadNowNotification";

/// The one owner of the persistent store and of the one context that writes to it. Nothing is
/// opened before somebody asks for the context; the host sets `dataStorage` before that.
class ZYMCoreDataModel {
 public:
  /// From any thread.
  [[nodiscard]] static ZYMCoreDataModel& sharedInstance();
  /// Saves, which observers hear while the model is still there, and then lets go of the store, its
  /// context and all objects in it. What an observer throws is logged. The next `sharedInstance`
  /// starts afresh. Main thread.
  static void tearDown() noexcept;

  ~ZYMCoreDataModel() = default;
  ZYMCoreDataModel(const ZYMCoreDataModel&) = delete;
  ZYMCoreDataModel& operator=(const ZYMCoreDataModel&) = delete;

  /// Which folders are used: 0 the user's Documents folder; 1 "Wortmeister2" among the user's
  /// application data, filled from "Wortmeister-Data" in Documents; 2 the container of a sandboxed
  /// host. Any other value is the host's fault and throws where a folder is asked for.
  [[nodiscard]] std::uint64_t dataStorage() const noexcept { return dataStorage_; }
  void setDataStorage(std::uint64_t dataStorage) noexcept { dataStorage_ = dataStorage; }
  /// A data folder of the host's own choice, in place of all that `dataStorage` says; empty for
  /// none.
  void setDataFolder(std::string path) { dataFolder_ = std::move(path); }

  /// Whether there was no store, neither here nor in the old folder, when it was opened. Never
  /// becomes false again.
  [[nodiscard]] bool firstRun() const noexcept { return firstRun_; }

  // Folders; all but the container are made where they are missing.
  [[nodiscard]] std::string oldV2Path() const;
  [[nodiscard]] std::string newV2Path() const;
  [[nodiscard]] std::string pathForContainer() const;
  [[nodiscard]] std::string imagesFolderPath() const;
  [[nodiscard]] std::string historyFolderPath() const;

  using Lock = std::shared_ptr<void>;
  /// Keeps other processes from opening, filling and upgrading the data folder for as long as any
  /// holder has it; waits for one that does. The operations below take it by themselves. A host
  /// that opens the store and then fills it holds it around both, so that another that starts at
  /// the same time finds the store filled. Main thread.
  [[nodiscard]] Lock lockDataFolder();

  // Made on first use. A store that can't be opened ends the process: a library that can't read its
  // data must not go on beside it. So does an old folder whose store can't be copied; the next
  // start tries again. A host that wants to say more and end in its own way throws from the
  // handler.

  using FailureHandler = std::function<void(const NSError& error)>;
  void setFailureHandler(FailureHandler handler) { failureHandler_ = std::move(handler); }

  /// The resource "WortmeisterCoreDataModel.momd" of the main bundle.
  [[nodiscard]] const std::shared_ptr<NSManagedObjectModel>& objectModel();
  [[nodiscard]] const std::shared_ptr<NSPersistentStoreCoordinator>& persistentStoreCoordinator();
  /// From any thread; another than the main thread waits for it. On a first run, posts
  /// `CoreDataModelReloadNowNotification` and `CoreDataModelFirstRunNotification`.
  [[nodiscard]] NSManagedObjectContext* mainObjectContext();

  /// Fills the libraries with the seed data of the main bundle, whatever was there before: eight
  /// property lists, each with a "Version" that is remembered in the user defaults. What is missing
  /// or no property list adds nothing and counts as not installed. Main thread.
  void installInitialState();
  /// The same for the seed files whose "Version" differs from the one installed last, older ones
  /// included. A brewer's changes to a seed record are lost by that, all other records stay.
  void checkVersionsAndUpdateIfNecessary();

  /// A timed save that waits, if the host has scheduled one. A save cancels it.
  void setSaveTimer(const std::shared_ptr<NSTimer>& timer) { saveTimer_ = timer; }
  [[nodiscard]] std::shared_ptr<NSTimer> saveTimer() const { return saveTimer_.lock(); }

  /// Saves what has changed and posts whether it worked. What couldn't be saved stays in the
  /// context. Nothing while a `ZYMOneChange` is open, which saves at its end.
  void saveNow();
  void save();
  /// For a timer of the host's.
  void timedSave(NSTimer& timer);

  /// Takes in what a context of the host's saved, on the main thread, and posts
  /// `CoreDataModelReloadNowNotification`. The main context's own saves are passed over.
  void mergeSavedContext(const NSNotification& notification);

  /// From any thread; returns when the observers have run.
  void postNotificationOnMainThreadWithName(const std::string& name);
  void postReloadNotification(const NSNotification& notification);

 private:
  ZYMCoreDataModel();
  static std::unique_ptr<ZYMCoreDataModel>& instance();
  [[nodiscard]] NSManagedObjectContext* contextIfMade() const noexcept {
    return madeContext_.load(std::memory_order_acquire);
  }
  void copyOldFolderIfNeeded(const std::string& storePath);
  void openStore(const std::string& storePath);
  [[noreturn]] void endWithoutStore(const NSError& error) const;

  std::uint64_t dataStorage_ = 0;
  std::string dataFolder_;
  bool firstRun_ = false;
  FailureHandler failureHandler_;
  std::shared_ptr<NSManagedObjectModel> objectModel_;
  std::shared_ptr<NSPersistentStoreCoordinator> coordinator_;
  std::unique_ptr<NSManagedObjectContext> mainContext_;
  std::atomic<NSManagedObjectContext*> madeContext_{nullptr};  // the same, for any thread
  std::weak_ptr<void> lock_;
  std::weak_ptr<NSTimer> saveTimer_;
  NSNotificationCenter::Token undone_;
  NSNotificationCenter::Token redone_;
};

/// The main context of the one model.
[[nodiscard]] NSManagedObjectContext& mainContext();

}  // namespace zym
