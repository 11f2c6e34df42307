#pragma once

#include <string>

#include "zymcore/transformers/ZYMValueTransformerProtocol.h"

namespace zym {

/// Temperatures, stored in °C. Reads "TemperatureUnit".
class ZYMTemperatureValueTransformer final
    : public ZYMValueTransformer<ZYMTemperatureValueTransformer> {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  [[nodiscard]] static std::string convertForStorage(const PlistValue* value);
};

}  // namespace zym
