#include "zymcore/platform/host/NSWorkspace.h"

#include <glib.h>

namespace zym {

bool NSWorkspace::openFile(const std::string& path) {
  std::string program = "xdg-open";
  std::string file = path;
  char* words[] = {program.data(), file.data(), nullptr};
  const int flags = G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL;
  return g_spawn_async(nullptr, words, nullptr, static_cast<GSpawnFlags>(flags), nullptr, nullptr,
                       nullptr, nullptr) != FALSE;
}

}  // namespace zym
