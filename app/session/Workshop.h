#pragma once

#include <filesystem>

namespace zym::host {

/// A new folder beside a path, so that what is made there can take its place; gone with this.
/// Throws `InputError` where none can be made.
class Workshop {
 public:
  /// How the names of all of them begin.
  static constexpr const char* prefix = ".zym-";

  explicit Workshop(const std::filesystem::path& beside);
  ~Workshop();
  Workshop(const Workshop&) = delete;
  Workshop& operator=(const Workshop&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace zym::host
