#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "image".
void addImageCommands(CLI::App& program);

}  // namespace zym::host
