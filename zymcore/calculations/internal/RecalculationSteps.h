#pragma once

#include <cstdint>

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::recalculation {

// The steps that the prediction of a recipe and the outcome of a batch have in common.

/// Grams of extract in a millilitre of wort, times this, are gravity points of 0.001.
inline constexpr double gravityPointsPerExtract = 386.5;

/// The gravity points of that extract in grams in that many ml.
[[nodiscard]] double gravityPoints(double extract, double volume) noexcept;

/// What the calculations read of a fermentable addition.
struct Fermentable {
  double amount;  // grams
  double yield;   // percent of it that is extract
  double colour;  // degrees Lovibond
  bool isGrain;
  bool isMashed;
  bool isBoiledFromTheStart;

  explicit Fermentable(const PlistDictionary& addition) noexcept;

  /// A colouring this strong gives its colour directly, not by malt colour units.
  [[nodiscard]] bool isColouring() const noexcept { return colour > 1000; }
  /// Grams; only grain takes the efficiency of the mash.
  [[nodiscard]] double extract(double mashEfficiency) const noexcept;
  /// Malt colour units in the given ml of wort, thinned.
  [[nodiscard]] double maltColourUnits(double wortVolume, double dilution) const noexcept;
};

/// SG of that extract in grams in that many ml, thinned.
[[nodiscard]] double gravityOf(double extract, double volume, double dilution = 1) noexcept;

/// The share of the wort in what is pitched, from ml added, transferred and pitched.
[[nodiscard]] double dilutionOf(double waterAdded, double transferred, double pitched) noexcept;

/// What the fermentables give to the colour.
struct Colour {
  double maltColourUnits = 0;
  double viggiano = 0;
  double direct = 0;  // SRM

  /// Adds a fermentable of so many malt colour units in that many ml of wort. Viggiano counts
  /// `mashed` instead of them for what is in the mash.
  void add(const Fermentable& fermentable, double wortVolume, double units, double mashed) noexcept;
  /// SRM in single precision. Reads "BeerColorFormula".
  [[nodiscard]] float inSRM() const;
};

/// How a wort takes up bitterness.
struct Bittering {
  double gravity;       // SG of the boil
  double wortVolume;    // ml after the boil
  double steepMinutes;  // of boil, that count for every hop that was in the kettle
  double dilution;

  /// Minutes of boil that the steep of the recipe counts for. Reads "Boiling Point".
  [[nodiscard]] static double steepMinutesOf(const PlistDictionary& recipe);
  /// IBU of an addition. Reads "HopFormula" and the adjustments.
  [[nodiscard]] double of(const PlistDictionary& hop) const;
};

}  // namespace zym::recalculation
