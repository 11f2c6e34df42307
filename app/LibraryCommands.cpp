#include "app/LibraryCommands.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>

#include "app/Faults.h"
#include "app/LibraryKind.h"
#include "app/Sheet.h"
#include "app/Store.h"
#include "app/Text.h"
#include "zymcore/calculations/ZYMTemperatureValueTransformer.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/SafeJSON.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/platform/NSJSONSerialization.h"
#include "zymcore/platform/NSUserDefaults.h"

namespace zym::host {
namespace {

struct Options {
  std::string kind;
  std::string name;
  std::string like;
  std::vector<std::string> assignments;
  bool asJSON = false;
  bool isForced = false;
};

constexpr std::size_t nearestShown = 10;

void printJSON(const PlistValue& tree) {
  NSError error;
  const auto json = safeDataWithJSONObject_options(tree, NSJSONWritingPrettyPrinted, &error);
  if (!json) throw InputError("can't be written as JSON: " + error.localizedDescription);
  std::cout << *json << '\n';
}

void printTable(const Table& table) {
  for (const std::string& line : table.lines()) std::cout << line << '\n';
}

std::string nameOf(const LibraryKind& kind, const PlistDictionary& record) {
  return printable(record.stringValue(kind.nameKey));
}

void listAll(const LibraryKind& kind, const PlistArray& records) {
  std::vector<Table::Column> columns{{"Name", Table::Cells::Texts}};
  for (const RecordValue& value : kind.values) {
    if (value.show != RecordValue::Show::InList) continue;
    columns.push_back({std::string(value.label), Table::Cells::Quantities});
  }
  Table table(std::move(columns));
  for (const PlistDictionary& record : PlistRows(&records)) {
    std::vector<std::string> cells{nameOf(kind, record)};
    for (const RecordValue& value : kind.values) {
      if (value.show != RecordValue::Show::InList) continue;
      cells.push_back(shortened(printable(value.toDisplay(record.find(value.key))), 40));
    }
    table.addRow(std::move(cells));
  }
  printTable(table);
}

struct Scored {
  double score;
  const PlistDictionary* record;
};

std::vector<Scored> nearestTo(const std::string& text, const LibraryKind& kind,
                              const PlistArray& records) {
  std::vector<Scored> scored;
  for (const PlistDictionary& record : PlistRows(&records)) {
    const double score = similarityWithString(text, record.stringValue(kind.nameKey));
    if (score > 0) scored.push_back({score, &record});
  }
  std::ranges::stable_sort(scored, std::greater(), &Scored::score);
  if (scored.size() > nearestShown) scored.resize(nearestShown);
  return scored;
}

void list(const Options& options) {
  const LibraryKind& kind = libraryKindNamed(options.kind);
  openStore();
  const PlistArray records = recordsOf(kind);
  if (options.like.empty()) {
    options.asJSON ? printJSON(records) : listAll(kind, records);
    return;
  }
  PlistArray rows;
  Table table({{"Score", Table::Cells::Quantities}, {"Name", Table::Cells::Texts}});
  for (const Scored& near : nearestTo(options.like, kind, records)) {
    PlistDictionary row = *near.record;
    row.set(KeyName("Score"), near.score);
    rows.append(row);
    const PlistValue score(near.score);
    table.addRow({localizedStringWithValue_decimalPlaces(&score, 3), nameOf(kind, *near.record)});
  }
  options.asJSON ? printJSON(rows) : printTable(table);
}

Table stepsOf(const PlistDictionary& schedule) {
  Table table({{"Step", Table::Cells::Texts},
               {"Temperature", Table::Cells::Quantities},
               {"Duration", Table::Cells::Quantities}});
  for (const PlistDictionary& step : schedule.rows(keys::Steps)) {
    table.addRow({printable(step.stringValue(keys::StepType)),
                  ZYMTemperatureValueTransformer::convertForDisplay(step.find(keys::Temperature)),
                  localizedStringWithValue_decimalPlaces(step.find(keys::Duration), 0) + " min"});
  }
  return table;
}

void show(const Options& options) {
  const LibraryKind& kind = libraryKindNamed(options.kind);
  openStore();
  const PlistDictionary record = recordNamed(kind, options.name);
  if (options.asJSON) {
    printJSON(record);
    return;
  }
  Sheet sheet(std::cout, Sheet::Look::Plain);
  sheet.title(nameOf(kind, record));
  Table table({{"", Table::Cells::Texts}, {"", Table::Cells::Texts}});
  for (const RecordValue& value : kind.values) {
    table.addRow({std::string(value.label), printable(value.toDisplay(record.find(value.key)))});
  }
  sheet.section("Values", table);
  sheet.section("Steps", stepsOf(record));
}

const LibraryKind& editable(const std::string& name) {
  const LibraryKind& kind = libraryKindNamed(name);
  if (!kind.library) throw UsageError(std::string(kind.plural) + " can't be changed");
  return kind;
}

void create(const Options& options) {
  const LibraryKind& kind = editable(options.kind);
  openStore();
  PlistDictionary values;
  setValues(kind, values, options.assignments);  // before anything is stored
  PlistDictionary record = kind.library().createItem();
  record.set(kind.nameKey, options.name);
  for (const PlistEntry& entry : values) record.set(entry.key, entry.value);
  kind.library().updateItem(record);
}

void edit(const Options& options) {
  const LibraryKind& kind = editable(options.kind);
  openStore();
  PlistDictionary record = recordNamed(kind, options.name);
  setValues(kind, record, options.assignments);
  kind.library().updateItem(record);
}

void copy(const Options& options) {
  const LibraryKind& kind = editable(options.kind);
  openStore();
  const PlistDictionary record = recordNamed(kind, options.name);
  const auto made = kind.library().duplicateItemWithUUID(record.stringValue(keys::UUID));
  if (!made) throw InputError("several records share the identity of '" + options.name + "'");
  std::cout << nameOf(kind, *made) << '\n';
}

bool isConfirmed(const std::string& question) {
  if (!isatty(STDIN_FILENO)) return true;
  std::cerr << question << " [y/N] ";
  std::string answer;
  return std::getline(std::cin, answer) && (answer == "y" || answer == "Y" || answer == "yes");
}

void remove(const Options& options) {
  const LibraryKind& kind = editable(options.kind);
  openStore();
  const PlistDictionary record = recordNamed(kind, options.name);
  const std::string question =
      "Remove the " + std::string(kind.singular) + " '" + nameOf(kind, record) + "'?";
  if (!options.isForced && !isConfirmed(question)) return;
  kind.library().removeItemWithUUID(std::string(record.stringValue(keys::UUID)));
}

void setDefaultProfile(const Options& options) {
  openStore();
  if (options.name.empty()) {
    std::cout << printable(
                     ZYMProfiles::sharedInstance().defaultProfile().stringValue(keys::ProfileName))
              << '\n';
    return;
  }
  const PlistDictionary profile = recordNamed(libraryKindNamed("profiles"), options.name);
  NSUserDefaults::standardUserDefaults().setObject_forKey(
      std::string(profile.stringValue(keys::UUID)), keys::UUIDForDefaultProfile);
}

using Run = void (*)(const Options&);

CLI::App* add(CLI::App& program, const char* name, const char* description,
              const std::shared_ptr<Options>& options, Run run) {
  CLI::App* const command = program.add_subcommand(name, description);
  command->fallthrough();
  command->callback([options, run] { run(*options); });
  return command;
}

void addKind(CLI::App& command, Options& options) {
  command.add_option("KIND", options.kind, "One of " + libraryKindNames())->required();
}

void addName(CLI::App& command, Options& options) {
  command
      .add_option("NAME", options.name,
                  "Its name, a beginning of it that no other has, or its UUID")
      ->required();
}

}  // namespace

void addLibraryCommands(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* command = add(program, "list", "List the records of a library.", options, list);
  addKind(*command, *options);
  command->add_option("--like", options->like, "The nearest names to TEXT, with their scores")
      ->type_name("TEXT");
  command->add_flag("--json", options->asJSON, "Print the records as JSON and nothing else");

  command = add(program, "show", "Show a record of a library.", options, show);
  addKind(*command, *options);
  addName(*command, *options);
  command->add_flag("--json", options->asJSON, "Print the record as JSON and nothing else");

  command = add(program, "new", "Add a record to a library.", options, create);
  addKind(*command, *options);
  command->add_option("NAME", options->name, "The name of the new record")->required();
  command->add_option("KEY=VALUE", options->assignments, "Values, in your units");
  command->footer("Example:\n  zym new fermentable 'My Malt' Extract=80 'Color=8 EBC' IsGrain=yes");

  command = add(program, "edit", "Change values of a record.", options, edit);
  addKind(*command, *options);
  addName(*command, *options);
  command->add_option("KEY=VALUE", options->assignments, "Values, in your units")->required();
  command->footer("Example:\n  zym edit profile Kitchen 'PreBoilVolume=14 l' BoilDuration=60");

  command = add(program, "copy", "Copy a record, and say the name of the copy.", options, copy);
  addKind(*command, *options);
  addName(*command, *options);

  command = add(program, "remove", "Remove a record. Asks first on a terminal.", options, remove);
  addKind(*command, *options);
  addName(*command, *options);
  command->add_flag("--force", options->isForced, "Don't ask");

  CLI::App* const profile = program.add_subcommand("profile", "The equipment of new recipes.");
  profile->require_subcommand(1)->fallthrough();
  command = add(*profile, "default", "Choose the default profile, or say which it is.", options,
                setDefaultProfile);
  command->add_option("NAME", options->name, "A profile");
}

}  // namespace zym::host
