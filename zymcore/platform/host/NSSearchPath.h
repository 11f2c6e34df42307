#pragma once

#include <string>

namespace zym {

enum class NSSearchPathDirectory {
  /// The home folder.
  LibraryDirectory,
  /// The folder the desktop names for documents, else "Documents" in the home folder.
  DocumentDirectory,
  /// `XDG_DATA_HOME`, else ".local/share" in the home folder.
  ApplicationSupportDirectory,
  /// `XDG_CONFIG_HOME`, else ".config" in the home folder.
  ConfigurationDirectory,
};

/// The user's folder of that kind, as an absolute path. It may not be there yet.
[[nodiscard]] std::string NSSearchPathForDirectory(NSSearchPathDirectory directory);

}  // namespace zym
