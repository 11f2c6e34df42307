#include "app/Program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "app/commands/BackupCommands.h"
#include "app/commands/BatchCommands.h"
#include "app/commands/CalcCommand.h"
#include "app/commands/ExportCommand.h"
#include "app/commands/ImageCommands.h"
#include "app/commands/ImportCommand.h"
#include "app/commands/LibraryCommands.h"
#include "app/commands/OrderCommands.h"
#include "app/commands/PageCommands.h"
#include "app/commands/PlanCommands.h"
#include "app/commands/RecipeCommands.h"
#include "app/commands/RecordCommands.h"
#include "app/commands/SettingsCommands.h"
#include "app/commands/ShellCommand.h"
#include "app/commands/StepCommands.h"
#include "app/commands/StockCommands.h"
#include "app/commands/StoreCommand.h"
#include "app/commands/SuggestCommands.h"
#include "app/commands/UnitsCommand.h"
#include "app/session/Store.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Words.h"

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
    addShellCommand(
        program,
        [](std::vector<std::string> words) {
          return runProgram(std::move(words), CalledFrom::Shell);
        },
        exitCode);
  }
  addCalcCommand(program, exitCode);
  addRecipeCommands(program);
  addRecordCommands(program);
  addBatchCommands(program);
  addStockCommands(program);
  addOrderCommands(program);
  addPlanCommands(program);
  addSuggestCommands(program);
  addPageCommands(program, exitCode);
  addImageCommands(program);
  addImportCommand(program, exitCode);
  addExportCommand(program, exitCode);
  addLibraryCommands(program);
  addUnitsCommand(program);
  addSettingsCommands(program);
  addStepCommands(program);
  addStoreCommand(program, exitCode);
  addBackupCommands(program);
  std::ranges::reverse(arguments);
  try {
    program.parse(std::move(arguments));
  } catch (const CLI::Success& request) {
    return program.exit(request);
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  if (program.get_subcommands().empty()) throw UsageError(label("give a command"));
  return exitCode;
}

}  // namespace

int runProgram(std::vector<std::string> arguments, CalledFrom caller) {
  try {
    return parse(std::move(arguments), caller);
  } catch (const UsageError& error) {
    std::cerr << "zym: " << error.what() << '\n'
              << label("zym --help tells how it is called.") << '\n';
    return badUsage;
  } catch (const std::exception& error) {
    std::cerr << "zym: " << error.what() << '\n';
    return badInput;
  }
}

}  // namespace zym::host
