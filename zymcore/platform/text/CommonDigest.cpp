#include "zymcore/platform/text/CommonDigest.h"

#include <glib.h>

#include <memory>

namespace zym {

std::array<std::uint8_t, 16> CC_MD5(std::string_view bytes) {
  const std::unique_ptr<GChecksum, decltype(&g_checksum_free)> checksum(
      g_checksum_new(G_CHECKSUM_MD5), &g_checksum_free);
  while (!bytes.empty()) {
    const std::string_view part = bytes.substr(0, std::size_t{1} << 30U);
    g_checksum_update(checksum.get(), reinterpret_cast<const guchar*>(part.data()),
                      static_cast<gssize>(part.size()));
    bytes.remove_prefix(part.size());
  }
  std::array<std::uint8_t, 16> digest{};
  gsize length = digest.size();
  g_checksum_get_digest(checksum.get(), digest.data(), &length);
  return digest;
}

}  // namespace zym
