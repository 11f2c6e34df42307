#include "zymcore/transformers/ZYMPercentValueTransformer.h"

#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/transformers/internal/Quantity.h"

namespace zym {

std::string ZYMPercentValueTransformer::convertForDisplay(const PlistValue* value) {
  if (!value || (!value->string() && !value->isNumber())) return "0";
  return localizedStringWithValue_decimalPlaces(value, 1) + " %";
}

std::string ZYMPercentValueTransformer::convertForStorage(const PlistValue* value) {
  return delocalizeValue(transformer::textForStorage(value));
}

std::optional<PlistValue> ZYMPercentValueTransformer::reverseTransformedValue(
    const PlistValue* value) const {
  if (!value || !value->string()) return "0.0";
  return convertForStorage(value);
}

}  // namespace zym
