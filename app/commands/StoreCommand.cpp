#include "app/commands/StoreCommand.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>

#include "app/session/Store.h"
#include "app/terminal/Sheet.h"
#include "app/terminal/Table.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "zymcore/platform/objects/NSFetchRequest.h"
#include "zymcore/platform/objects/NSManagedObjectModel.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym::host {
namespace {

std::uintmax_t sizeOnDisk(const std::string& path) {
  std::uintmax_t size = 0;
  for (const char* suffix : {"", "-wal", "-shm"}) {
    std::error_code none;
    const std::uintmax_t part = std::filesystem::file_size(path + suffix, none);
    if (!none) size += part;
  }
  return size;
}

std::string inKilobytes(std::uintmax_t bytes) {
  return std::to_string((bytes + 1023) / 1024) + " kB";
}

/// Answers whether the store is sound.
bool storeInfo() {
  openStore();
  ZYMCoreDataModel& model = ZYMCoreDataModel::sharedInstance();
  Sheet sheet(std::cout, Sheet::Look::Plain);
  sheet.title(label("Store"));

  const std::vector<std::string> problems = model.persistentStoreCoordinator()->integrityProblems();
  Table about({{"", Table::Cells::Texts}, {"", Table::Cells::Texts}});
  about.addRow({label("File"), printable(storePath())});
  about.addRow({label("Model version"), printable(model.objectModel()->versionIdentifier())});
  about.addRow({label("Size on disk"), inKilobytes(sizeOnDisk(storePath()))});
  about.addRow({label("Integrity"), label(problems.empty() ? "sound" : "damaged")});
  for (const std::string& problem : problems) about.addRow({"", printable(problem)});
  sheet.section(label("About"), about);

  Table counts({{"", Table::Cells::Texts}, {"", Table::Cells::Quantities}});
  for (const NSEntityDescription& entity : model.objectModel()->entities()) {
    const auto count = model.mainObjectContext()->countForFetchRequest(
        NSFetchRequest::fetchRequestWithEntityName(entity.name()));
    counts.addRow({entity.name(), count ? std::to_string(*count) : label("unreadable")});
  }
  sheet.section(label("Records"), counts);
  return problems.empty();
}

}  // namespace

void addStoreCommand(CLI::App& program, int& exitCode) {
  CLI::App* const command = program.add_subcommand("store", "Tell about the store itself.");
  command->require_subcommand(1)->fallthrough();
  CLI::App* const info = command->add_subcommand(
      "info",
      "Where the store is, its version, how many records it has of each kind, its size on disk,\n"
      "and whether its file is sound. Exits with 1 when it is damaged.");
  info->fallthrough();
  info->callback([&exitCode] { exitCode = storeInfo() ? 0 : 1; });
}

}  // namespace zym::host
