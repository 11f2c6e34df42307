#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "suggest" and "shopping".
void addSuggestCommands(CLI::App& program);

}  // namespace zym::host
