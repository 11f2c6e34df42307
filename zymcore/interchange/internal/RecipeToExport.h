#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// What is dissolved in the brewing water: an ion of the base water, and what salts add to it.
struct Ion {
  struct Share {
    KeyName salt;
    double ofItsWeight;
  };
  KeyName inWater;
  std::array<Share, 3> shares;
};
namespace ions {
extern const Ion sulfate, calcium, magnesium, chloride, sodium, bicarbonate;
}

/// A recipe on its way into a file of another program: recalculated, with its profile or else the
/// default one, and what such files ask for that no document holds. Main thread.
class RecipeToExport {
 public:
  explicit RecipeToExport(const PlistDictionary& document);

  [[nodiscard]] const PlistDictionary& recipe() const noexcept { return recipe_; }
  [[nodiscard]] const PlistDictionary& profile() const noexcept { return profile_; }
  /// Minutes of all steps together.
  [[nodiscard]] std::int64_t mashMinutes() const noexcept { return mashMinutes_; }
  /// Grams.
  [[nodiscard]] double mashedGrain() const noexcept { return mashedGrain_; }
  /// mg/l.
  [[nodiscard]] double concentrationOf(const Ion& ion) const;

 private:
  PlistDictionary recipe_;
  PlistDictionary profile_;
  PlistDictionary baseWater_;
  std::int64_t mashMinutes_ = 0;
  double mashedGrain_ = 0;
};

/// A style as other programs divide it.
struct StyleToExport {
  /// The style of the recipe in those guidelines, else the one that stands for no choice.
  StyleToExport(const PlistDictionary& recipe, std::int64_t guidelines);

  PlistDictionary record;
  // What stands before and behind the first "-" of its name; all of it is the name without one.
  std::string category;
  std::string name;
  // "10" and "A" of "10A".
  std::string categoryNumber;
  std::string letter;
};

/// The value as a file has it that is all text; empty for a container.
[[nodiscard]] std::string textOf(const PlistDictionary& record, KeyName key);

}  // namespace zym
