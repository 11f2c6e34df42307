#include "app/commands/LibraryCommands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "app/session/Store.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Output.h"
#include "app/terminal/Sheet.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/LibraryKind.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"

namespace zym::host {
namespace {

struct Options {
  std::string kind;
  std::string name;
  std::string like;
  bool asJSON = false;
};

constexpr std::size_t nearestShown = 10;

std::string nameOf(const LibraryKind& kind, const PlistDictionary& record) {
  return printable(record.stringValue(kind.nameKey()));
}

void listAll(const LibraryKind& kind, const PlistArray& records) {
  std::vector<Table::Column> columns{{label("Name"), Table::Cells::Texts}};
  for (const RecordValue& value : kind.values) {
    if (value.show != RecordValue::Show::InList) continue;
    columns.push_back({label(value.label), Table::Cells::Quantities});
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
    const double score = similarityWithString(text, record.stringValue(kind.nameKey()));
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
  Table table({{label("Score"), Table::Cells::Quantities}, {label("Name"), Table::Cells::Texts}});
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
  Table table({{label("Step"), Table::Cells::Texts},
               {label("Temperature"), Table::Cells::Quantities},
               {label("Duration"), Table::Cells::Quantities}});
  for (const PlistDictionary& step : schedule.rows(keys::Steps)) {
    table.addRow({printable(label(step.stringValue(keys::StepType))),
                  ZYMTemperatureValueTransformer::convertForDisplay(step.find(keys::Temperature)),
                  localizedStringWithValue_decimalPlaces(step.find(keys::Duration), 0) + " " +
                      label("min")});
  }
  return table;
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

const LibraryKind& editable(const LibraryKind& kind) {
  if (!kind.library) throw UsageError(label("%1 can't be changed", {label(kind.plural)}));
  return kind;
}

}  // namespace

void showRecord(const LibraryKind& kind, const std::string& name, bool asJSON) {
  const PlistDictionary record = recordNamed(kind, name);
  if (asJSON) {
    printJSON(record);
    return;
  }
  Sheet sheet(std::cout, Sheet::Look::Plain);
  sheet.title(nameOf(kind, record));
  Table table({{"", Table::Cells::Texts}, {"", Table::Cells::Texts}});
  for (const RecordValue& value : kind.values) {
    table.addRow({label(value.label), printable(value.toDisplay(record.find(value.key)))});
  }
  sheet.section(label("Values"), table);
  sheet.section(label("Steps"), stepsOf(record));
}

PlistDictionary createRecord(const LibraryKind& kind, const std::string& name,
                             const std::vector<std::string>& assignments) {
  PlistDictionary values;
  setValues(editable(kind), values, assignments);  // before anything is stored
  requirePlaceForName(
      kind,
      std::string(values.contains(kind.nameKey()) ? values.stringValue(kind.nameKey()) : name));
  PlistDictionary record = kind.library().createItem();
  record.set(kind.nameKey(), name);
  for (const PlistEntry& entry : values) record.set(entry.key, entry.value);
  kind.library().updateItem(record);
  return record;
}

PlistDictionary editRecord(const LibraryKind& kind, const std::string& name,
                           const std::vector<std::string>& assignments) {
  PlistDictionary record = recordNamed(editable(kind), name);
  const std::string before(record.stringValue(kind.nameKey()));
  setValues(kind, record, assignments);
  const std::string after(record.stringValue(kind.nameKey()));
  if (after != before) {
    requireChosen(kind, record);
    requirePlaceForName(kind, after);
  }
  kind.library().updateItem(record);
  return record;
}

PlistDictionary copyRecord(const LibraryKind& kind, const std::string& name) {
  const PlistDictionary record = recordNamed(editable(kind), name);
  const auto made = kind.library().duplicateItemWithUUID(record.stringValue(keys::UUID));
  if (!made)
    throw InputError(label("several records share the identity of '%1'", {printable(name)}));
  return *made;
}

void removeRecord(const LibraryKind& kind, const std::string& name, bool isForced) {
  const PlistDictionary record = recordNamed(editable(kind), name);
  requireChosen(kind, record);
  const std::string question =
      label("Remove this %1: '%2'?", {label(kind.singular), nameOf(kind, record)});
  if (!isForced && !isConfirmed(question)) return;
  kind.library().removeItemWithUUID(std::string(record.stringValue(keys::UUID)));
}

void addLibraryCommands(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const all = program.add_subcommand("list", "List the records of a library.");
  all->fallthrough();
  all->add_option("KIND", options->kind, "One of " + libraryKindNames())->required();
  all->add_option("--like", options->like, "The nearest names to TEXT, with their scores")
      ->type_name("TEXT");
  all->add_flag("--json", options->asJSON, "Print the records as JSON and nothing else");
  all->callback([options] { list(*options); });

  CLI::App* const profile = program.add_subcommand("profile", "The equipment of new recipes.");
  profile->require_subcommand(1)->fallthrough();
  CLI::App* const byDefault =
      profile->add_subcommand("default", "Choose the default profile, or say which it is.");
  byDefault->fallthrough();
  byDefault->add_option("NAME", options->name, "A profile");
  byDefault->callback([options] { setDefaultProfile(*options); });
}

}  // namespace zym::host
