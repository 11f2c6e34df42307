#include "zymcore/store/ZYMUndoGroup.h"

#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {
namespace {

NSUndoManager& undoManager() {
  return *ZYMCoreDataModel::sharedInstance().mainObjectContext()->undoManager();
}

}  // namespace

ZYMUndoGroup::ZYMUndoGroup() {
  undoManager().beginUndoGrouping();
}

ZYMUndoGroup::~ZYMUndoGroup() {
  if (open_) undoManager().endUndoGrouping();
}

void ZYMUndoGroup::closeAndSave(std::string_view actionName, std::string_view comment) {
  undoManager().setActionName(Localized_String(actionName, comment));
  undoManager().endUndoGrouping();
  open_ = false;
  ZYMCoreDataModel::sharedInstance().save();
}

}  // namespace zym
