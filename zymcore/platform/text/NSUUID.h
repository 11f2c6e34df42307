#pragma once

#include <string>

namespace zym {

class NSUUID {
 public:
  /// A new random UUID in upper-case canonical form.
  [[nodiscard]] static std::string UUIDString();
};

}  // namespace zym
