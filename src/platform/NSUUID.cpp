#include "zymcore/platform/NSUUID.h"

#include <glib.h>

#include <memory>

#include "zymcore/platform/NSString.h"

namespace zym {

std::string NSUUID::UUIDString() {
  const std::unique_ptr<char, decltype(&g_free)> text(g_uuid_string_random(), &g_free);
  return uppercaseString(text.get());
}

}  // namespace zym
