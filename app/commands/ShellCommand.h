#pragma once

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zym::host {

/// Carries out one command, given its words, and answers its exit code.
using CommandRunner = std::function<int(std::vector<std::string> words)>;

/// Adds "shell": commands a line each, with undo. The exit code is 1 when one of them failed.
void addShellCommand(CLI::App& program, const CommandRunner& run, int& exitCode);

}  // namespace zym::host
