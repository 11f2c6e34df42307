#include "zymcore/platform/host/NSSearchPath.h"

#include <glib.h>

#include <cstdlib>

namespace zym {
namespace {

// A path in the environment that isn't absolute counts as unset.
std::string environmentFolder(const char* variable, const std::string& otherwise) {
  const char* path = std::getenv(variable);
  return path && path[0] == '/' ? path : otherwise;
}

}  // namespace

std::string NSSearchPathForDirectory(NSSearchPathDirectory directory) {
  const std::string home = environmentFolder("HOME", g_get_home_dir());
  switch (directory) {
    case NSSearchPathDirectory::LibraryDirectory:
      return home;
    case NSSearchPathDirectory::DocumentDirectory: {
      const char* documents = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
      return documents ? documents : home + "/Documents";
    }
    case NSSearchPathDirectory::ApplicationSupportDirectory:
      return environmentFolder("XDG_DATA_HOME", home + "/.local/share");
    case NSSearchPathDirectory::ConfigurationDirectory:
      return environmentFolder("XDG_CONFIG_HOME", home + "/.config");
  }
  return home;
}

}  // namespace zym
