#pragma once

#include <string>

#include "zymcore/transformers/ZYMValueTransformerProtocol.h"

namespace zym {

/// Colours of beer, stored in SRM. Reads "ColorUnit".
class ZYMBeerColorValueTransformer final
    : public ZYMValueTransformer<ZYMBeerColorValueTransformer> {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  [[nodiscard]] static std::string convertForStorage(const PlistValue* value);
};

}  // namespace zym
