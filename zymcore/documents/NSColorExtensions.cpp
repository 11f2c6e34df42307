#include "zymcore/documents/NSColorExtensions.h"

#include <string_view>

namespace zym {

std::string hexRepresentation(const NSColor& color) {
  const std::span<const double> components = color.components();
  const bool isGrey = components.size() == 2;
  std::string hex;
  for (std::size_t i = 0; i < 3; ++i) hex += hexForColorComponent(components[isGrey ? 0 : i]);
  return hex;
}

std::string hexForColorComponent(double component) {
  constexpr std::string_view digits = "0123456789abcdef";
  const double scaled = component * 255;
  if (scaled >= 255) return "ff";
  const unsigned value = scaled > 0 ? static_cast<unsigned>(scaled) : 0;
  return {digits[value >> 4U], digits[value & 0xFU]};
}

}  // namespace zym
