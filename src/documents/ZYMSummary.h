#pragma once

#include <cstdint>
#include <string>

namespace zym {

/// One row of a list.
struct ZYMSummary {
  std::string name;
  std::string uuid;
  std::int64_t numberOfChildren = 0;

  friend bool operator==(const ZYMSummary&, const ZYMSummary&) = default;
};

}  // namespace zym
