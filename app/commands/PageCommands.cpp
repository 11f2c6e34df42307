#include "app/commands/PageCommands.h"

#include <stdlib.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <sstream>

#include "app/session/Store.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Progress.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/Items.h"
#include "app/values/StockValues.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/interchange/operations/ZYMFileExportOperation.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/host/NSWorkspace.h"
#include "zymcore/platform/services/WebView.h"
#include "zymcore/reports/ZYMHTML.h"
#include "zymcore/stock/ZYMInventory.h"
#include "zymcore/stock/ZYMSuggestABeerGenerator.h"

namespace zym::host {
namespace {

namespace fs = std::filesystem;

struct Options {
  std::vector<std::string> names;
  std::string output;
  bool isOpened = false;
  bool asPDF = false;
};

/// The width of a printed page, in the pixels that its text is laid out in.
constexpr double printedWidth = 600;
constexpr double secondsToSuggest = 3600;

std::string sheetOf(const Item& item) {
  PlistDictionary document = documentOf(item);
  return item.kind == Item::Kind::Batch ? ZYMHTML::renderBatchToHTMLForWeb(document)
                                        : ZYMHTML::renderRecipeToHTMLForWeb(document);
}

std::string stockPage(const std::string& kindNamed) {
  for (const StockKind& kind : stockKinds()) {
    if (kindNamed != kind.library && kindNamed != std::string(kind.library) + "s") continue;
    return ZYMHTML::renderToHTMLInventoryItems_ofIngredientType(
        ZYMInventory::sharedInstance().allItemsOfIngredientType(kind.type), kind.type);
  }
  std::string kinds;
  for (const StockKind& kind : stockKinds()) {
    kinds.append(kinds.empty() ? "" : ", ").append(kind.library);
  }
  throw UsageError(label("the stock has %1", {kinds}));
}

std::string suggestionsPage() {
  bool isDone = false;
  std::string page;
  ZYMSuggestABeerGenerator generator;
  constexpr std::size_t steps = 100;
  const Progress progress(steps);
  generator.generateWithProgressHandler_completionHandler(
      [&](float done) { progress.show(static_cast<std::size_t>(done * steps)); },
      [&](const std::string& html) {
        page = html;
        isDone = true;
      });
  (void)NSRunLoop::mainRunLoop().runUntil([&] { return isDone; }, secondsToSuggest);
  if (page.empty()) throw InputError(label("what can be brewed can't be worked out"));
  return page;
}

std::string pageNamed(const std::vector<std::string>& names) {
  if (names.front() == "stock") return stockPage(names.size() > 1 ? names[1] : "");
  if (names.size() > 1) throw UsageError(label("a page is of one recipe or batch"));
  return names.front() == "suggest" ? suggestionsPage() : sheetOf(itemNamed(names.front()));
}

void write(const std::string& bytes, const std::string& path) {
  NSError error;
  if (NSFileManager::writeData_toPath(bytes, path, &error)) return;
  throw InputError(label("can't write '%1': %2", {printable(path), error.localizedFailureReason}));
}

std::string asPDF(const std::string& html) {
  WebView view(printedWidth);
  view.loadHTMLString(html);
  NSError error;
  auto pdf = view.dataWithPDF(&error);
  if (!pdf) throw InputError(label("can't print: %1", {error.localizedDescription}));
  return std::move(*pdf);
}

/// In a folder that only the user reads; the system clears it up.
std::string newFileToOpen(const std::string& suffix) {
  std::string folder = (fs::temp_directory_path() / "zym-XXXXXX").string();
  if (!mkdtemp(folder.data())) throw InputError(label("no file to open can be made"));
  return folder + "/page" + suffix;
}

void put(const std::string& page, const Options& options) {
  const std::string bytes = options.asPDF ? asPDF(page) : page;
  if (!options.isOpened && options.output.empty()) {
    std::cout << bytes;
    return;
  }
  const std::string path =
      options.output.empty() ? newFileToOpen(options.asPDF ? ".pdf" : ".html") : options.output;
  write(bytes, path);
  if (!options.isOpened) return;
  if (NSWorkspace::openFile(path)) return;
  throw InputError(label("nothing here can open '%1'", {printable(path)}));
}

void showPage(const Options& options) {
  openStore();
  put(pageNamed(options.names), options);
}

void showInstructions(const Options& options) {
  openStore();
  const std::string page =
      ZYMHTML::renderToHTMLBatchInstructions(documentOf(batchNamed(options.names.front())));
  if (page.empty()) {
    throw InputError(label("'%1' has no kind of mash that instructions are there for",
                           {printable(options.names.front())}));
  }
  put(page, options);
}

/// Prints into the folder under the title, or a free name like it; answers the path.
std::string printedIn(const std::string& folder, const Item& item) {
  ZYMFileExportOperation printing(documentOf(item), folder,
                                  static_cast<std::int32_t>(ZYMExportFileType::PDF));
  printing.main();
  if (printing.writtenPath()) return *printing.writtenPath();
  throw InputError(label("can't print: %1", {printing.failureReason().value_or("")}));
}

std::string printedAs(const std::string& path, const Item& item) {
  write(asPDF(sheetOf(item)), path);
  return path;
}

int printAll(const Options& options) {
  openStore();
  const bool isFolder = NSFileManager::isDirectoryAtPath(options.output);
  if (!isFolder && options.names.size() > 1) {
    throw UsageError(label("'%1' is no folder for several files", {printable(options.output)}));
  }
  const Progress progress(options.names.size());
  std::size_t failed = 0;
  for (std::size_t i = 0; i < options.names.size(); ++i) {
    progress.show(i);
    try {
      const Item item = itemNamed(options.names[i]);
      const std::string path =
          isFolder ? printedIn(options.output, item) : printedAs(options.output, item);
      std::cout << printable(path) << '\n';
    } catch (const std::exception& error) {
      std::cerr << "zym: " << printable(options.names[i]) << ": " << error.what() << '\n';
      ++failed;
    }
  }
  return failed > 0 ? 1 : 0;
}

/// Line feeds of notes are markup in every form of a sheet.
std::string withLineFeeds(std::string_view text) {
  constexpr std::string_view markup = "&nbsp;<br>";
  std::string plain;
  for (;;) {
    const std::size_t at = text.find(markup);
    plain += text.substr(0, at);
    if (at == std::string_view::npos) return plain;
    plain += '\n';
    text.remove_prefix(at + markup.size());
  }
}

void showText(const Options& options) {
  openStore();
  const Item item = itemNamed(options.names.front());
  PlistDictionary document = documentOf(item);
  constexpr std::int64_t batchText = 3;
  const std::string text = item.kind == Item::Kind::Batch
                               ? ZYMHTML::renderItemToHTML_type(document, batchText)
                               : ZYMHTML::renderRecipeToStringForClipboard(document);
  std::istringstream lines(withLineFeeds(text));
  for (std::string line; std::getline(lines, line);) std::cout << printable(line) << '\n';
}

CLI::App& add(CLI::App& program, const char* name, const char* description,
              const std::shared_ptr<Options>& options, const char* meaning) {
  CLI::App* const command = program.add_subcommand(name, description);
  command->fallthrough();
  command->add_option("NAME", options->names, meaning)->required();
  return *command;
}

void addOutput(CLI::App& command, const std::shared_ptr<Options>& options) {
  command.add_option("-o,--output", options->output, "The file to write");
  command.add_flag("--open", options->isOpened, "Open it in the desktop's browser");
}

}  // namespace

void addPageCommands(CLI::App& program, int& exitCode) {
  {
    const auto options = std::make_shared<Options>();
    CLI::App& command =
        add(program, "page", "Show a recipe, a batch, the stock or what can be brewed as a page.",
            options, "A recipe, a batch, 'suggest', or 'stock' with its kind");
    addOutput(command, options);
    command.callback([options] { showPage(*options); });
  }
  {
    const auto options = std::make_shared<Options>();
    CLI::App& command =
        add(program, "instructions", "Say how to brew a batch, step by step.", options, "A batch");
    addOutput(command, options);
    command.add_flag("--pdf", options->asPDF, "As PDF");
    command.callback([options] { showInstructions(*options); });
  }
  {
    const auto options = std::make_shared<Options>();
    CLI::App& command =
        add(program, "print", "Print recipes and batches as PDF.", options, "Recipes and batches");
    command.add_option("-o,--output", options->output, "The file, or the folder for several")
        ->required();
    command.callback([options, &exitCode] { exitCode = printAll(*options); });
  }
  {
    const auto options = std::make_shared<Options>();
    CLI::App& command = add(program, "clipboard", "Show a recipe or a batch as plain text.",
                            options, "A recipe or a batch");
    command.callback([options] { showText(*options); });
  }
}

}  // namespace zym::host
