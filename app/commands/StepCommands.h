#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "step": the steps of a mash schedule.
void addStepCommands(CLI::App& program);

}  // namespace zym::host
