#pragma once

#include "zymcore/platform/values/PlistDictionary.h"
#include "zymcore/stock/SharedBatch.h"

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "plan" and "return".
void addPlanCommands(CLI::App& program);

/// Says what the batch would take from the stock and what that costs. The batch is changed as the
/// stock has it; nothing is stored.
void printPlan(const SharedBatch& batch, bool asJSON);
/// Takes it, and stores the batch.
void takeFromStock(const SharedBatch& batch);

}  // namespace zym::host
