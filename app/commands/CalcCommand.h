#pragma once

namespace CLI {
class App;
}

namespace zym::host {

/// Adds "calc": recalculates recipes and batches and prints what comes out. When it runs it sets
/// the code that the program exits with.
void addCalcCommand(CLI::App& program, int& exitCode);

}  // namespace zym::host
