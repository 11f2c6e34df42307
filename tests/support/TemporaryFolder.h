#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

namespace zym {

/// A folder that goes with the test.
class TemporaryFolder {
 public:
  TemporaryFolder() : path_((std::filesystem::temp_directory_path() / "zymcore.XXXXXX").string()) {
    if (!::mkdtemp(path_.data())) throw std::runtime_error("no temporary folder");
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code none;
    std::filesystem::remove_all(path_, none);
  }

  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  [[nodiscard]] std::string operator/(std::string_view name) const {
    return std::string(path_).append("/").append(name);
  }
  /// The path of a new file with those bytes.
  [[nodiscard]] std::string file(std::string_view name, std::string_view bytes) const;

 private:
  std::string path_;
};

inline void putFile(const std::string& path, std::string_view bytes) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string TemporaryFolder::file(std::string_view name, std::string_view bytes) const {
  putFile(*this / name, bytes);
  return *this / name;
}

[[nodiscard]] inline std::string bytesOf(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

}  // namespace zym
