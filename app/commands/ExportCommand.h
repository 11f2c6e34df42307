#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "export".
void addExportCommand(CLI::App& program, int& exitCode);

}  // namespace zym::host
