#pragma once

#include "zymcore/library/ZYMFlatLibrary.h"

namespace zym {

/// The yeasts that the brewer knows. The first by name stands for no choice; what leaves it out, or
/// asks for it, throws `NSRangeException` on an empty library.
class ZYMYeasts final : public ZYMFlatLibrary {
 public:
  [[nodiscard]] static ZYMYeasts& sharedInstance();

  [[nodiscard]] PlistDictionary noChosenYeast();
  [[nodiscard]] PlistArray allItemsWithoutNoChosenYeastOption();
  [[nodiscard]] std::vector<ZYMSummary> summariesforAllItemsWithoutNoChosenYeastOption();
  /// The yeast of exactly that name, when there is exactly one.
  [[nodiscard]] std::optional<PlistDictionary> yeastForName(std::string_view name) const;

 private:
  ZYMYeasts();
};

}  // namespace zym
