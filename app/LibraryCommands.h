#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "list", "show", "new", "edit", "copy", "remove" and "profile": the records of the
/// libraries.
void addLibraryCommands(CLI::App& program);

}  // namespace zym::host
