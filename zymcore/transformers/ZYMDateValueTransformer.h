#pragma once

#include <string>

#include "zymcore/transformers/ZYMValueTransformerProtocol.h"

namespace zym {

/// Days in the locale's medium style. What is no date shows as "".
class ZYMDateValueTransformer final : public ZYMValueTransformer<ZYMDateValueTransformer> {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  /// The present time for a text that is no day.
  [[nodiscard]] static NSDate convertForStorage(const PlistValue* value);

  /// The present time for what is no string.
  [[nodiscard]] std::optional<PlistValue> reverseTransformedValue(
      const PlistValue* value) const override;
};

}  // namespace zym
