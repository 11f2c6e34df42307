#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "stock" with what is below it.
void addStockCommands(CLI::App& program);

}  // namespace zym::host
