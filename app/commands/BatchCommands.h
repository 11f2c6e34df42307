#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "brew", "batches", "measure", "promote" and "history".
void addBatchCommands(CLI::App& program);

}  // namespace zym::host
