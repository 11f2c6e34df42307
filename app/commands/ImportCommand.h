#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "import". The exit code is 1 when a file couldn't be imported.
void addImportCommand(CLI::App& program, int& exitCode);

}  // namespace zym::host
