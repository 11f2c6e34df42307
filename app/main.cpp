#include <CLI/CLI.hpp>
#include <iostream>

#include "app/CalcCommand.h"
#include "app/Faults.h"
#include "app/Host.h"
#include "app/LibraryCommands.h"
#include "app/SettingsCommands.h"
#include "app/Store.h"
#include "app/StoreCommand.h"
#include "app/UnitsCommand.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace {

constexpr int badInput = 1;
constexpr int badUsage = 2;

int run(int argc, char** argv) {
  int exitCode = 0;
  CLI::App program(
      "zym predicts what a beer recipe will produce and works out what a batch did produce.",
      "zym");
  program.set_version_flag("--version", "zym " ZYM_VERSION);
  program.require_subcommand(1);
  program.footer("'zym COMMAND --help' tells all about a command.");
  std::string dataFolder;
  program.add_option("--data", dataFolder, "The folder of the store and the settings")
      ->type_name("DIR");
  program.parse_complete_callback([&dataFolder] { zym::host::useDataFolder(dataFolder); });
  zym::host::addCalcCommand(program, exitCode);
  zym::host::addUnitsCommand(program);
  zym::host::addLibraryCommands(program);
  zym::host::addSettingsCommands(program);
  zym::host::addStoreCommand(program, exitCode);
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& request) {
    return program.exit(request);
  } catch (const CLI::ParseError& error) {
    std::cerr << "zym: " << error.what() << "\nzym --help tells how it is called.\n";
    return badUsage;
  }
  return exitCode;
}

}  // namespace

int main(int argc, char** argv) {
  int exitCode = badInput;
  try {
    zym::host::setUpLibrary();
    exitCode = run(argc, argv);
  } catch (const zym::host::UsageError& error) {
    std::cerr << "zym: " << error.what() << "\nzym --help tells how it is called.\n";
    return badUsage;
  } catch (const std::exception& error) {
    std::cerr << "zym: " << error.what() << '\n';
  }
  zym::ZYMCoreDataModel::tearDown();
  std::cout.flush();
  if (!std::cout) {
    std::cerr << "zym: can't write to standard output\n";
    return badInput;
  }
  return exitCode;
}
