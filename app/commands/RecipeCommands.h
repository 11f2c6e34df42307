#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "recipes", "add", "drop" and "group".
void addRecipeCommands(CLI::App& program);

}  // namespace zym::host
