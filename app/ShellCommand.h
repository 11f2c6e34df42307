#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "shell": commands a line each, with undo. The exit code is 1 when one of them failed.
void addShellCommand(CLI::App& program, int& exitCode);

}  // namespace zym::host
