#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "page", "instructions", "print" and "clipboard".
void addPageCommands(CLI::App& program, int& exitCode);

}  // namespace zym::host
