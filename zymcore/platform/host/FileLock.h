#pragma once

#include <string>

#include "zymcore/platform/host/FileDescriptor.h"

namespace zym {

/// Keeps others, of this process too, from holding a lock of the same place for as long as this
/// lives. It binds only those who ask for it, and ends with the process at the latest.
class FileLock {
 public:
  enum class State {
    Held,
    InUse,        ///< Somebody else held it all the time.
    NotOpened,    ///< The place can't be opened; `errno` says why.
    Unsupported,  ///< The file system has no locks.
  };

  /// Of a folder, which must be there, or of a file, which is made if it isn't. Waits so long at
  /// most for whoever holds it; not at all for what is no number.
  [[nodiscard]] static FileLock ofFolder(const std::string& path, double secondsToWait);
  [[nodiscard]] static FileLock ofFile(const std::string& path, double secondsToWait);

  [[nodiscard]] State state() const noexcept { return state_; }

 private:
  FileLock(int descriptor, double secondsToWait);
  [[nodiscard]] State take(double secondsToWait) const;

  FileDescriptor descriptor_;
  State state_;
};

}  // namespace zym
