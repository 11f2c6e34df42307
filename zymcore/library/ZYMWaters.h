#pragma once

#include "zymcore/library/ZYMFlatLibrary.h"

namespace zym {

/// The waters that the brewer knows. The first by name stands for no choice; what leaves it out
/// throws `NSRangeException` on an empty library.
class ZYMWaters final : public ZYMFlatLibrary {
 public:
  [[nodiscard]] static ZYMWaters& sharedInstance();

  /// A water of exactly that name, however many there are.
  [[nodiscard]] std::optional<PlistDictionary> waterWithName(std::string_view name) const;
  [[nodiscard]] PlistArray allItemsWithoutNoChosenWaterOption();
  /// A water without a name shows as "" and stays without one.
  [[nodiscard]] std::vector<ZYMSummary> summariesForAllItemsWithoutNoChosenWaterOption() const;

 private:
  ZYMWaters();
};

}  // namespace zym
