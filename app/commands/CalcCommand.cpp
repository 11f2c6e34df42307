#include "app/commands/CalcCommand.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "app/session/Defaults.h"
#include "app/session/Documents.h"
#include "app/sheets/BatchSheet.h"
#include "app/sheets/RecipeSheet.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Output.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym::host {
namespace {

struct Options {
  std::vector<std::string> files;
  bool asJSON = false;
  std::vector<std::string> defaults;
};

/// Where recalculated documents go.
class Printer {
 public:
  virtual ~Printer() = default;
  virtual void print(const PlistDictionary& document) = 0;
  virtual void finish() {}
};

class SheetPrinter : public Printer {
 public:
  void print(const PlistDictionary& document) override {
    if (!isFirst_) std::cout << "\n\n";
    isFirst_ = false;
    if (kindOf(document) == DocumentKind::Batch) {
      writeBatch(sheet_, document);
    } else {
      writeRecipe(sheet_, document);
    }
  }

 private:
  Sheet sheet_ = sheetOnOutput();
  bool isFirst_ = true;
};

class JSONPrinter : public Printer {
 public:
  explicit JSONPrinter(bool isOneFile) : isOneFile_(isOneFile) {}

  void print(const PlistDictionary& document) override { documents_.append(document); }

  void finish() override {
    if (documents_.empty()) return;
    printJSON(isOneFile_ && documents_.size() == 1 ? *documents_.find(0) : PlistValue(documents_));
  }

 private:
  bool isOneFile_;
  PlistArray documents_;
};

void recalculate(PlistDictionary& document) {
  if (kindOf(document) == DocumentKind::Batch) {
    ZYMBeerCalculations::recalculateBatch(document);
  } else {
    ZYMBeerCalculations::recalculateBeerRecipe(document);
  }
}

/// Answers whether all of the file could be used.
bool processFile(const std::string& file, Printer& printer) {
  try {
    for (PlistDictionary& document : readDocuments(file)) {
      recalculate(document);
      printer.print(document);
    }
    return true;
  } catch (const InputError& error) {
    const std::string name = file == standardInput ? label("standard input") : printable(file);
    std::cerr << "zym: " << name << ": " << printable(error.what()) << '\n';
    return false;
  }
}

int calc(const Options& options) {
  setDefaultsForThisRun(options.defaults);
  std::unique_ptr<Printer> printer;
  if (options.asJSON) {
    printer = std::make_unique<JSONPrinter>(options.files.size() == 1);
  } else {
    printer = std::make_unique<SheetPrinter>();
  }
  bool isAllGood = true;
  for (const std::string& file : options.files) isAllGood &= processFile(file, *printer);
  printer->finish();
  return isAllGood ? 0 : 1;
}

}  // namespace

void addCalcCommand(CLI::App& program, int& exitCode) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = program.add_subcommand(
      "calc",
      "Recalculate recipes and batches, and print what they will produce or did produce:\n"
      "gravities, alcohol, bitterness, colour, volumes, and the part of each addition.");
  command->fallthrough();
  command
      ->add_option(
          "FILE", options->files,
          "Recipe or batch documents in native JSON, or a BeerXML file; - is standard input")
      ->required();
  command->add_flag(
      "--json", options->asJSON,
      "Print the recalculated document itself (an array for several files) and nothing else");
  command
      ->add_option("--default", options->defaults,
                   "Set a user default for this run; may be repeated")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
  command->footer(
      "Exits with 1 when a file can't be used; the others are printed all the same.\n\n" +
      defaultsHelp() +
      "\nExamples:\n"
      "  zym calc app/examples/strong-bitter.wm2\n"
      "  zym calc --default Units=US --default HopFormula=Rager strong-bitter.wm2\n"
      "  zym calc --json - < recipe.wm2 > recalculated.wm2");
  command->callback([options, &exitCode] { exitCode = calc(*options); });
}

}  // namespace zym::host
