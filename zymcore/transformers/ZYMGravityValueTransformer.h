#pragma once

#include <string>

#include "zymcore/transformers/ZYMValueTransformerProtocol.h"

namespace zym {

/// Gravities, stored as specific gravity. Reads "GravityUnits". A number from 1000 up is read as
/// points.
class ZYMGravityValueTransformer final : public ZYMValueTransformer<ZYMGravityValueTransformer> {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  [[nodiscard]] static std::string convertForStorage(const PlistValue* value);
};

}  // namespace zym
