#pragma once

#include <cstdint>
#include <string>

#include "zymcore/transformers/ZYMValueTransformerProtocol.h"

namespace zym {

/// Weights, stored in g: metric, or pounds and ounces. Reads "Units".
class ZYMWeightValueTransformer : public ZYMValueTransformer<ZYMWeightValueTransformer> {
 public:
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value);
  [[nodiscard]] static std::string convertForStorage(const PlistValue* value);
  /// A number without a unit is grams or ounces where small units are preferred, else it is judged
  /// by its size. Two numbers are pounds and ounces, whatever unit they end in.
  [[nodiscard]] static std::string convertForStorage_preferSmallUnits(const PlistValue* value,
                                                                      bool preferSmallUnits);
  /// 2 for metric; anything else is pounds and ounces.
  [[nodiscard]] static std::int64_t weightUnits();

 protected:
  // For the subclasses, which show and read by units of their own.
  [[nodiscard]] static std::string convertForDisplay(const PlistValue* value, std::int64_t units);
  [[nodiscard]] static std::string convertForStorage(const PlistValue* value, std::int64_t units,
                                                     bool preferSmallUnits);
};

}  // namespace zym
