#pragma once

#include <string>

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "order" with what is below it, and "orders".
void addOrderCommands(CLI::App& program);
/// Shows the order that the user means, with its lines. The store must be open.
void showOrder(const std::string& name, bool asJSON);

}  // namespace zym::host
