#include "app/commands/PlanCommands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "app/session/Store.h"
#include "app/sheets/Figures.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Listing.h"
#include "app/terminal/Output.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/Items.h"
#include "app/values/StockValues.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/values/NSNotFound.h"
#include "zymcore/stock/ZYMAvailabilitiesEngine.h"
#include "zymcore/stock/ZYMInventory.h"
#include "zymcore/store/ZYMOneChange.h"

namespace zym::host {
namespace {

struct Options {
  std::string name;
  bool asJSON = false;
};

ZYMAvailabilitiesEngine& engine() {
  return ZYMAvailabilitiesEngine::sharedInstance();
}

double costOf(const PlistDictionary& addition) {
  double cost = 0;
  for (const PlistDictionary& lot : addition.rows(keys::Batches)) {
    cost += lot.doubleValue(keys::Amount) * lot.doubleValue(keys::Cost);
  }
  return cost;
}

std::string lotsOf(const PlistDictionary& addition, const StockKind& kind) {
  std::string lots;
  for (const PlistDictionary& lot : addition.rows(keys::Batches)) {
    if (!(lot.doubleValue(keys::Amount) > 0)) continue;
    lots.append(lots.empty() ? "" : "; ")
        .append(label("%1 of %2", {kind.showAmount(lot, keys::Amount),
                                   std::string(lot.stringValue(keys::BatchName))}));
  }
  return lots;
}

Table additionsOf(const PlistDictionary& recipe) {
  Listing listing({{label("Ingredient"), Table::Cells::Texts},
                   {label("Amount"), Table::Cells::Quantities},
                   {label("State"), Table::Cells::Texts},
                   {label("Cost"), Table::Cells::Quantities},
                   {label("Lots"), Table::Cells::Texts}});
  for (const StockKind& kind : stockKinds()) {
    const KeyName nameKey = libraryKindNamed(kind.library).nameKey();
    std::size_t index = 0;
    for (const PlistDictionary& addition : recipe.rows(kind.additions)) {
      const bool isDeducted = addition.boolValue(keys::IngredientDeducted);
      const std::int64_t state =
          isDeducted ? ZYMAvailabilitiesEngine::deducted
                     : engine().availabilityOfIngredientInRecipeAtIndex_ofArrayForKey(
                           index++, kind.additions);
      const bool isYeast = kind.additions.text() == keys::YeastIngredients.text();
      listing.addRow({std::string(addition.stringValue(nameKey)),
                      isYeast ? yeastAmount(addition) : kind.showAmount(addition, keys::Amount),
                      state == ZYMAvailabilitiesEngine::deducted  ? label("taken")
                      : state == ZYMAvailabilitiesEngine::inStock ? label("in stock")
                                                                  : label("short"),
                      money(costOf(addition)), lotsOf(addition, kind)});
    }
  }
  return listing.table();
}

Table costsOf(const PlistDictionary& batch) {
  const double cost = batch.doubleValue(keys::Cost);
  const PlistDictionary* actuals = batch.dictionary(keys::Actuals);
  const double millilitres = actuals ? actuals->doubleValue(keys::FinalBatchVolume) : 0;
  Table table({{"", Table::Cells::Texts}, {"", Table::Cells::Quantities}});
  table.addRow({label("In all"), money(cost)});
  if (millilitres > 0) {
    table.addRow({label("A litre"), money(cost / millilitres * 1000)});
    table.addRow({label("A bottle of 330 ml"), money(cost / millilitres * 330)});
    table.addRow({label("A bottle of 500 ml"), money(cost / millilitres * 500)});
  }
  return table;
}

void plan(const Options& options) {
  openStore();
  printPlan(SharedBatch(documentOf(batchNamed(options.name))), options.asJSON);
}

/// Puts what the addition took back into its lots; into a new one for a lot that is gone.
void giveBack(const PlistDictionary& addition, const StockKind& kind) {
  ZYMInventory& inventory = ZYMInventory::sharedInstance();
  const std::string* uuid = addition.string(keys::UUID);
  if (!uuid || !addition.boolValue(keys::IngredientDeducted)) return;
  std::optional<PlistDictionary> item = inventory.itemWithUUID(*uuid);
  PlistArray lots = item && item->array(keys::Batches) ? *item->array(keys::Batches) : PlistArray();
  bool returned = false;
  for (PlistDictionary part : addition.rows(keys::Batches)) {
    const double amount = part.doubleValue(keys::Amount);
    if (!(amount > 0)) continue;
    returned = true;
    const std::int64_t at = indexOfObjectWithUUID(lots, part.stringValue(keys::UUID));
    if (at == NSNotFound) {
      part.remove(keys::Amount);
      part.setNumber(keys::AmountInStock, amount);
      lots.append(part);
    } else {
      PlistDictionary& lot = *lots.edit(static_cast<std::size_t>(at)).editDictionary();
      lot.setNumber(keys::AmountInStock, lot.doubleValue(keys::AmountInStock) + amount);
    }
  }
  if (!returned) return;
  if (!item) {
    const KeyName nameKey = libraryKindNamed(kind.library).nameKey();
    (void)inventory.createItemForIngredient_ofType(
        {std::string(addition.stringValue(nameKey)), *uuid, 0}, kind.type);
  }
  inventory.updateBatches_inItemWithUUID(lots, *uuid);
}

void giveBackAll(const Options& options) {
  openStore();
  const Item named = batchNamed(options.name);
  PlistDictionary batch = documentOf(named);
  PlistDictionary* recipe = batch.editDictionary(keys::ModifiedRecipe);
  if (!recipe || !batch.boolValue(keys::AdjustedInventory)) {
    throw InputError(label("'%1' has taken nothing from the stock", {printable(named.name)}));
  }
  ZYMOneChange change;
  for (const StockKind& kind : stockKinds()) {
    for (const PlistDictionary& addition : recipe->rows(kind.additions)) giveBack(addition, kind);
  }
  ZYMRecipes::removeInventoryInfoInRecipe(*recipe);
  batch.set(keys::AdjustedInventory, "0");
  ZYMRecipes::sharedInstance().updateBatch(batch);
  change.save();
  if (options.asJSON) printJSON(batch);
}

}  // namespace

void printPlan(const SharedBatch& batch, bool asJSON) {
  engine().setBatch(batch);
  ZYMAvailabilitiesEngine::Advisories advisories;
  (void)engine().recalculateAvailabilitiesWithAdvisories(&advisories);
  const PlistDictionary* recipe = batch->dictionary(keys::ModifiedRecipe);
  if (asJSON || !recipe) {
    PlistArray told;
    for (const ZYMAvailabilitiesAdvisory& each : advisories) told.append(each.message);
    printJSON(PlistDictionary{{KeyName("Batch"), *batch},
                              {KeyName("Availabilities"), engine().availabilities()},
                              {KeyName("Advisories"), told}});
    return;
  }
  Sheet sheet = sheetOnOutput();
  sheet.title(titleAt(*batch, keys::BatchTitle));
  sheet.section(label("From the stock"), additionsOf(*recipe));
  std::string messages;
  for (const ZYMAvailabilitiesAdvisory& each : advisories) messages += each.message + "\n";
  sheet.section(label("Changed"), messages);
  sheet.section(label("Cost"), costsOf(*batch));
}

void takeFromStock(const SharedBatch& batch) {
  engine().setBatch(batch);
  ZYMAvailabilitiesEngine::Advisories advisories;
  (void)engine().recalculateAvailabilitiesWithAdvisories(&advisories);
  engine().adjustInventoryForBatchAndSave();
  for (const ZYMAvailabilitiesAdvisory& each : advisories) {
    std::cerr << "zym: " << printable(each.message) << '\n';
  }
}

void addPlanCommands(CLI::App& program) {
  const auto add = [&](const char* name, const char* description, void (*run)(const Options&)) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = program.add_subcommand(name, description);
    command->fallthrough();
    command->add_option("BATCH", options->name, "A batch")->required();
    command->add_flag("--json", options->asJSON, "Print JSON and nothing else");
    command->callback([options, run] { run(*options); });
  };
  add("plan", "Say what a batch takes from the stock, what is short, and what it costs.", plan);
  add("return", "Put back into stock what a batch has taken.", giveBackAll);
}

}  // namespace zym::host
