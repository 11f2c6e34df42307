#pragma once

#include <string>

#include "zymcore/transformers/ZYMValueTransformerProtocol.h"

namespace zym {

/// Volumes, stored in ml. Reads "Units"; a bare number is taken for large or small units by its
/// size.
class ZYMVolumeValueTransformer final : public ZYMValueTransformer<ZYMVolumeValueTransformer> {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  [[nodiscard]] static std::string convertForStorage(const PlistValue* value);
};

}  // namespace zym
