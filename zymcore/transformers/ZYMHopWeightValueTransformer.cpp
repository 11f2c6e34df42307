#include "zymcore/transformers/ZYMHopWeightValueTransformer.h"

#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/platform/host/NSUserDefaults.h"

namespace zym {

std::string ZYMHopWeightValueTransformer::convertForDisplay(const PlistValue* value) {
  return ZYMWeightValueTransformer::convertForDisplay(value, weightUnits());
}

std::int64_t ZYMHopWeightValueTransformer::weightUnits() {
  return NSUserDefaults::standardUserDefaults().integerForKey(keys::HopUnits);
}

}  // namespace zym
