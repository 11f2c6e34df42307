#include "app/commands/SuggestCommands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "app/commands/OrderCommands.h"
#include "app/session/Store.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Listing.h"
#include "app/terminal/Output.h"
#include "app/terminal/Progress.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/Items.h"
#include "app/values/Names.h"
#include "app/values/StockValues.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/stock/ZYMSuggestABeerGenerator.h"

namespace zym::host {
namespace {

struct Options {
  std::vector<std::string> names;
  std::string supplier;
  std::size_t missing = 3;
  bool withTabs = false;
  bool asJSON = false;
};

std::string shortOf(const PlistDictionary& row) {
  const StockKind& kind = stockKindOf(row);
  return label("%1 of %2", {kind.showAmount(row, keys::Amount),
                            nameOfIngredient(kind, row.stringValue(keys::UUID))});
}

struct Suggestion {
  std::string title;
  PlistArray missing;
};

std::vector<Suggestion> suggestions(std::size_t mostMissing) {
  const std::vector<ZYMSummary> recipes = ZYMRecipes::sharedInstance().summariesForAllRecipes();
  std::vector<Suggestion> found;
  const Progress progress(recipes.size());
  for (std::size_t i = 0; i < recipes.size(); ++i) {
    progress.show(i);
    try {
      PlistArray missing =
          ZYMSuggestABeerGenerator::ingredientsNotAvailableForRecipeOrBatchWithUUID(
              recipes[i].uuid.value_or(""));
      if (missing.size() > mostMissing) continue;
      found.push_back({recipes[i].name, std::move(missing)});
    } catch (const NSException& damage) {
      std::cerr << "zym: " << printable(recipes[i].name) << ": " << damage.what() << '\n';
    }
  }
  std::ranges::stable_sort(found, {}, [](const Suggestion& one) { return one.missing.size(); });
  return found;
}

void suggest(const Options& options) {
  openStore();
  const std::vector<Suggestion> found = suggestions(options.missing);
  if (options.asJSON) {
    PlistArray rows;
    for (const Suggestion& one : found) {
      rows.append(
          PlistDictionary{{KeyName("Recipe"), one.title}, {KeyName("Missing"), one.missing}});
    }
    return printJSON(rows);
  }
  Listing listing(
      {{label("Recipe"), Table::Cells::Texts}, {label("Short of"), Table::Cells::Texts}});
  for (const Suggestion& one : found) {
    std::string missing;
    for (const PlistDictionary& row : PlistRows(&one.missing)) {
      missing.append(missing.empty() ? "" : "; ").append(shortOf(row));
    }
    listing.addRow({one.title, missing});
  }
  listing.print(options.withTabs);
}

void shop(const Options& options) {
  openStore();
  std::vector<std::string> uuids;
  for (const std::string& name : options.names) uuids.push_back(itemNamed(name).uuid);
  const PlistArray missing =
      ZYMSuggestABeerGenerator::ingredientsNotAvailableForRecipesWithUUIDs(uuids);
  if (!options.supplier.empty() && !missing.empty()) {
    const PlistDictionary order =
        placeOrder(recordNamed(libraryKindNamed("suppliers"), options.supplier), missing);
    if (options.asJSON) return printJSON(order);
    std::cout << printable(order.stringValue(keys::Name)) << '\n';
  }
  if (options.asJSON) return printJSON(missing);
  Listing listing(
      {{label("Ingredient"), Table::Cells::Texts}, {label("Amount"), Table::Cells::Quantities}});
  for (const PlistDictionary& row : PlistRows(&missing)) {
    const StockKind& kind = stockKindOf(row);
    listing.addRow(
        {nameOfIngredient(kind, row.stringValue(keys::UUID)), kind.showAmount(row, keys::Amount)});
  }
  listing.print(options.withTabs);
}

void addForms(CLI::App& command, const std::shared_ptr<Options>& options) {
  command.fallthrough();
  command.add_flag("--json", options->asJSON, "Print JSON and nothing else");
  command.add_flag("--tsv", options->withTabs, "Lines with tabs between the cells, for scripts");
}

}  // namespace

void addSuggestCommands(CLI::App& program) {
  {
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        program.add_subcommand("suggest", "Say what can be brewed with what is in stock.");
    command->add_option("--missing", options->missing, "How many ingredients may be short")
        ->check(CLI::Range(0, 3));
    addForms(*command, options);
    command->callback([options] { suggest(*options); });
  }
  {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = program.add_subcommand(
        "shopping", "Say what is short for all of these recipes and batches together.");
    command->add_option("NAME", options->names, "Recipes and batches")->required();
    command->add_option("--order", options->supplier, "Order it from that supplier");
    addForms(*command, options);
    command->callback([options] { shop(*options); });
  }
}

}  // namespace zym::host
