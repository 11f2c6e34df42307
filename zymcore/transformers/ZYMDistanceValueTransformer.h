#pragma once

#include <string>

#include "zymcore/transformers/ZYMValueTransformerProtocol.h"

namespace zym {

/// Distances, stored in metres. Reads "Units".
class ZYMDistanceValueTransformer final : public ZYMValueTransformer<ZYMDistanceValueTransformer> {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  [[nodiscard]] static std::string convertForStorage(const PlistValue* value);
};

}  // namespace zym
