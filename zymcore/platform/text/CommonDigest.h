#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace zym {

/// The MD5 of the bytes.
[[nodiscard]] std::array<std::uint8_t, 16> CC_MD5(std::string_view bytes);

}  // namespace zym
