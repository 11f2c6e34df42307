#pragma once

#include <cstdint>
#include <string>

#include "zymcore/transformers/ZYMWeightValueTransformer.h"

namespace zym {

/// Weights of salts, stored in g, always metric; a number without a unit is grams. Used as an
/// object it goes by "Units" like any weight.
class ZYMSaltWeightValueTransformer final : public ZYMWeightValueTransformer {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  [[nodiscard]] static std::string convertForStorage(const PlistValue* value);
  [[nodiscard]] static std::string convertForStorage_preferSmallUnits(const PlistValue* value,
                                                                      bool preferSmallUnits);
  [[nodiscard]] static std::int64_t weightUnits();
};

}  // namespace zym
