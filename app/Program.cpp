#include "app/Program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "app/BatchCommands.h"
#include "app/CalcCommand.h"
#include "app/Faults.h"
#include "app/ImageCommands.h"
#include "app/ImportCommand.h"
#include "app/LibraryCommands.h"
#include "app/RecipeCommands.h"
#include "app/RecordCommands.h"
#include "app/SettingsCommands.h"
#include "app/ShellCommand.h"
#include "app/Store.h"
#include "app/StoreCommand.h"
#include "app/UnitsCommand.h"

namespace zym::host {
namespace {

constexpr int badInput = 1;
constexpr int badUsage = 2;

int parse(std::vector<std::string> arguments, CalledFrom caller) {
  int exitCode = 0;
  CLI::App program(
      "zym keeps a brewer's recipes, batches and ingredients, predicts what a beer recipe will\n"
      "produce, and works out what a batch did produce.",
      "zym");
  program.set_version_flag("--version", "zym " ZYM_VERSION);
  program.require_subcommand(0, 1);
  program.footer("'zym COMMAND --help' tells all about a command.");
  std::string dataFolder;
  if (caller == CalledFrom::Process) {
    program.add_option("--data", dataFolder, "The folder of the store and the settings")
        ->type_name("DIR");
    program.parse_complete_callback([&dataFolder] { useDataFolder(dataFolder); });
    addShellCommand(program, exitCode);
  }
  addCalcCommand(program, exitCode);
  addRecipeCommands(program);
  addRecordCommands(program);
  addBatchCommands(program);
  addImageCommands(program);
  addImportCommand(program, exitCode);
  addLibraryCommands(program);
  addUnitsCommand(program);
  addSettingsCommands(program);
  addStoreCommand(program, exitCode);
  std::ranges::reverse(arguments);
  try {
    program.parse(std::move(arguments));
  } catch (const CLI::Success& request) {
    return program.exit(request);
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  if (program.get_subcommands().empty()) throw UsageError("give a command");
  return exitCode;
}

}  // namespace

int runProgram(std::vector<std::string> arguments, CalledFrom caller) {
  try {
    return parse(std::move(arguments), caller);
  } catch (const UsageError& error) {
    std::cerr << "zym: " << error.what() << "\nzym --help tells how it is called.\n";
    return badUsage;
  } catch (const std::exception& error) {
    std::cerr << "zym: " << error.what() << '\n';
    return badInput;
  }
}

}  // namespace zym::host
