#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "set" and "settings": the preferences that are kept.
void addSettingsCommands(CLI::App& program);

}  // namespace zym::host
