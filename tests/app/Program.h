#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/Test.h"

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

/// The program with a store of its own.
class WithProgram : public ::testing::Test {
 protected:
  [[nodiscard]] Outcome zym(std::vector<std::string> arguments, std::string_view input = "",
                            const std::string& locale = "C") const {
    arguments.insert(arguments.end(), {"--data", data});
    return run(arguments, input, locale);
  }
  /// What it prints when all goes well.
  std::string output(std::vector<std::string> arguments) const {
    const Outcome outcome = zym(std::move(arguments));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    return outcome.out;
  }
  TemporaryFolder folder;
  std::string data = folder / "data";
};

[[nodiscard]] std::string example(const std::string& name);

}  // namespace zym::test
