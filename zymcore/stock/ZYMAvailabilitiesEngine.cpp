#include "zymcore/stock/ZYMAvailabilitiesEngine.h"

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/host/NSAlert.h"
#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

// The batch is the caller's: it goes with the process it was opened in.
TearDownPlace place([] { ZYMAvailabilitiesEngine::sharedInstance().setBatch({}); });

}  // namespace

ZYMAvailabilitiesEngine& ZYMAvailabilitiesEngine::sharedInstance() {
  static auto* instance = new ZYMAvailabilitiesEngine();
  return *instance;
}

void ZYMAvailabilitiesEngine::setBatch(SharedBatch batch) {
  if (batch) place.take();
  batch_ = std::move(batch);
}

PlistDictionary* ZYMAvailabilitiesEngine::recipe() const {
  return batch_ ? batch_->editDictionary(keys::ModifiedRecipe) : nullptr;
}

void ZYMAvailabilitiesEngine::recalculateRecipe() const {
  if (PlistDictionary* brewed = recipe()) ZYMBeerCalculations::recalculateBeerRecipe(*brewed);
}

bool ZYMAvailabilitiesEngine::recalculateAvailabilitiesWithAdvisories(Advisories* advisories) {
  messages_.clear();
  setAvailabilitiesAndWriteInventory(false);
  if (batch_) ZYMBeerCalculations::recalculateBatchCost(*batch_);
  if (!advisories || messages_.empty()) return false;
  *advisories = messages_;
  return true;
}

std::int64_t ZYMAvailabilitiesEngine::availabilityOfIngredientInRecipeAtIndex_ofArrayForKey(
    std::size_t index, KeyName key) const {
  if (batch_ && batch_->boolValue(keys::AdjustedInventory)) return deducted;
  const PlistArray* states = availabilities_.array(key);
  const PlistValue* state = states ? states->find(index) : nullptr;
  return state && state->boolValue() ? inStock : notInStock;
}

void ZYMAvailabilitiesEngine::presentAdvisories(const Advisories& advisories) {
  if (advisories.empty()) return;
  std::string text = advisories.front().message;
  for (std::size_t i = 1; i < advisories.size(); ++i) text += "\n\n" + advisories[i].message;
  NSAlert alert;
  alert.setAlertStyle(NSAlert::Style::Informational);
  alert.setMessageText(advisories.front().title);
  alert.setInformativeText(text);
  alert.addButtonWithTitle(Localized_String("OK"));
  alert.runModal();
}

void ZYMAvailabilitiesEngine::presentAdvisories_immediately(const Advisories& advisories,
                                                            bool immediately) {
  if (immediately) {
    presentAdvisories(advisories);
  } else {
    // An alert waits for the user, which the event that brought it should not.
    NSRunLoop::mainRunLoop().performBlock([advisories] { presentAdvisories(advisories); });
  }
}

}  // namespace zym
