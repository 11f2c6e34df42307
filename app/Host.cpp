#include "app/Host.h"

#include <filesystem>
#include <string>
#include <system_error>

#include "app/session/Defaults.h"
#include "zymcore/platform/host/NSBundle.h"

namespace zym::host {
namespace {

namespace fs = std::filesystem;

/// Beside the program where it was built, in "share/zym" where it is installed.
std::string resourceFolder() {
  std::error_code fault;
  const fs::path folder = fs::read_symlink("/proc/self/exe", fault).parent_path();
  for (const fs::path& path : {folder / "resources", folder.parent_path() / "share" / "zym"}) {
    if (fs::is_directory(path, fault)) return path;
  }
  return {};
}

}  // namespace

void setUpLibrary() {
  NSBundle::setMainBundle(NSBundle(resourceFolder(), "zym", ZYM_VERSION));
  registerInitialDefaults();
}

}  // namespace zym::host
