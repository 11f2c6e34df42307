#pragma once

#include <string>
#include <vector>

#include "zymcore/platform/values/PlistValue.h"

namespace zym::pages {

/// The water and heat of a brew day, carried from the strike to the last run-off. Grams, ml, °C; a
/// gram of grain holds back a millilitre, and has 0.32 of the heat of a gram of water. The
/// operations are called in this order, once each.
class Mash {
 public:
  /// Both must outlive it. Reads "Boiling Point".
  Mash(const PlistDictionary& batch, const PlistDictionary& recipe);

  [[nodiscard]] double grain() const noexcept { return grain_; }

  void addStrike(PlistDictionary& values) const;
  void addSteps(PlistDictionary& values);
  void addSparge(PlistDictionary& values);
  void addTotalWater(PlistDictionary& values) const;

 private:
  struct StepText;
  static const StepText stepTexts[];

  [[nodiscard]] double temperatureOfStep(std::size_t i) const;
  [[nodiscard]] std::string rest(std::size_t i);
  [[nodiscard]] std::string infusion(std::size_t i);
  [[nodiscard]] std::string decoction(std::size_t i);
  [[nodiscard]] std::string directHeating(std::size_t i);
  [[nodiscard]] std::string mashOut(std::size_t i);
  [[nodiscard]] std::string batchSpargeSteps();

  const PlistDictionary& batch_;
  const PlistDictionary& recipe_;
  std::vector<const PlistDictionary*> steps_;
  bool isMashed_;
  double grain_ = 0;
  double water_;  // in the mash so far
  double heat_;   // of grain and tun, as grams of water
  double boilingPoint_;
  double preBoilVolume_;
};

}  // namespace zym::pages
