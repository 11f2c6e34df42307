#include "zymcore/store/ZYMUndoGroup.h"

#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {
namespace {

NSUndoManager& undoManager() {
  return *mainContext().undoManager();
}

}  // namespace

ZYMUndoGroup::ZYMUndoGroup() {
  undoManager().beginUndoGrouping();
  level_ = undoManager().groupingLevel();
}

ZYMUndoGroup::~ZYMUndoGroup() {
  close();
}

void ZYMUndoGroup::close() {
  if (open_ && undoManager().groupingLevel() >= level_) undoManager().endUndoGrouping();
  open_ = false;
}

void ZYMUndoGroup::closeAndSave(std::string_view actionName) {
  undoManager().setActionName(Localized_String(actionName));
  close();
  ZYMCoreDataModel::sharedInstance().save();
}

}  // namespace zym
