#pragma once

#include <cstdint>
#include <string>

#include "zymcore/platform/values/NSError.h"

namespace zym {

/// A folder in one file: a tar archive, compressed with gzip, that any archiver opens.
class FolderArchive {
 public:
  /// The most that an archive may hold, so that a small file can't fill the disk.
  static constexpr std::int64_t mostBytes = std::int64_t{64} << 30U;
  static constexpr std::int64_t mostFiles = 1'000'000;

  /// Writes all regular files below the folder. The file comes into being whole or not at all, and
  /// takes the place of one that is there, though of nothing but a file.
  static bool writeFolder_toPath(const std::string& folder, const std::string& path,
                                 NSError* error = nullptr);
  /// Writes what the archive holds into the folder, which must be there. Refuses one with anything
  /// but plain files and folders, or with a name that leads out of the folder; what was written
  /// before stays then. The error is `NSFileWriteOutOfSpaceError` where there was no room for it.
  /// Only the owner may read what was written.
  static bool readPath_intoFolder(const std::string& path, const std::string& folder,
                                  NSError* error = nullptr);
};

}  // namespace zym
