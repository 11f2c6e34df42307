#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "show", "new", "edit", "copy" and "remove", for records of the libraries and for recipes
/// and batches.
void addRecordCommands(CLI::App& program);

}  // namespace zym::host
