#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "store", which tells about the store itself. When it runs it sets the code that the program
/// exits with.
void addStoreCommand(CLI::App& program, int& exitCode);

}  // namespace zym::host
