#pragma once

#include <string>

#include "zymcore/transformers/ZYMValueTransformerProtocol.h"

namespace zym {

/// Percentages from 0 to 100. What has no number shows as "0". As an object, the reverse of what is
/// no string is "0.0".
class ZYMPercentValueTransformer final : public ZYMValueTransformer<ZYMPercentValueTransformer> {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  /// The first number of the text; "" when there is none.
  [[nodiscard]] static std::string convertForStorage(const PlistValue* value);

  [[nodiscard]] std::optional<PlistValue> reverseTransformedValue(
      const PlistValue* value) const override;
};

}  // namespace zym
