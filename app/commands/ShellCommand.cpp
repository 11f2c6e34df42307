#include "app/commands/ShellCommand.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>

#include "app/session/Store.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym::host {
namespace {

/// The words of a line: apart by blanks, unless quoted by ' or " or escaped by \. Absent when a
/// quote is left open.
std::optional<std::vector<std::string>> wordsOf(const std::string& line) {
  std::vector<std::string> words;
  std::optional<std::string> word;
  char quote = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (quote == 0 && (c == ' ' || c == '\t' || c == '\r')) {
      if (word) words.push_back(*std::exchange(word, std::nullopt));
      continue;
    }
    if (quote == 0 && c == '#' && !word) break;
    if (!word) word.emplace();
    if (c == '\\' && quote != '\'' && i + 1 < line.size()) {
      *word += line[++i];
    } else if (quote == 0 && (c == '\'' || c == '"')) {
      quote = c;
    } else if (c == quote) {
      quote = 0;
    } else {
      *word += c;
    }
  }
  if (quote != 0) return std::nullopt;
  if (word) words.push_back(*word);
  return words;
}

ZYMCoreDataModel& model() {
  return ZYMCoreDataModel::sharedInstance();
}

/// Ends the undo step of all that was done so far.
void endTurn() {
  NSRunLoop::mainRunLoop().runUntilDate(NSDate::date());
}

bool undo() {
  NSUndoManager& manager = *model().mainObjectContext()->undoManager();
  if (!manager.canUndo()) {
    std::cerr << "zym: " << label("there is nothing to undo") << '\n';
    return false;
  }
  const std::string name = manager.undoActionName();
  manager.undo();
  model().save();
  std::cout << label("Undone: %1", {printable(name)}) << '\n';
  return true;
}

bool redo() {
  NSUndoManager& manager = *model().mainObjectContext()->undoManager();
  if (!manager.canRedo()) {
    std::cerr << "zym: " << label("there is nothing to redo") << '\n';
    return false;
  }
  const std::string name = manager.redoActionName();
  manager.redo();
  model().save();
  std::cout << label("Done again: %1", {printable(name)}) << '\n';
  return true;
}

/// Answers whether the line could be carried out.
bool runLine(const std::string& line, const CommandRunner& run) {
  const auto words = wordsOf(line);
  if (!words) {
    std::cerr << "zym: " << label("a quote is left open") << '\n';
    return false;
  }
  if (words->empty()) return true;
  bool isDone = false;
  // Each line is an event of its own, so that each is undone by itself.
  NSRunLoop::mainRunLoop().performBlock([&] {
    if (*words == std::vector<std::string>{"undo"}) {
      isDone = undo();
    } else if (*words == std::vector<std::string>{"redo"}) {
      isDone = redo();
    } else {
      isDone = run(*words) == 0;
    }
  });
  endTurn();
  return isDone;
}

bool isEnd(const std::string& line) {
  const auto words = wordsOf(line);
  return words && words->size() == 1 && (words->front() == "quit" || words->front() == "exit");
}

int runLines(std::istream& lines, bool isPrompted, const CommandRunner& run) {
  bool isAllGood = true;
  std::string line;
  while (true) {
    if (isPrompted) std::cerr << "zym> ";
    if (!std::getline(lines, line) || isEnd(line)) break;
    isAllGood = runLine(line, run) && isAllGood;
    std::cout.flush();
  }
  return isAllGood ? 0 : 1;
}

int shell(const std::string& file, const CommandRunner& run) {
  openStore();
  endTurn();
  model().mainObjectContext()->undoManager()->removeAllActions();  // what filled the libraries
  if (file.empty()) return runLines(std::cin, isatty(STDIN_FILENO) != 0, run);
  std::ifstream lines(file);
  if (!lines) throw InputError(label("%1: can't be read", {printable(file)}));
  return runLines(lines, false, run);
}

}  // namespace

void addShellCommand(CLI::App& program, const CommandRunner& run, int& exitCode) {
  const auto file = std::make_shared<std::string>();
  CLI::App* const command = program.add_subcommand(
      "shell", "Carry out commands, a line each, from a file or from standard input.");
  command->fallthrough();
  command->add_option("FILE", *file, "The commands; without it standard input");
  command->footer(
      "A line is a command as on the command line, without 'zym'. Beside these there are undo, "
      "redo\n"
      "and quit. A blank in a word is quoted or escaped, and # begins a remark. A line that fails\n"
      "is reported; the others are carried out all the same, and the exit code is 1.");
  command->callback([file, run, &exitCode] { exitCode = shell(*file, run); });
}

}  // namespace zym::host
