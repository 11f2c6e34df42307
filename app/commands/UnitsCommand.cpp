#include "app/commands/UnitsCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "app/session/Defaults.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Table.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "zymcore/platform/values/PlistValue.h"
#include "zymcore/transformers/ZYMBeerColorValueTransformer.h"
#include "zymcore/transformers/ZYMDistanceValueTransformer.h"
#include "zymcore/transformers/ZYMGravityValueTransformer.h"
#include "zymcore/transformers/ZYMHopWeightValueTransformer.h"
#include "zymcore/transformers/ZYMMaltColorValueTransformer.h"
#include "zymcore/transformers/ZYMPercentValueTransformer.h"
#include "zymcore/transformers/ZYMSaltWeightValueTransformer.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"
#include "zymcore/transformers/ZYMVolumeValueTransformer.h"
#include "zymcore/transformers/ZYMWaterGrainValueTransformer.h"
#include "zymcore/transformers/ZYMWeightValueTransformer.h"

namespace zym::host {
namespace {

struct Kind {
  std::string_view name;
  std::string_view storedIn;
  std::string (*toStorage)(const PlistValue*);
  std::string (*toDisplay)(const PlistValue*);
};

template <class Transformer>
constexpr Kind kind(std::string_view name, std::string_view storedIn) {
  return {name, storedIn, &Transformer::convertForStorage, &Transformer::convertForDisplay};
}

constexpr Kind kinds[] = {
    kind<ZYMVolumeValueTransformer>("volume", "ml"),
    kind<ZYMWeightValueTransformer>("weight", "g"),
    kind<ZYMHopWeightValueTransformer>("hopweight", "g"),
    kind<ZYMSaltWeightValueTransformer>("saltweight", "g"),
    kind<ZYMGravityValueTransformer>("gravity", "SG"),
    kind<ZYMBeerColorValueTransformer>("beercolor", "SRM"),
    kind<ZYMMaltColorValueTransformer>("maltcolor", "°L"),
    kind<ZYMTemperatureValueTransformer>("temperature", "°C"),
    kind<ZYMWaterGrainValueTransformer>("watergrain", "l/kg"),
    kind<ZYMDistanceValueTransformer>("distance", "m"),
    kind<ZYMPercentValueTransformer>("percent", "%"),
};

struct Options {
  std::string kind;
  std::string text;
  std::vector<std::string> defaults;
};

std::string kindNames() {
  std::string names;
  for (const Kind& one : kinds) names.append(names.empty() ? "" : ", ").append(one.name);
  return names;
}

void showUnits(const Options& options) {
  const auto found = std::ranges::find(kinds, options.kind, &Kind::name);
  if (found == std::end(kinds)) {
    throw UsageError(label("unknown kind '%1'; choose %2", {printable(options.kind), kindNames()}));
  }
  setDefaultsForThisRun(options.defaults);
  const PlistValue typed(options.text);
  const PlistValue stored(found->toStorage(&typed));
  const std::string shown = found->toDisplay(&stored);

  Table table({{"", Table::Cells::Texts}, {"", Table::Cells::Texts}});
  table.addRow({label("typed"), printable(options.text)});
  table.addRow({label("stored"), *stored.string() + " " + std::string(found->storedIn)});
  table.addRow({label("shown"), printable(shown)});
  for (const std::string& line : table.lines()) std::cout << line << '\n';
}

}  // namespace

void addUnitsCommand(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand(
      "units", "Show how a text that you type is read into storage and shown again.");
  command->add_option("KIND", options->kind, "One of " + kindNames())->required();
  command->add_option("TEXT", options->text, "A number, with a unit or without")->required();
  command
      ->add_option("--default", options->defaults,
                   "Set a user default for this run; may be repeated")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
  command->footer(defaultsHelp() +
                  "\nExamples:\n"
                  "  zym units volume '5 gal'\n"
                  "  zym units --default GravityUnits=Plato gravity 12\n"
                  "  zym units --default Locale=de_DE weight '4,5 kg'");
  command->callback([options] { showUnits(*options); });
}

}  // namespace zym::host
