#include "app/terminal/Output.h"

#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string_view>

#include "app/terminal/Faults.h"
#include "app/terminal/Words.h"
#include "zymcore/documents/SafeJSON.h"
#include "zymcore/platform/formats/NSJSONSerialization.h"

namespace zym::host {
namespace {

bool isTerminal() {
  const char* const terminal = std::getenv("TERM");
  return isatty(STDOUT_FILENO) && terminal && std::string_view(terminal) != "dumb" &&
         !std::getenv("NO_COLOR");
}

}  // namespace

void printJSON(const PlistValue& tree) {
  NSError error;
  const auto json = safeDataWithJSONObject_options(tree, NSJSONWritingPrettyPrinted, &error);
  if (!json) throw InputError(label("can't be written as JSON: %1", {error.localizedDescription}));
  std::cout << *json << '\n';
}

void printTable(const Table& table) {
  for (const std::string& line : table.lines()) std::cout << line << '\n';
}

Sheet sheetOnOutput() {
  return {std::cout, isTerminal() ? Sheet::Look::Terminal : Sheet::Look::Plain};
}

bool isConfirmed(const std::string& question) {
  if (!isatty(STDIN_FILENO)) return true;
  std::cerr << question << label(" [y/N] ");
  std::string answer;
  const std::string yes = label("yes");
  return std::getline(std::cin, answer) && !answer.empty() &&
         (yes.starts_with(answer) || answer == "y" || answer == "Y" || answer == "yes");
}

}  // namespace zym::host
