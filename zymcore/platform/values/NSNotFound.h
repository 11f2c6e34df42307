#pragma once

#include <cstdint>
#include <limits>

namespace zym {

/// The position of what isn't there.
inline constexpr std::int64_t NSNotFound = std::numeric_limits<std::int64_t>::max();

}  // namespace zym
