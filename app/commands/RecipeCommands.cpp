#include "app/commands/RecipeCommands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "app/commands/Additions.h"
#include "app/session/Store.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Output.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/Items.h"
#include "app/values/LibraryKind.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/store/ZYMUndoGroup.h"

namespace zym::host {
namespace {

struct Options {
  std::string group;
  std::string name;
  std::vector<std::string> recipes;
  std::string item;
  std::string kind;
  std::string ingredient;
  Addition addition;
  bool asJSON = false;
};

ZYMRecipes& library() {
  return ZYMRecipes::sharedInstance();
}

void printRows(const std::vector<ZYMSummary>& rows, const char* children, bool asJSON) {
  if (asJSON) {
    printJSON(recordsOf(rows));
    return;
  }
  Table table({{label("Name"), Table::Cells::Texts}, {label(children), Table::Cells::Quantities}});
  for (const ZYMSummary& row : rows) {
    table.addRow({printable(row.name), std::to_string(row.numberOfChildren)});
  }
  printTable(table);
}

std::vector<ZYMSummary> recipesIn(const std::optional<std::string>& groupUUID) {
  return library().summariesForAllRecipesInGroupWithUUID(groupUUID).value_or(
      std::vector<ZYMSummary>());
}

void listRecipes(const Options& options) {
  openStore();
  printRows(recipesIn(options.group.empty() ? "" : groupNamed(options.group).uuid), "Batches",
            options.asJSON);
}

void change(const Options& options, std::string (*what)(PlistDictionary&, const Options&)) {
  openStore();
  const Item item = itemNamed(options.item);
  PlistDictionary document = documentOf(item);
  const PlistDictionary before = document;
  PlistDictionary* recipe =
      item.kind == Item::Kind::Recipe ? &document : document.editDictionary(keys::ModifiedRecipe);
  if (!recipe) throw InputError(label("'%1' has no recipe", {printable(item.name)}));
  const std::string words = what(*recipe, options);
  storeDocument(item, document);
  if (options.asJSON) {
    printJSON(document);
  } else {
    std::cout << words << '\n' << changeOf(item, before, document) << '\n';
  }
}

void addToRecipe(const Options& options) {
  change(options, [](PlistDictionary& recipe, const Options& given) {
    return addIngredient(recipe, libraryKindNamed(given.kind), given.ingredient, given.addition);
  });
}

void dropFromRecipe(const Options& options) {
  change(options, [](PlistDictionary& recipe, const Options& given) {
    return dropIngredient(recipe, libraryKindNamed(given.kind), given.ingredient);
  });
}

void listGroups(const Options& options) {
  openStore();
  std::vector<ZYMSummary> rows = library().summariesForAllGroups();
  rows.insert(rows.begin(), library().summaryForLibraryGroup());
  printRows(rows, "Recipes", options.asJSON);
}

void createGroup(const Options& options) {
  openStore();
  ZYMUndoGroup undo;
  ZYMSummary group = library().createGroup();
  group.name = options.name;
  library().updateGroup(group);
  undo.closeAndSave("Add Group");
}

void renameGroup(const Options& options) {
  openStore();
  ZYMSummary group = groupNamed(options.group);
  group.name = options.name;
  library().updateGroup(group);
}

void removeGroup(const Options& options) {
  openStore();
  library().deleteGroupWithUUID(groupNamed(options.group).uuid);
}

std::vector<std::string> uuidsOf(const std::vector<std::string>& names) {
  std::vector<std::string> uuids;
  for (const std::string& name : names) uuids.push_back(recipeNamed(name).uuid);
  return uuids;
}

void addToGroup(const Options& options) {
  openStore();
  const std::optional<std::string> group = groupNamed(options.group).uuid;
  std::vector<std::string> uuids = uuidsOf(options.recipes);
  for (const ZYMSummary& member : recipesIn(group)) uuids.push_back(member.uuid.value_or(""));
  library().replaceRecipesInGroupWithUUID_withRecipes(group, uuids);
}

void takeFromGroup(const Options& options) {
  openStore();
  const std::optional<std::string> group = groupNamed(options.group).uuid;
  for (const std::string& uuid : uuidsOf(options.recipes)) {
    library().removeRecipeWithUUID_fromGroupWithUUID(uuid, group);
  }
}

class Commands {
 public:
  explicit Commands(CLI::App& program) : program_(program) {}

  CLI::App* add(const char* name, const char* description, void (*run)(const Options&)) {
    CLI::App* const command = program_.add_subcommand(name, description);
    command->fallthrough();
    command->callback([options = options_, run] { run(*options); });
    return command;
  }
  [[nodiscard]] Options& options() const { return *options_; }

 private:
  CLI::App& program_;
  std::shared_ptr<Options> options_ = std::make_shared<Options>();
};

constexpr const char* recipeHelp = "A recipe or batch: its name, a beginning of it, or its UUID";

void addAdditionCommands(CLI::App& program) {
  Commands commands(program);
  Options& options = commands.options();
  CLI::App* command = commands.add("add", "Add an ingredient to a recipe.", addToRecipe);
  command->add_option("RECIPE", options.item, recipeHelp)->required();
  command->add_option("KIND", options.kind, "fermentable, hop, other or yeast")->required();
  command->add_option("NAME", options.ingredient, "Its name in the library")->required();
  command->add_option("AMOUNT", options.addition.amount, "In any unit of its kind")->required();
  command->add_option("--when", options.addition.when, "When it is added; minutes for a hop")
      ->type_name("WHEN");
  command->add_option("--form", options.addition.form, "The form of a hop")->type_name("FORM");
  command->add_flag("--json", options.asJSON, "Print the document as JSON and nothing else");
  command->footer(
      "Examples:\n"
      "  zym add 'Burton Ale' fermentable 'UK Pale Malt' '5 kg'\n"
      "  zym add 'Burton Ale' hop 'Fuggle' '2 oz' --when '60 min' --form 'Loose Pellet'\n"
      "  zym add 'Burton Ale' yeast 'London Ale' '2 packs'");

  command = commands.add("drop", "Take an ingredient out of a recipe.", dropFromRecipe);
  command->add_option("RECIPE", options.item, recipeHelp)->required();
  command->add_option("KIND", options.kind, "fermentable, hop, other or yeast")->required();
  command->add_option("NAME", options.ingredient, "Its name, or its number in the recipe")
      ->required();
  command->add_flag("--json", options.asJSON, "Print the document as JSON and nothing else");
}

void addGroupCommands(CLI::App& program) {
  CLI::App* const group = program.add_subcommand("group", "Groups of recipes.");
  group->require_subcommand(1)->fallthrough();
  Commands commands(*group);
  Options& options = commands.options();
  const auto withGroup = [&](CLI::App* command) {
    command->add_option("GROUP", options.group, "A group")->required();
    return command;
  };
  commands.add("list", "List the groups; the first is the whole library.", listGroups)
      ->add_flag("--json", options.asJSON, "Print the rows as JSON and nothing else");
  commands.add("new", "Make a group.", createGroup)
      ->add_option("NAME", options.name, "Its name")
      ->required();
  withGroup(commands.add("rename", "Give a group another name.", renameGroup))
      ->add_option("NAME", options.name, "Its new name")
      ->required();
  withGroup(commands.add("remove", "Remove a group; its recipes stay.", removeGroup));
  withGroup(commands.add("add", "Put recipes into a group.", addToGroup))
      ->add_option("RECIPE", options.recipes, "Recipes")
      ->required();
  withGroup(commands.add("take", "Take recipes out of a group.", takeFromGroup))
      ->add_option("RECIPE", options.recipes, "Recipes")
      ->required();
}

}  // namespace

void addRecipeCommands(CLI::App& program) {
  Commands commands(program);
  CLI::App* const command = commands.add("recipes", "List the recipes.", listRecipes);
  command->add_option("--group", commands.options().group, "Only those of a group")
      ->type_name("GROUP");
  command->add_flag("--json", commands.options().asJSON, "Print the rows as JSON and nothing else");
  addAdditionCommands(program);
  addGroupCommands(program);
}

}  // namespace zym::host
