#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "units": shows how a text that the user types is read and shown again.
void addUnitsCommand(CLI::App& program);

}  // namespace zym::host
