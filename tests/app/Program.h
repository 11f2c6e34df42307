#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

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

/// A folder of its own that goes with it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }
  /// The path of a new file with that content.
  [[nodiscard]] std::string file(const std::string& name, std::string_view content) const;

 private:
  std::filesystem::path path_;
};

[[nodiscard]] std::string contentOf(const std::filesystem::path& file);

}  // namespace zym::test
