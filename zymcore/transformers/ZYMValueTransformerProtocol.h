#pragma once

#include <concepts>
#include <optional>
#include <string_view>

#include "zymcore/platform/values/NSValueTransformer.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// The bridge between a quantity as it is stored and the text that the user reads and types.
///
/// `convertForDisplay` takes a stored value, a string or a number, and gives the text shown, with
/// its unit; an absent value counts as 0, a value of another kind is a fault of the programmer and
/// throws. `convertForStorage` takes what the user typed, a string, and gives the value to store; a
/// unit word in the text wins over the user's preference. Both read the preferences of the user
/// (`DefaultsKeys.h`) at every call, and belong to one thread at a time.
template <class Transformer>
concept ZYMValueTransformerProtocol = requires(const PlistValue* value) {
  { Transformer::convertForDisplay(value) } -> std::convertible_to<PlistValue>;
  { Transformer::convertForStorage(value) } -> std::convertible_to<PlistValue>;
};

/// A transformer as an object of the platform. What is no string has no reverse.
template <class Transformer>
class ZYMValueTransformer : public NSValueTransformer {
 public:
  [[nodiscard]] std::string_view transformedValueClass() const override { return "NSString"; }
  [[nodiscard]] bool allowsReverseTransformation() const override { return true; }
  [[nodiscard]] std::optional<PlistValue> transformedValue(const PlistValue* value) const override {
    static_assert(ZYMValueTransformerProtocol<Transformer>);
    return Transformer::convertForDisplay(value);
  }
  [[nodiscard]] std::optional<PlistValue> reverseTransformedValue(
      const PlistValue* value) const override {
    if (!value || !value->string()) return std::nullopt;
    return Transformer::convertForStorage(value);
  }
};

}  // namespace zym
