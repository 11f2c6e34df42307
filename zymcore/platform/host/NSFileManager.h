#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NSError.h"

namespace zym {

/// Files and folders. Paths are UTF-8. Where an operation fails it answers so, with an error in
/// `NSCocoaErrorDomain` that names the path and the reason. Any thread.
class NSFileManager {
 public:
  /// True for whatever a path leads to; false for a link that leads nowhere.
  [[nodiscard]] static bool fileExistsAtPath(const std::string& path);
  [[nodiscard]] static bool isDirectoryAtPath(const std::string& path);
  /// True for a regular file, false for a link to one.
  [[nodiscard]] static bool isRegularFileAtPath(const std::string& path);

  /// The folder and those above it; true also when it is there already.
  static bool createDirectoryAtPath(const std::string& path, NSError* error = nullptr);
  /// A file, or a folder with all it holds. Fails when something is at the destination already, and
  /// then leaves it as it was.
  static bool copyItemAtPath_toPath(const std::string& path, const std::string& destination,
                                    NSError* error = nullptr);
  /// Fails when something is at the destination already.
  static bool moveItemAtPath_toPath(const std::string& path, const std::string& destination,
                                    NSError* error = nullptr);
  /// A file, a link (never what it leads to), or a folder with all it holds. Fails when nothing is
  /// there.
  static bool removeItemAtPath(const std::string& path, NSError* error = nullptr);
  /// The names in a folder, sorted; absent when it is no folder or can't be read.
  [[nodiscard]] static std::optional<std::vector<std::string>> contentsOfDirectoryAtPath(
      const std::string& path, NSError* error = nullptr);

  /// The bytes of a regular file of at most `mostBytes`. A folder, a pipe, a socket or a device is
  /// refused at once, without waiting on it.
  [[nodiscard]] static std::optional<std::string> contentsAtPath(const std::string& path,
                                                                 std::size_t mostBytes,
                                                                 NSError* error = nullptr);

  /// Replaces the file as a whole: whatever happens, even a loss of power, it afterwards holds
  /// either what it held or all of `bytes`, and on success the bytes are on disk. The folder must
  /// be there. The permissions of a file that is replaced stay.
  static bool writeData_toPath(std::string_view bytes, const std::string& path,
                               NSError* error = nullptr);
  /// Returns when all that was written to the file system of the item, by whomever, is on disk.
  static bool synchronizeFileSystemAtPath(const std::string& path, NSError* error = nullptr);
};

}  // namespace zym
