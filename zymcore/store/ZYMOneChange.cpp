#include "zymcore/store/ZYMOneChange.h"

#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {
namespace {

int opened = 0;

NSUndoManager& undoManager() {
  return *mainContext().undoManager();
}

}  // namespace

bool ZYMOneChange::isOpen() noexcept {
  return opened > 0;
}

ZYMOneChange::ZYMOneChange() {
  // What an earlier save left behind is not part of this.
  ZYMCoreDataModel::sharedInstance().save();
  if (!isOpen() && mainContext().hasChanges()) {
    throw NSException(NSInternalInconsistencyException,
                      "earlier changes can't be saved, so no other is begun");
  }
  undoManager().beginUndoGrouping();
  level_ = undoManager().groupingLevel();
  ++opened;
}

ZYMOneChange::~ZYMOneChange() {
  if (!open_) return;
  try {
    close();
    if (!isOpen()) mainContext().rollback();
  } catch (const std::exception& e) {
    NSLog(e.what());
  } catch (...) {
    NSLog("A change could not be taken back.");
  }
}

void ZYMOneChange::close() {
  open_ = false;
  --opened;
  if (undoManager().groupingLevel() >= level_) undoManager().endUndoGrouping();
}

void ZYMOneChange::save() {
  close();
  ZYMCoreDataModel::sharedInstance().save();
}

}  // namespace zym
