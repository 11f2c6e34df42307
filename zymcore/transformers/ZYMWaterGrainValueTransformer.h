#pragma once

#include <string>

#include "zymcore/transformers/ZYMValueTransformerProtocol.h"

namespace zym {

/// The thickness of a mash, stored in l/kg. Reads "Units".
class ZYMWaterGrainValueTransformer final
    : public ZYMValueTransformer<ZYMWaterGrainValueTransformer> {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  [[nodiscard]] static std::string convertForStorage(const PlistValue* value);
};

}  // namespace zym
