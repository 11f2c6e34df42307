#include "app/commands/ImportCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>

#include "app/session/Import.h"
#include "app/session/Store.h"
#include "app/sheets/Figures.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Output.h"
#include "app/terminal/Progress.h"
#include "app/terminal/Text.h"
#include "app/values/Items.h"
#include "app/values/ValueForms.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/interchange/native/ZYMIngFile.h"
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/platform/events/NSOperationQueue.h"
#include "zymcore/platform/text/NSString.h"

namespace zym::host {
namespace {

namespace fs = std::filesystem;

struct Options {
  std::vector<std::string> paths;
  bool isDryRun = false;
  bool isVerbose = false;
  bool asJSON = false;
};

constexpr std::string_view extensions[] = {".xml", ".wm2", ".wmr", ".rec", ".ing"};

/// The files themselves, and those of a known extension below the folders, by name.
std::vector<std::string> filesOf(const std::vector<std::string>& paths) {
  std::vector<std::string> files;
  for (const std::string& path : paths) {
    std::error_code fault;
    if (!fs::is_directory(path, fault)) {
      files.push_back(path);
      continue;
    }
    std::vector<std::string> found;
    const auto options = fs::directory_options::skip_permission_denied;
    for (auto at = fs::recursive_directory_iterator(path, options, fault);
         !fault && at != fs::recursive_directory_iterator(); at.increment(fault)) {
      const std::string extension = at->path().extension().string();
      std::error_code ignored;
      if (std::ranges::find(extensions, extension) != std::end(extensions) &&
          at->is_regular_file(ignored)) {
        found.push_back(at->path().string());
      }
    }
    std::ranges::sort(found);
    files.insert(files.end(), found.begin(), found.end());
  }
  return files;
}

/// What came of a file.
struct Outcome {
  std::string file;
  std::optional<PlistDictionary> recipe;  // recalculated
  std::vector<ImportMatch> matches;
  std::string reason;
  std::size_t ingredients = 0;

  [[nodiscard]] bool isGood() const { return recipe || ingredients > 0; }
};

/// A word on what is read, where the name doesn't say that it is one of these.
std::string reasonFor(const std::string& file, const std::string& reason) {
  const std::string extension = fs::path(file).extension().string();
  if (std::ranges::find(extensions, extension) != std::end(extensions)) return reason;
  return reason + "; " + label("what is read ends in .xml, .wm2, .wmr, .rec or .ing");
}

bool isPackage(const std::string& file) {
  return fs::path(file).extension() == ".ing";
}

/// What a package holds, of which nothing is stored.
Outcome tryPackage(const std::string& file) {
  ZYMFileImportOperation operation(file);
  const auto package = operation.packageInFile();
  Outcome outcome{file, std::nullopt, {}, operation.failureReason().value_or(""), 0};
  if (!package) return outcome;
  outcome.ingredients = ZYMIngFile::countOfIngredients(*package);
  if (outcome.ingredients == 0) outcome.reason = label("no ingredients");
  return outcome;
}

Outcome tryFile(const std::string& file) {
  if (isPackage(file)) return tryPackage(file);
  try {
    RecipeToImport found = recipeToImport(file);
    return {file, std::move(found.recipe), std::move(found.matches), {}, 0};
  } catch (const InputError& error) {
    return {file, std::nullopt, {}, reasonFor(file, error.what()), 0};
  }
}

Outcome importFile(const std::string& file) {
  const auto operation = std::make_shared<ZYMFileImportOperation>(file);
  operation->setPrepareRecipe(prepareImport);
  NSOperationQueue::mainQueue().addOperation(operation);
  NSOperationQueue::mainQueue().waitUntilAllOperationsAreFinished();
  Outcome outcome{file, std::nullopt, operation->matches(), operation->failureReason().value_or(""),
                  operation->ingredientCount()};
  if (isPackage(file) && !outcome.isGood() && outcome.reason.empty()) {
    outcome.reason = label("no ingredients");
  }
  if (!outcome.reason.empty()) outcome.reason = reasonFor(file, outcome.reason);
  if (const auto& uuid = operation->uuidOfRecipe()) {
    outcome.recipe = documentOf({Item::Kind::Recipe, "", *uuid});
  }
  return outcome;
}

std::string scoreOf(double similarity) {
  const PlistValue score(similarity);
  return localizedStringWithValue_decimalPlaces(&score, 2);
}

/// In the units of the user; empty where there is none.
std::string figureOf(const ImportMatch& match, const std::optional<double>& figure) {
  if (!figure) return {};
  const PlistValue value(*figure);
  return match.kind == words::Fermentable ? show::maltColor(&value) : show::percent(&value);
}

std::string figuresOf(const ImportMatch& match) {
  if (!match.figureInFile) return {};
  return figureOf(match, match.figureInFile) + " -> " + figureOf(match, match.figureMatched);
}

void printMatches(const Outcome& outcome) {
  Table table({{"", Table::Cells::Texts},
               {"", Table::Cells::Texts},
               {"", Table::Cells::Texts},
               {"", Table::Cells::Texts},
               {"", Table::Cells::Texts},
               {"", Table::Cells::Texts}});
  for (const ImportMatch& match : outcome.matches) {
    table.addRow({"    " + label(match.kind), shortened(printable(match.textLookedUp), 40),
                  "-> " + shortened(printable(match.nameMatched), 40), scoreOf(match.similarity),
                  figuresOf(match), isPoor(match) ? label("POOR") : ""});
  }
  printTable(table);
}

void print(const Outcome& outcome, bool withMatches) {
  if (outcome.ingredients > 0) {
    std::cout << printable(outcome.file) << ": "
              << label("%1 ingredients", {std::to_string(outcome.ingredients)}) << '\n';
    return;
  }
  if (!outcome.recipe) {
    std::cout << printable(outcome.file) << ": " << printable(outcome.reason) << '\n';
    return;
  }
  const PlistDictionary& recipe = *outcome.recipe;
  std::cout << printable(outcome.file) << ": " << titleAt(recipe, keys::RecipeTitle) << ", "
            << label("OG") << " " << gravityAt(recipe, keys::ExpectedOriginalGravity) << ", "
            << label("FG") << " " << gravityAt(recipe, keys::ExpectedFinalGravity) << ", "
            << bitternessAt(recipe, keys::ExpectedIBU) << ", "
            << beerColorAt(recipe, keys::ExpectedColor) << '\n';
  if (withMatches) printMatches(outcome);
}

PlistDictionary recordOf(const Outcome& outcome) {
  PlistDictionary record{{KeyName("File"), stringByDroppingInvalidUTF8(outcome.file)}};
  if (outcome.recipe) {
    record.set(KeyName("Recipe"), *outcome.recipe);
  } else if (outcome.ingredients > 0) {
    record.set(KeyName("Ingredients"), static_cast<std::int64_t>(outcome.ingredients));
  } else {
    record.set(KeyName("Reason"), outcome.reason);
  }
  PlistArray matches;
  for (const ImportMatch& match : outcome.matches) {
    PlistDictionary row{{KeyName("Kind"), match.kind},
                        {KeyName("NameInFile"), match.nameInFile},
                        {KeyName("LookedUp"), match.textLookedUp},
                        {KeyName("Matched"), match.nameMatched},
                        {KeyName("Similarity"), match.similarity},
                        {KeyName("IsPoor"), isPoor(match) ? "1" : "0"}};
    if (match.figureInFile) row.set(KeyName("FigureInFile"), *match.figureInFile);
    if (match.figureMatched) row.set(KeyName("FigureMatched"), *match.figureMatched);
    matches.append(std::move(row));
  }
  record.set(KeyName("Matches"), std::move(matches));
  return record;
}

int importAll(const Options& options) {
  openStore();
  const std::vector<std::string> files = filesOf(options.paths);
  PlistArray records;
  std::size_t failed = 0;
  {
    const Progress progress(files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
      progress.show(i);
      const Outcome outcome = options.isDryRun ? tryFile(files[i]) : importFile(files[i]);
      if (!outcome.isGood()) ++failed;
      if (options.asJSON) {
        records.append(recordOf(outcome));
      } else {
        print(outcome, options.isDryRun || options.isVerbose);
      }
    }
  }
  if (options.asJSON) {
    printJSON(records);
  } else {
    std::cout << label(
                     options.isDryRun ? "%1 can be imported, %2 failed" : "%1 imported, %2 failed",
                     {std::to_string(files.size() - failed), std::to_string(failed)})
              << '\n';
  }
  return failed == 0 && !files.empty() ? 0 : 1;
}

}  // namespace

void addImportCommand(CLI::App& program, int& exitCode) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand(
      "import",
      "Import recipe files of other brewing programs (xml, rec), and our own (wm2, wmr, ing).");
  command->fallthrough();
  command->add_option("FILE", options->paths, "Files, or folders with files of recipes")
      ->required();
  command->add_flag("--dry-run", options->isDryRun,
                    "Store nothing; show what each name would be matched to, and how well");
  command->add_flag("--verbose", options->isVerbose, "Show what each name was matched to");
  command->add_flag("--json", options->asJSON, "Print JSON and nothing else");
  command->footer(
      "A line a file: the recipe and what it predicts, or why it failed; the others are imported\n"
      "all the same, and the exit code is 1. Every ingredient becomes the nearest one in your\n"
      "libraries, with the amounts, colour, yield and alpha acid of the file. Beside a match "
      "stand\n"
      "the figure of the file and that of your library; POOR marks one to look at.");
  command->callback([options, &exitCode] { exitCode = importAll(*options); });
}

}  // namespace zym::host
