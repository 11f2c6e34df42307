#include "zymcore/transformers/ZYMSaltWeightValueTransformer.h"

namespace zym {

std::string ZYMSaltWeightValueTransformer::convertForDisplay(const PlistValue* value) {
  return ZYMWeightValueTransformer::convertForDisplay(value, weightUnits());
}

std::string ZYMSaltWeightValueTransformer::convertForStorage(const PlistValue* value) {
  return convertForStorage_preferSmallUnits(value, true);
}

std::string ZYMSaltWeightValueTransformer::convertForStorage_preferSmallUnits(
    const PlistValue* value, bool preferSmallUnits) {
  return ZYMWeightValueTransformer::convertForStorage(value, weightUnits(), preferSmallUnits);
}

std::int64_t ZYMSaltWeightValueTransformer::weightUnits() {
  return 2;
}

}  // namespace zym
