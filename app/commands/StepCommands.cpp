#include "app/commands/StepCommands.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "app/session/Store.h"
#include "app/sheets/Figures.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Output.h"
#include "app/terminal/Text.h"
#include "app/values/LibraryKind.h"
#include "app/values/RecordValue.h"
#include "app/values/ValueForms.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/platform/text/NSUUID.h"

namespace zym::host {
namespace {

struct Options {
  std::string schedule;
  std::string type, temperature, duration;
  std::vector<std::string> assignments;
  std::size_t step = 0;  // numbers from 1; 0 for none
  std::size_t place = 0;
  bool asJSON = false;
};

constexpr RecordValue stepValues[] = {
    {keys::StepType, "Type", RecordValue::Show::InList, show::text, take::word<words::stepTypes>},
    {keys::Temperature, "Temperature", RecordValue::Show::InList, show::temperature,
     take::temperature},
    {keys::Duration, "Duration", RecordValue::Show::InList, show::minutes, take::minutes},
};

using Change = void (*)(PlistArray& steps, const Options& options);

std::size_t positionOf(std::size_t number, const PlistArray& steps) {
  if (number >= 1 && number <= steps.size()) return number - 1;
  throw UsageError(label("there is no step %1; the schedule has %2",
                         {std::to_string(number), std::to_string(steps.size())}));
}

void insertAt(PlistArray& steps, std::size_t position, const PlistValue& step) {
  PlistArray changed;
  for (std::size_t i = 0; i <= steps.size(); ++i) {
    if (i == position) changed.append(step);
    if (i < steps.size()) changed.append(*steps.find(i));
  }
  steps = std::move(changed);
}

void addStep(PlistArray& steps, const Options& options) {
  PlistDictionary step{{keys::UUID, NSUUID::UUIDString()}};
  step.set(keys::StepType, take::wordOf(words::stepTypes, options.type));
  step.set(keys::Temperature, take::temperature(options.temperature));
  step.set(keys::Duration, take::minutes(options.duration));
  const bool isLast = options.place == 0 || options.place == steps.size() + 1;
  insertAt(steps, isLast ? steps.size() : positionOf(options.place, steps), step);
}

void editStep(PlistArray& steps, const Options& options) {
  PlistDictionary step = *steps.find(positionOf(options.step, steps))->dictionary();
  for (const std::string& text : options.assignments) {
    const Assignment given = assignmentOf(text);
    const RecordValue* value = valueNamed(stepValues, given.key);
    if (!value) {
      refuseKey("step", given.key,
                std::vector<std::string_view>{"StepType", "Temperature", "Duration"});
    }
    step.set(value->key, value->toStorage(given.text));
  }
  const std::size_t position = positionOf(options.step, steps);
  steps.remove(position);
  insertAt(steps, position, step);
}

void moveStep(PlistArray& steps, const Options& options) {
  const std::size_t from = positionOf(options.step, steps);
  const std::size_t to = positionOf(options.place, steps);
  const PlistValue step = *steps.find(from);
  steps.remove(from);
  insertAt(steps, to, step);
}

void removeStep(PlistArray& steps, const Options& options) {
  steps.remove(positionOf(options.step, steps));
}

void printSteps(const PlistArray& steps) {
  Table table({{"", Table::Cells::Quantities},
               {label("Step"), Table::Cells::Texts},
               {label("Temperature"), Table::Cells::Quantities},
               {label("Duration"), Table::Cells::Quantities}});
  std::size_t number = 0;
  for (const PlistDictionary& step : PlistRows(&steps)) {
    table.addRow({std::to_string(++number), wordAt(step, keys::StepType),
                  temperatureAt(step, keys::Temperature), minutesAt(step, keys::Duration)});
  }
  printTable(table);
}

void change(const Options& options, Change how) {
  openStore();
  const LibraryKind& kind = libraryKindNamed("schedules");
  const PlistDictionary schedule = recordNamed(kind, options.schedule);
  requireChosen(kind, schedule);
  const std::string uuid(schedule.stringValue(keys::UUID));
  ZYMMashSchedules& schedules = ZYMMashSchedules::sharedInstance();
  PlistArray steps = schedules.allStepsForMashScheduleWithUUID(uuid).value_or(PlistArray());
  how(steps, options);
  schedules.updateSteps_inMashScheduleWithUUID(&steps, uuid);
  options.asJSON ? printJSON(steps) : printSteps(steps);
}

}  // namespace

void addStepCommands(CLI::App& program) {
  CLI::App* const step =
      program.add_subcommand("step", "The steps of a mash schedule; each prints them all.");
  step->require_subcommand(1)->fallthrough();
  const auto options = std::make_shared<Options>();
  const auto add = [&](const char* name, const char* description, Change how) {
    CLI::App* const command = step->add_subcommand(name, description);
    command->fallthrough();
    command->add_option("SCHEDULE", options->schedule, "A mash schedule")->required();
    command->add_flag("--json", options->asJSON, "Print the steps as JSON and nothing else");
    command->callback([options, how] { change(*options, how); });
    return command;
  };
  const auto withStep = [&](CLI::App* command) {
    command->add_option("STEP", options->step, "Its number, from 1")->required();
    return command;
  };
  CLI::App* command = add("add", "Add a step.", addStep);
  command->add_option("TYPE", options->type, "Such as 'Rest at', or a beginning of it")->required();
  command->add_option("TEMPERATURE", options->temperature, "In your unit, or with one")->required();
  command->add_option("MINUTES", options->duration, "How long")->required();
  command->add_option("--at", options->place, "Its number; without it the last");
  command->footer("Example:\n  zym step add 'My Mash' rest '62 C' 45 --at 2");
  withStep(add("edit", "Change values of a step.", editStep))
      ->add_option("KEY=VALUE", options->assignments, "Type, Temperature or Duration")
      ->required();
  withStep(add("move", "Give a step another place.", moveStep))
      ->add_option("PLACE", options->place, "Its new number")
      ->required();
  withStep(add("remove", "Remove a step.", removeStep));
}

}  // namespace zym::host
