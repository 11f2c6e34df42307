#include "app/commands/BackupCommands.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "app/session/Backup.h"
#include "app/session/Store.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Progress.h"
#include "app/terminal/Words.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSOperationQueue.h"
#include "zymcore/platform/host/NSBundle.h"

namespace zym::host {
namespace {

struct Options {
  std::string file;
  std::string folder;
};

void bringExamples() {
  openStore();
  if (!NSBundle::mainBundle().pathForResource_ofType("Examples", "plist")) {
    throw InputError(label("there are no examples here"));
  }
  ZYMRecipes& recipes = ZYMRecipes::sharedInstance();
  const std::size_t before = recipes.summariesForAllRecipes().size();
  constexpr std::size_t steps = 100;
  const Progress progress(steps);
  recipes.unbundleExamplesWithProgressHandler_completionHandler(
      [&](float done) { progress.show(static_cast<std::size_t>(done * steps)); }, {});
  NSOperationQueue::mainQueue().waitUntilAllOperationsAreFinished();
  const std::size_t after = recipes.summariesForAllRecipes().size();
  std::cout << label("%1 new recipes, %2 in all",
                     {std::to_string(after - before), std::to_string(after)})
            << '\n';
}

}  // namespace

void addBackupCommands(CLI::App& program) {
  {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = program.add_subcommand(
        "backup", "Write all data into one file: the store, pictures and settings.");
    command->fallthrough();
    command->add_option("FILE", options->file, "A tar archive, compressed (.tar.gz)")->required();
    command->callback([options] {
      openStore();
      backUp(options->file);
    });
  }
  {
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        program.add_subcommand("restore", "Make a backup the data folder, which must be empty.");
    command->fallthrough();
    command->add_option("FILE", options->file, "A backup")->required();
    command->add_option("--into", options->folder, "Another folder, for --data");
    command->callback([options] { restore(options->file, options->folder); });
  }
  CLI::App* const examples =
      program.add_subcommand("examples", "Bring the example recipes into the store.");
  examples->fallthrough();
  examples->callback([] { bringExamples(); });
}

}  // namespace zym::host
