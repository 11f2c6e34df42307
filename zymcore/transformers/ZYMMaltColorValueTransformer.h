#pragma once

#include <string>

#include "zymcore/transformers/ZYMValueTransformerProtocol.h"

namespace zym {

/// Colours of malt, stored in degrees Lovibond. Reads "ColorUnit".
class ZYMMaltColorValueTransformer final
    : public ZYMValueTransformer<ZYMMaltColorValueTransformer> {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  [[nodiscard]] static std::string convertForStorage(const PlistValue* value);
};

}  // namespace zym
