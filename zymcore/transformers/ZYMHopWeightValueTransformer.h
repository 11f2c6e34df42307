#pragma once

#include <cstdint>
#include <string>

#include "zymcore/transformers/ZYMWeightValueTransformer.h"

namespace zym {

/// Weights of hops, stored in g. Shown by "HopUnits"; but `convertForStorage`, and a transformer
/// used as an object, go by "Units" like any weight.
class ZYMHopWeightValueTransformer final : public ZYMWeightValueTransformer {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  /// As of every weight, by "HopUnits".
  [[nodiscard]] static std::string convertForStorage_preferSmallUnits(const PlistValue* value,
                                                                      bool preferSmallUnits);
  [[nodiscard]] static std::int64_t weightUnits();
};

}  // namespace zym
