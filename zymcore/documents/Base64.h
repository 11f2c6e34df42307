#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zym {

/// Base64 in the standard alphabet with "=" padding. With line breaks, a carriage return and a line
/// feed stand after every 64 characters, and none at the end.
[[nodiscard]] std::string NewBase64Encode(std::span<const std::uint8_t> bytes, bool separateLines);

/// The bytes of Base64 text. Every character outside the alphabet is passed over, line breaks,
/// padding and damage alike.
[[nodiscard]] std::vector<std::uint8_t> NewBase64Decode(std::string_view text);

}  // namespace zym
