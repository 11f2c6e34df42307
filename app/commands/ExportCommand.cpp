#include "app/commands/ExportCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

#include "app/session/Store.h"
#include "app/session/Workshop.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Progress.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/Items.h"
#include "app/values/Names.h"
#include "app/values/StockValues.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/interchange/operations/ItemForExport.h"
#include "zymcore/interchange/operations/ZYMFileExportOperation.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSOperationQueue.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/values/NSException.h"

namespace zym::host {
namespace {

namespace fs = std::filesystem;

struct Options {
  std::vector<std::string> names;
  std::string kind;
  std::string output = ".";
  bool isOfAll = false;
};

struct Kind {
  std::string_view name;
  ZYMExportFileType type;
  bool holdsAll;  // that is stored, with batches and pictures
};
constexpr Kind kinds[] = {
    {"wm2", ZYMExportFileType::NativeJSON, true},
    {"wmr", ZYMExportFileType::NativePropertyList, true},
    {"xml", ZYMExportFileType::BeerXML, false},
    {"rec", ZYMExportFileType::REC, false},
    {"htm", ZYMExportFileType::HTML, false},
    {"pdf", ZYMExportFileType::PDF, false},
    {"ing", ZYMExportFileType::IngredientPackage, true},
};

std::vector<std::string> kindNames() {
  std::vector<std::string> names;
  for (const Kind& kind : kinds) names.emplace_back(kind.name);
  return names;
}

std::vector<Item> itemsOf(const std::vector<ZYMSummary>& rows) {
  std::vector<Item> items;
  for (const ZYMSummary& row : rows) {
    items.push_back({Item::Kind::Recipe, row.name, row.uuid.value_or("")});
  }
  return items;
}

/// Recipes and batches by their names, and the recipes of a group by its name.
std::vector<Item> itemsMeant(const Options& options) {
  ZYMRecipes& recipes = ZYMRecipes::sharedInstance();
  if (options.isOfAll) return itemsOf(recipes.summariesForAllRecipes());
  std::vector<Item> items;
  const std::vector<ZYMSummary> groups = recipes.summariesForAllGroups();
  for (const std::string& name : options.names) {
    const auto group = std::ranges::find(groups, name, &ZYMSummary::name);
    if (group == groups.end() || !group->uuid) {
      items.push_back(itemNamed(name));
      continue;
    }
    std::vector<Item> members = itemsOf(recipes.summariesForAllRecipesInGroupWithUUID(*group->uuid)
                                            .value_or(std::vector<ZYMSummary>()));
    items.insert(items.end(), members.begin(), members.end());
  }
  return items;
}

PlistValue documentFor(const Item& item, const Kind& kind) {
  if (!kind.holdsAll) return documentOf(item);
  try {
    if (auto document = itemForExportWithUUID(item.uuid)) return std::move(*document);
  } catch (const NSException& exception) {
    throw InputError(exception.reason());
  }
  throw InputError(label("'%1' can't be read", {printable(item.name)}));
}

/// Writes what is exported and answers where it is. Throws `InputError`.
std::string written(PlistValue item, const std::string& path, const Kind& kind) {
  const auto operation = std::make_shared<ZYMFileExportOperation>(
      std::move(item), path, static_cast<std::int32_t>(kind.type));
  NSOperationQueue::mainQueue().addOperation(operation);
  NSOperationQueue::mainQueue().waitUntilAllOperationsAreFinished();
  if (operation->failureReason()) throw InputError(*operation->failureReason());
  return operation->writtenPath().value_or("");
}

/// Into the folder, under its title; or into the very file, which it then replaces.
std::string exported(const Item& item, const Options& options, const Kind& kind) {
  PlistValue document = documentFor(item, kind);
  if (NSFileManager::isDirectoryAtPath(options.output))
    return written(std::move(document), options.output, kind);
  // What a link leads to is replaced, never the link, and nothing but a file.
  const fs::path target = fs::weakly_canonical(fs::absolute(options.output));
  if (fs::exists(target) && !fs::is_regular_file(target)) {
    throw InputError(
        label("can't write '%1': %2", {printable(options.output), "Not a regular file"}));
  }
  const Workshop workshop(target);
  fs::rename(written(std::move(document), workshop.path().string(), kind), target);
  return options.output;
}

int exportPackage(const Options& options, const Kind& kind) {
  PlistArray records;
  std::string_view library;
  for (const std::string& name : options.names) {
    const Ingredient ingredient = ingredientNamed(name);
    if (!library.empty() && library != ingredient.kind->library) {
      throw UsageError(label("a package holds ingredients of one kind"));
    }
    library = ingredient.kind->library;
    records.append(recordNamed(libraryKindNamed(library), ingredient.uuid));
  }
  const bool isFolder = NSFileManager::isDirectoryAtPath(options.output);
  const std::string path =
      isFolder ? options.output + "/" + std::string(library) + "s.ing" : options.output;
  std::cout << printable(written(std::move(records), path, kind)) << '\n';
  return 0;
}

int exportAll(const Options& options) {
  const Kind& kind = *std::ranges::find(kinds, options.kind, &Kind::name);
  const bool isPackage = kind.type == ZYMExportFileType::IngredientPackage;
  if (options.names.empty() && (isPackage || !options.isOfAll)) {
    throw UsageError(label("say what to export"));
  }
  openStore();
  if (isPackage) return exportPackage(options, kind);
  const std::vector<Item> items = itemsMeant(options);
  if (items.size() > 1 && !NSFileManager::isDirectoryAtPath(options.output)) {
    throw UsageError(label("'%1' is no folder for several files", {printable(options.output)}));
  }
  const Progress progress(items.size());
  std::size_t failed = 0;
  for (std::size_t i = 0; i < items.size(); ++i) {
    progress.show(i);
    try {
      std::cout << printable(exported(items[i], options, kind)) << '\n';
    } catch (const std::exception& error) {
      std::cerr << "zym: " << printable(items[i].name) << ": " << printable(error.what()) << '\n';
      ++failed;
    }
  }
  return failed > 0 ? 1 : 0;
}

}  // namespace

void addExportCommand(CLI::App& program, int& exitCode) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      program.add_subcommand("export", "Write recipes and batches as files that others read.");
  command->fallthrough();
  command->add_option("NAME", options->names,
                      "Recipes, batches and groups; of 'ing', ingredients of one kind");
  command->add_flag("--all", options->isOfAll, "All recipes");
  command->add_option("--as", options->kind, "The kind of file")
      ->required()
      ->check(CLI::IsMember(kindNames()));
  command->add_option("-o,--output", options->output, "The folder, or the file of a single one");
  command->footer(
      "wm2 and wmr hold all of a recipe with its batches (wm2 its pictures too), xml (BeerXML) "
      "and\n"
      "rec what other programs read, htm and pdf a sheet, ing ingredients for another brewer.\n"
      "A file is named by its title and takes the place of no other.");
  command->callback([options, &exitCode] { exitCode = exportAll(*options); });
}

}  // namespace zym::host
