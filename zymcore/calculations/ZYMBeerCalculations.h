#pragma once

#include <cstdint>

#include "zymcore/platform/graphics/NSColor.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// The arithmetic of brewing. Nothing here fails: a number out of its range gives what the formula
/// makes of it. Gravities are specific gravity, colours SRM unless named otherwise, temperatures
/// °C, times minutes, percentages 0 to 100. What reads user defaults says so (`DefaultsKeys.h`).
class ZYMBeerCalculations {
 public:
  ZYMBeerCalculations() = delete;

  // Documents. One thread at a time for each; different documents are independent.

  /// Brings every predicted figure of a recipe up to date, in place, as text with six decimals:
  /// gravities, colour, bitterness, attenuation, alcohol, and the shares of each addition. A recipe
  /// with an empty volume keeps its figures, but for the water added. What is missing reads as 0.
  static void recalculateBeerRecipe(PlistDictionary& recipe);

  /// Works out what the measurements of a batch mean, in place: corrected gravities, consistent
  /// volumes, mash efficiency, colour, bitterness and alcohol in "Actuals", and "WaterGrainRatio"
  /// of a batch without sparge.
  static void recalculateBatch(PlistDictionary& batch);

  /// Sums what the stock drawn for the additions of "ModifiedRecipe" cost, into "Cost".
  static void recalculateBatchCost(PlistDictionary& batch);

  // Temperature.

  /// °C at which water boils, from the altitude in metres. Pressure by the international standard
  /// atmosphere; boiling point of water by the logarithmic fit of the US flight tables.
  [[nodiscard]] static double boilingPointAtAltitude(double metres);
  /// The user's boiling point, with 100 for one below 20. Reads "Boiling Point".
  [[nodiscard]] static double boilingPoint();
  /// The minutes of boil that count as much as `minutes` below the boil: isomerisation halves for
  /// every 10 °C. Reads "Boiling Point".
  [[nodiscard]] static double effectiveTimeForAdditionTime_atTemperature(double minutes,
                                                                         double temperature);

  // Colour. Lovibond to SRM as the ASBC relates them: SRM = 1.3546 °L - 0.76; EBC = 1.97 SRM.

  [[nodiscard]] static double convertLovibondtoEBC(double lovibond);
  [[nodiscard]] static double convertEBCtoLovibond(double ebc);
  [[nodiscard]] static double convertSRMtoEBC(double srm);
  [[nodiscard]] static double convertEBCtoSRM(double ebc);
  /// SRM from malt colour units by Morey (0: D. Morey, "Beer Color and the MCU", 1995), Daniels (1:
  /// R. Daniels, "Designing Great Beers", 1996) or Mosher (2: R. Mosher, "The Brewer's Companion",
  /// 1994); 0 by any other code. Viggiano (3) goes by the grist and not by this.
  [[nodiscard]] static double beerColorForMCU_withFormula(double mcu, std::int64_t formula);
  /// The colour of the beer as it looks on a screen.
  [[nodiscard]] static NSColor colourForBeerWithSRM(double srm);

  // Bitterness, by Tinseth (0: G. Tinseth, "The Hop Page", 1997), Daniels (1: "Designing Great
  // Beers"), Rager (2: J. Rager, "Calculating Hop Bitterness in Beer", Zymurgy 13/4, 1990) or
  // Garetz (3: M. Garetz, "Using Hops", 1994); 0 by any other code. The hop form code is the
  // position in `words::hopForms`.

  /// The fraction of the alpha acid that is used. Reads the adjustment of the hop form.
  [[nodiscard]] static double utilisationForGravity_addedUsing_withTime_usingFormula(
      double gravity, std::int64_t hopForm, double minutes, std::int64_t formula);
  /// IBU of an addition, from grams, alpha acid in percent and the final volume in ml; 0 where any
  /// of them, the time or the gravity is 0.
  [[nodiscard]] static double
  calculateIBUForGrammesOfHops_addedUsing_withAlphaInPercent_forTimeInMinutes_forGravity_forTemperature_finalVolume_usingFormula(
      double grammes, std::int64_t hopForm, double alpha, double minutes, double gravity,
      double temperature, double finalVolume, std::int64_t formula);
  /// The same at the user's boiling point. Reads "Boiling Point".
  [[nodiscard]] static double
  calculateIBUForGrammesOfHops_addedUsing_withAlphaInPercent_forTimeInMinutes_forGravity_finalVolume_usingFormula(
      double grammes, std::int64_t hopForm, double alpha, double minutes, double gravity,
      double finalVolume, std::int64_t formula);

  // Attenuation and alcohol, by K. Balling's relations with gravities as degrees Plato.

  [[nodiscard]] static double apparentAttenuationWithStartingSG_FinishedSG(double og, double fg);
  [[nodiscard]] static double realAttenuationWithStartingSG_FinishedSG(double og, double fg);
  [[nodiscard]] static double percentageAlcoholByWeightWithStartingSG_FinishedSG(double og,
                                                                                 double fg);
  [[nodiscard]] static double percentageAlcoholByVolumeWithStartingSG_FinishedSG(double og,
                                                                                 double fg);

  // Refractometer readings, degrees Brix of a scale that reads wort 1.04 times too high. After
  // L. Bonham, "The Use of Handheld Refractometers by Homebrewers", Zymurgy 24/1, 2001.

  [[nodiscard]] static double convertBrixToSG(double brix);
  [[nodiscard]] static double convertSGtoBrix(double sg);
  /// The reading that a beer of that FG will give. At most 100,000 steps of 0.1 are tried.
  [[nodiscard]] static double finalBrixGivenFG_OG(double fg, double og);
  [[nodiscard]] static double percentageAlcoholByVolumeWithBrix_FG(double brix, double fg);
  [[nodiscard]] static double percentageAlcoholByWeightWithBrix_FG(double brix, double fg);
  [[nodiscard]] static double originalGravityGivenSG_currentBrix(double sg, double brix);
  [[nodiscard]] static double specificGravityGivenOG_currentBrix(double og, double brix);

  /// What to add to a hydrometer reading at that temperature of the sample; less the same at the
  /// temperature it is calibrated for.
  [[nodiscard]] static double SGCorrectionValueForTemp(double temperature);
};

}  // namespace zym
