#include "app/commands/SettingsCommands.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "app/session/Defaults.h"

namespace zym::host {

void addSettingsCommands(CLI::App& program) {
  struct Options {
    std::string key;
    std::string value;
  };
  const auto options = std::make_shared<Options>();
  CLI::App* const set = program.add_subcommand("set", "Keep a preference for all later runs.");
  set->fallthrough();
  set->add_option("KEY", options->key, "A preference")->required();
  set->add_option("VALUE", options->value, "Its value: a word or a number")->required();
  set->footer(defaultsHelp() + "\nExample:\n  zym set Units US");
  set->callback([options] { keepDefault(options->key, options->value); });

  CLI::App* const settings = program.add_subcommand("settings", "Show all preferences.");
  settings->fallthrough();
  settings->callback([] { std::cout << settingsInForce(); });
}

}  // namespace zym::host
