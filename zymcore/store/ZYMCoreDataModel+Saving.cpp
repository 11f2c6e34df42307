#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMOneChange.h"
#include "zymcore/store/internal/SaveFailure.h"

namespace zym {

void ZYMCoreDataModel::saveNow() {
  if (ZYMOneChange::isOpen()) return;
  if (const std::shared_ptr<NSTimer> timer = saveTimer_.lock()) timer->invalidate();
  saveTimer_.reset();
  NSManagedObjectContext* context = contextIfMade();
  if (!context || !context->hasChanges()) return;

  bool saved = false;
  NSError error;
  const auto report = [&] {
    if (!saved) logSaveFailure(error);
    postNotificationOnMainThreadWithName(saved ? CoreDataModelDidSaveNotification
                                               : CoreDataModelDidSaveFailedNotification);
  };
  try {
    try {
      context->performBlockAndWait([&] { saved = context->save(&error); });
    } catch (const NSException&) {
      saved = context->save(&error);
    }
  } catch (...) {
    report();
    throw;
  }
  report();
}

void ZYMCoreDataModel::save() {
  saveNow();
}

void ZYMCoreDataModel::timedSave(NSTimer& /*timer*/) {
  saveNow();
}

void ZYMCoreDataModel::mergeSavedContext(const NSNotification& notification) {
  if (notification.object == contextIfMade()) return;
  if (!NSRunLoop::isMainThread()) {
    NSRunLoop::mainRunLoop().performOnMainThreadAndWait([&] { mergeSavedContext(notification); });
    return;
  }
  mainObjectContext()->mergeChangesFromContextDidSaveNotification(notification);
  postNotificationOnMainThreadWithName(CoreDataModelReloadNowNotification);
}

void ZYMCoreDataModel::postNotificationOnMainThreadWithName(const std::string& name) {
  NSRunLoop::mainRunLoop().performOnMainThreadAndWait(
      [&] { NSNotificationCenter::defaultCenter().postNotificationName_object(name, this); });
}

void ZYMCoreDataModel::postReloadNotification(const NSNotification& /*notification*/) {
  postNotificationOnMainThreadWithName(CoreDataModelReloadNowNotification);
}

}  // namespace zym
