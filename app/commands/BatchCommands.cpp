#include "app/commands/BatchCommands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "app/commands/PlanCommands.h"
#include "app/session/Store.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Output.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/DocumentValues.h"
#include "app/values/Items.h"
#include "app/values/ValueForms.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/store/ZYMOneChange.h"
#include "zymcore/transformers/ZYMDateValueTransformer.h"

namespace zym::host {
namespace {

struct Options {
  std::string name;
  std::string since;
  std::string recipe;
  std::string group;
  std::vector<std::string> assignments;
  std::size_t limit = 0;
  bool onlyPlan = false;
  bool fromStock = false;
  bool asJSON = false;
};

ZYMRecipes& library() {
  return ZYMRecipes::sharedInstance();
}

void printOne(const PlistDictionary& document, KeyName titleKey, bool asJSON) {
  if (asJSON) {
    printJSON(document);
  } else {
    std::cout << printable(document.stringValue(titleKey)) << '\n';
  }
}

void brew(const Options& options) {
  openStore();
  const Item recipe = recipeNamed(options.name);
  auto batch = library().emptyBatchForRecipeWithUUID(recipe.uuid);
  if (!batch) throw InputError(label("'%1' shares its identity", {printable(recipe.name)}));
  const SharedBatch shared(std::move(*batch));
  if (options.onlyPlan) return printPlan(shared, options.asJSON);
  ZYMOneChange change;
  library().restoreBatch_toRecipeWithUUID(*shared, recipe.uuid);
  if (options.fromStock) takeFromStock(shared);
  change.save();
  library().addBatchToHistory(*shared);
  printOne(*shared, keys::BatchTitle, options.asJSON);
}

using Rows = std::vector<ZYMSummary>;

struct Span {
  std::string_view name;
  Rows (ZYMRecipes::*rows)() const;
};
constexpr Span spans[] = {
    {"year", &ZYMRecipes::batchSummariesNewestFirstSinceYearStart},
    {"3", &ZYMRecipes::batchSummariesNewestFirstLast3Months},
    {"6", &ZYMRecipes::batchSummariesNewestFirstLast6Months},
    {"12", &ZYMRecipes::batchSummariesNewestFirstLast12Months},
    {"24", &ZYMRecipes::batchSummariesNewestFirstLast24Months},
};

Rows rowsSince(const std::string& since) {
  if (since.empty()) return library().allBatchSummariesNewestFirst();
  // "3" and "3 months" are the same.
  const std::string_view number = std::string_view(since).substr(0, since.find(" month"));
  const auto span = std::ranges::find(spans, number, &Span::name);
  if (span != std::end(spans)) return (library().*span->rows)();
  return library().batchSummariesNewestFirstSinceDate(*take::day(since).date());
}

void listBatches(const Options& options) {
  if (!options.since.empty() && !options.recipe.empty()) {
    throw UsageError(label("give --since or --recipe, not both"));
  }
  openStore();
  const Rows rows = options.recipe.empty()
                        ? rowsSince(options.since)
                        : library()
                              .batchSummariesForRecipeWithUUID(recipeNamed(options.recipe).uuid)
                              .value_or(Rows());
  if (options.asJSON) {
    printJSON(recordsOf(rows));
    return;
  }
  for (const ZYMSummary& row : rows) std::cout << printable(row.name) << '\n';
}

void measure(const Options& options) {
  openStore();
  const Item item = batchNamed(options.name);
  PlistDictionary batch = documentOf(item);
  setMeasurements(batch, options.assignments);
  storeDocument(item, batch);
  if (options.asJSON) printJSON(batch);
}

void promote(const Options& options) {
  openStore();
  const std::optional<std::string> group =
      options.group.empty() ? "" : groupNamed(options.group).uuid;
  const PlistDictionary recipe =
      library().promoteBatchWithUUID_addToGroupWithUUID(batchNamed(options.name).uuid, group);
  library().addRecipeToHistory(recipe);
  printOne(recipe, keys::RecipeTitle, options.asJSON);
}

std::string dayOf(const ZYMHistoryItem& item) {
  if (!item.dateAccessed()) return "";
  const PlistValue date(*item.dateAccessed());
  return ZYMDateValueTransformer::convertForDisplay(&date);
}

void listHistory(const Options& options) {
  openStore();
  const auto items = library().historyWithMaximumNumberOfItems(options.limit);
  PlistArray records;
  Table table({{label("Name"), Table::Cells::Texts},
               {label("Kind"), Table::Cells::Texts},
               {label("Opened"), Table::Cells::Texts}});
  for (const ZYMHistoryItem& item : items) {
    records.append(item.historyItemAsDictionary());
    table.addRow({printable(item.name().value_or("")), label(item.isBatch() ? "batch" : "recipe"),
                  printable(dayOf(item))});
  }
  options.asJSON ? printJSON(records) : printTable(table);
}

}  // namespace

void addBatchCommands(CLI::App& program) {
  const auto add = [&](const char* name, const char* description, void (*run)(const Options&)) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = program.add_subcommand(name, description);
    command->fallthrough();
    command->add_flag("--json", options->asJSON, "Print JSON and nothing else");
    command->callback([options, run] { run(*options); });
    return std::pair(command, options.get());
  };
  const auto [brewing, ofBrewing] =
      add("brew", "Make a batch of a recipe, and say its name.", brew);
  brewing->add_option("RECIPE", ofBrewing->name, "A recipe")->required();
  brewing->add_flag("--plan", ofBrewing->onlyPlan,
                    "Make none, but say what it would take from the stock");
  brewing->add_flag("--take", ofBrewing->fromStock, "Take its ingredients out of stock");

  const auto [batches, ofBatches] =
      add("batches", "List the batches, the newest first.", listBatches);
  batches
      ->add_option("--since", ofBatches->since,
                   "year (since 1 January), 3, 6, 12 or 24 (months), or a day such as 2026-03-01")
      ->type_name("SPAN");
  batches->add_option("--recipe", ofBatches->recipe, "Those of a recipe, the oldest first")
      ->type_name("RECIPE");

  const auto [measuring, ofMeasuring] =
      add("measure", "Put down what was measured of a batch.", measure);
  measuring->add_option("BATCH", ofMeasuring->name, "A batch")->required();
  measuring->add_option("KEY=VALUE", ofMeasuring->assignments, "In your units")->required();
  measuring->footer("Example:\n  zym measure 'Batch 1' OG=1.052 'OG sample=20 C' FG=1.011\n\n" +
                    measurementsHelp());

  const auto [promoting, ofPromoting] =
      add("promote", "Make a recipe of a batch as it was brewed, and say its name.", promote);
  promoting->add_option("BATCH", ofPromoting->name, "A batch")->required();
  promoting->add_option("--group", ofPromoting->group, "A group that it joins")->type_name("GROUP");

  const auto [history, ofHistory] = add("history", "List what was opened last.", listHistory);
  history->add_option("--limit", ofHistory->limit, "At most so many; 0 for all")
      ->type_name("COUNT")
      ->check(CLI::Range(0, 1000000));
}

}  // namespace zym::host
