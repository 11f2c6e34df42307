#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace zym::test {

/// What a run of the program left.
struct Outcome {
  int exitCode = -1;  // minus the number of the signal that ended it
  std::string out;
  std::string err;
};

/// Runs the program as a user with no settings does, in the locale "C" unless told otherwise.
[[nodiscard]] Outcome run(const std::vector<std::string>& arguments, std::string_view input = "",
                          const std::string& locale = "C");

[[nodiscard]] std::string example(const std::string& name);

}  // namespace zym::test
