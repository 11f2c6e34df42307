#include "app/commands/RecordCommands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "app/commands/LibraryCommands.h"
#include "app/commands/OrderCommands.h"
#include "app/session/Store.h"
#include "app/sheets/BatchSheet.h"
#include "app/sheets/RecipeSheet.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Output.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/DocumentValues.h"
#include "app/values/Items.h"
#include "app/values/LibraryKind.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym::host {
namespace {

struct Options {
  std::vector<std::string> words;
  bool asJSON = false;
  bool isForced = false;
};

/// What the words of a command are about: a record of a library, or else a recipe or batch.
struct Target {
  const LibraryKind* library = nullptr;
  Item (*item)(const std::string& name) = itemNamed;
  std::string name;
  std::vector<std::string> assignments;
};

const LibraryKind* libraryOrNull(const std::string& word) {
  const auto found = std::ranges::find_if(libraryKinds(), [&](const LibraryKind& kind) {
    return kind.plural == word || kind.singular == word;
  });
  return found == libraryKinds().end() ? nullptr : &*found;
}

/// Takes the word for a kind off the front. A name alone, or one before assignments, has none.
Target targetOf(std::vector<std::string> words) {
  Target target;
  if (words.size() > 1 && words[1].find('=') == std::string::npos) {
    target.library = libraryOrNull(words[0]);
    if (words[0] == "recipe" || words[0] == "recipes") target.item = recipeNamed;
    if (words[0] == "batch" || words[0] == "batches") target.item = batchNamed;
    if (target.library || target.item != itemNamed) words.erase(words.begin());
  }
  target.name = words.front();
  target.assignments.assign(words.begin() + 1, words.end());
  return target;
}

Target targetWithoutValues(const Options& options) {
  const Target target = targetOf(options.words);
  if (!target.assignments.empty()) {
    throw UsageError(label("'%1' is one word too many", {printable(target.assignments.front())}));
  }
  return target;
}

KeyName titleKeyOf(const Item& item) {
  return item.kind == Item::Kind::Recipe ? keys::RecipeTitle : keys::BatchTitle;
}

void show(const Options& options) {
  if (options.words.size() == 2 && options.words[0] == "order") {
    openStore();
    showOrder(options.words[1], options.asJSON);
    return;
  }
  const Target target = targetWithoutValues(options);
  openStore();
  if (target.library) {
    showRecord(*target.library, target.name, options.asJSON);
    return;
  }
  const Item item = target.item(target.name);
  const PlistDictionary document = documentOf(item);
  remember(item, document);
  if (options.asJSON) {
    printJSON(document);
    return;
  }
  Sheet sheet = sheetOnOutput();
  item.kind == Item::Kind::Recipe ? writeRecipe(sheet, document) : writeBatch(sheet, document);
}

PlistDictionary createRecipe(const Target& target) {
  PlistDictionary values = ZYMRecipes::sharedInstance().emptyRecipe();
  setDocumentValues(Item::Kind::Recipe, values, target.assignments);  // before anything is stored
  PlistDictionary recipe = ZYMRecipes::sharedInstance().createRecipe();
  recipe.set(keys::RecipeTitle, target.name);
  setDocumentValues(Item::Kind::Recipe, recipe, target.assignments);
  const Item item{Item::Kind::Recipe, target.name, std::string(recipe.stringValue(keys::UUID))};
  storeDocument(item, recipe);
  // Both changes are one to the user.
  ZYMCoreDataModel::sharedInstance().mainObjectContext()->undoManager()->setActionName(
      Localized_String("Create Recipe"));
  return recipe;
}

void create(const Options& options) {
  if (options.words.size() < 2) throw UsageError(label("give a kind and a name"));
  const Target target = targetOf(options.words);
  if (!target.library && target.item != recipeNamed) {
    throw UsageError(label("'%1' is no kind; choose recipe, %2",
                           {printable(options.words.front()), libraryKindNames()}));
  }
  openStore();
  const PlistDictionary made = target.library
                                   ? createRecord(*target.library, target.name, target.assignments)
                                   : createRecipe(target);
  if (options.asJSON) printJSON(made);
}

void edit(const Options& options) {
  const Target target = targetOf(options.words);
  if (target.assignments.empty()) throw UsageError(label("give a KEY=VALUE"));
  openStore();
  PlistDictionary changed;
  if (target.library) {
    changed = editRecord(*target.library, target.name, target.assignments);
  } else {
    const Item item = target.item(target.name);
    const PlistDictionary before = documentOf(item);
    changed = before;
    setDocumentValues(item.kind, changed, target.assignments);
    storeDocument(item, changed);
    if (!options.asJSON) std::cout << changeOf(item, before, changed) << '\n';
  }
  if (options.asJSON) printJSON(changed);
}

void copy(const Options& options) {
  const Target target = targetWithoutValues(options);
  openStore();
  PlistDictionary made;
  KeyName nameKey = keys::RecipeTitle;
  if (target.library) {
    made = copyRecord(*target.library, target.name);
    nameKey = target.library->nameKey();
  } else {
    const Item item = target.item(target.name);
    const auto copied =
        ZYMRecipes::sharedInstance().duplicateItemWithUUID_addToGroupWithUUID(item.uuid, "");
    if (!copied) throw InputError(label("'%1' shares its identity", {printable(item.name)}));
    made = *copied;
    nameKey = titleKeyOf(item);
  }
  if (options.asJSON) {
    printJSON(made);
  } else {
    std::cout << printable(made.stringValue(nameKey)) << '\n';
  }
}

void remove(const Options& options) {
  const Target target = targetWithoutValues(options);
  openStore();
  if (target.library) {
    removeRecord(*target.library, target.name, options.isForced);
    return;
  }
  const Item item = target.item(target.name);
  const bool isRecipe = item.kind == Item::Kind::Recipe;
  const std::string question =
      label(isRecipe ? "Remove the recipe '%1' with its batches?" : "Remove the batch '%1'?",
            {printable(item.name)});
  if (!options.isForced && !isConfirmed(question)) return;
  ZYMRecipes& recipes = ZYMRecipes::sharedInstance();
  isRecipe ? recipes.removeRecipeWithUUID(item.uuid) : recipes.removeBatchWithUUID(item.uuid);
}

CLI::App* add(CLI::App& program, const char* name, const char* description, const char* words,
              void (*run)(const Options&)) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand(name, description);
  command->fallthrough();
  command
      ->add_option(words, options->words,
                   "[KIND] is recipe, batch, or one of " + libraryKindNames() +
                       "; without it NAME is that of a recipe or batch. NAME is a name, a "
                       "beginning of it that no other has, or a UUID")
      ->required();
  if (std::string_view(name) == "remove") {
    command->add_flag("--force", options->isForced, "Don't ask");
  } else {
    command->add_flag("--json", options->asJSON, "Print the record as JSON and nothing else");
  }
  command->callback([options, run] { run(*options); });
  return command;
}

}  // namespace

void addRecordCommands(CLI::App& program) {
  add(program, "show", "Show a recipe, a batch, or a record of a library.", "[KIND] NAME", show)
      ->footer("Examples:\n  zym show 'Burton Ale'\n  zym show hop Fuggle");
  add(program, "new", "Make a recipe, or a record of a library.", "KIND NAME [KEY=VALUE]", create)
      ->footer(
          "Values are in your units. Examples:\n"
          "  zym new recipe 'Burton Ale' Boil=60 'Style=English IPA'\n"
          "  zym new fermentable 'My Malt' Extract=80 'Color=8 EBC' IsGrain=yes\n\n" +
          recipeValuesHelp());
  add(program, "edit", "Change values of a recipe, a batch, or a record of a library.",
      "[KIND] NAME KEY=VALUE", edit)
      ->footer(
          "Values are in your units. Examples:\n"
          "  zym edit 'Burton Ale' Efficiency=78 'Target water=Burton On Trent'\n"
          "  zym edit profile Kitchen 'PreBoilVolume=14 l' BoilDuration=60\n\n" +
          recipeValuesHelp() + batchValuesHelp());
  add(program, "copy", "Copy a recipe, a batch or a record, and say the name of the copy.",
      "[KIND] NAME", copy);
  add(program, "remove", "Remove a recipe, a batch or a record. Asks first on a terminal.",
      "[KIND] NAME", remove);
}

}  // namespace zym::host
