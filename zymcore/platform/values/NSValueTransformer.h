#pragma once

#include <optional>
#include <string_view>

#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// Base of what turns a value into another, and maybe back. An absent value is null.
class NSValueTransformer {
 public:
  virtual ~NSValueTransformer() = default;

  /// The class of what `transformedValue` answers, in the sense of `PlistValue::className`.
  [[nodiscard]] virtual std::string_view transformedValueClass() const = 0;
  [[nodiscard]] virtual bool allowsReverseTransformation() const { return true; }
  [[nodiscard]] virtual std::optional<PlistValue> transformedValue(
      const PlistValue* value) const = 0;
  [[nodiscard]] virtual std::optional<PlistValue> reverseTransformedValue(
      const PlistValue* value) const = 0;
};

}  // namespace zym
