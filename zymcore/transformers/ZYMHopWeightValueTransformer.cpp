#include "zymcore/transformers/ZYMHopWeightValueTransformer.h"

#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/transformers/internal/Quantity.h"

namespace zym {

std::string ZYMHopWeightValueTransformer::convertForDisplay(const PlistValue* value) {
  return ZYMWeightValueTransformer::convertForDisplay(value, weightUnits());
}

std::string ZYMHopWeightValueTransformer::convertForStorage_preferSmallUnits(
    const PlistValue* value, bool preferSmallUnits) {
  return ZYMWeightValueTransformer::convertForStorage(value, weightUnits(), preferSmallUnits);
}

std::int64_t ZYMHopWeightValueTransformer::weightUnits() {
  return transformer::preferenceUnder(keys::HopUnits);
}

}  // namespace zym
