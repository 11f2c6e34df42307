#pragma once

#include <string>
#include <vector>

namespace zym::host {

/// Runs one call of the program, given what follows its name, and answers its exit code. What goes
/// wrong is said on standard error. A line of the shell is a call as well, but can't choose the
/// data folder or begin a shell.
enum class CalledFrom { Process, Shell };
int runProgram(std::vector<std::string> arguments, CalledFrom caller);

}  // namespace zym::host
