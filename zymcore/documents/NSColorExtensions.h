#pragma once

#include <string>

#include "zymcore/platform/graphics/NSColor.h"

namespace zym {

/// The colour as six lower-case hexadecimal digits, red, green, blue.
[[nodiscard]] std::string hexRepresentation(const NSColor& color);
/// A component as two lower-case hexadecimal digits: "00" at 0 and below, "ff" at 1 and above,
/// between them rounded down.
[[nodiscard]] std::string hexForColorComponent(double component);

}  // namespace zym
