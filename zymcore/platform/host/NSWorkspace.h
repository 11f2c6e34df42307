#pragma once

#include <string>

namespace zym {

/// The desktop of the user.
class NSWorkspace {
 public:
  /// Opens the file in whatever the user opens such files with, and returns at once. False where
  /// the machine has no desktop that could.
  static bool openFile(const std::string& path);
};

}  // namespace zym
