#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "backup", "restore" and "examples".
void addBackupCommands(CLI::App& program);

}  // namespace zym::host
