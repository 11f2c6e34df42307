#include "zymcore/calculations/ZYMBeerCalculations.h"

#include <algorithm>
#include <cmath>

#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/platform/host/NSUserDefaults.h"

namespace zym {
namespace {

constexpr double ebcInSRM = 1.97;
constexpr double refractometerFactor = 1.04;

constexpr double lovibondToSRM(double lovibond) {
  return 1.3546 * lovibond - 0.76;
}

struct ColourSegment {
  double upTo;  // SRM, included
  double from;
  double red, redFall;  // channel value of 255 at `from`, and its fall with each SRM
  double green, greenFall;
  double blue, blueFall;
};
constexpr ColourSegment colourSegments[] = {
    {0.1, 0, 197, 0, 232, 0, 248, 0},  // water
    {2, 0.1, 250, 0, 250, 0, 60, 0},      {12, 2, 250, 6, 250, 13.5, 60, 0.3},
    {22, 12, 192, 12, 114, 7.5, 57, 1.8}, {HUGE_VAL, 22, 70, 5.6, 40, 3.1, 40, 3.2},
};

struct UtilisationStep {
  double below;  // minutes
  double utilisation;
};
constexpr UtilisationStep danielsSteps[] = {{10, 0.05}, {20, 0.12}, {30, 0.15},      {45, 0.19},
                                            {60, 0.22}, {75, 0.24}, {HUGE_VAL, 0.27}};
constexpr UtilisationStep garetzSteps[] = {
    {11, 0},    {16, 0.02}, {21, 0.05}, {26, 0.08}, {31, 0.11}, {36, 0.14},      {41, 0.16},
    {46, 0.18}, {51, 0.19}, {61, 0.20}, {71, 0.21}, {81, 0.22}, {HUGE_VAL, 0.23}};

template <std::size_t count>
double utilisationAt(double minutes, const UtilisationStep (&steps)[count]) {
  const auto* step = std::find_if(std::begin(steps), std::end(steps),
                                  [=](const UtilisationStep& s) { return minutes < s.below; });
  return step == std::end(steps) ? steps[count - 1].utilisation : step->utilisation;
}

double gravityAdjustment(double gravity) {
  return (gravity - 1.05) / 0.2 + 1;
}

// Only Rager leaves worts under 1.050 as they are.
using UtilisationFormula = double (*)(double gravity, double minutes);
constexpr UtilisationFormula utilisationFormulas[] = {
    [](double gravity, double minutes) {  // Tinseth
      return 1.65 * std::pow(0.000125, gravity - 1) * (1 - std::exp(-0.04 * minutes)) / 4.15;
    },
    [](double gravity, double minutes) {  // Daniels
      return utilisationAt(minutes, danielsSteps) / gravityAdjustment(gravity);
    },
    [](double gravity, double minutes) {  // Rager
      return (18.11 + 13.86 * std::tanh((minutes - 31.32) / 18.27)) /
             (gravity > 1.05 ? gravityAdjustment(gravity) : 1) / 100;
    },
    [](double gravity, double minutes) {  // Garetz
      return utilisationAt(minutes, garetzSteps) / gravityAdjustment(gravity);
    },
};

double hopFormAdjustment(std::int64_t hopForm) {
  const NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
  switch (hopForm) {
    case 1:
      return defaults.doubleForKey(keys::BaggedHopAdjustment);
    case 2:
      return defaults.doubleForKey(keys::PelletHopAdjustment);
    case 3:
      return defaults.doubleForKey(keys::BaggedPelletHopAdjustment);
    default:
      return 1.0;
  }
}

// A time at so many degrees below the boil as time of boil. The power is in single precision.
double timeOfBoil(double minutes, double degreesBelow) {
  if (!(degreesBelow > 0)) return minutes;
  return minutes / std::pow(2.0F, static_cast<float>(degreesBelow / 10));
}

}  // namespace

double ZYMBeerCalculations::boilingPointAtAltitude(double metres) {
  const double feet = metres * 3.2808399;
  const auto base = static_cast<float>(1 - 6.8753e-06 * feet);
  const double inchesOfMercury = 29.921 * std::pow(base, 5.2559F);
  const double fahrenheit = 49.161 * std::log(static_cast<float>(inchesOfMercury)) + 44.932;
  return ZYMUnitConverter::convertFahrenheitToCelcius(fahrenheit);
}

double ZYMBeerCalculations::boilingPoint() {
  const float set = NSUserDefaults::standardUserDefaults().floatForKey(keys::BoilingPoint);
  return set < 20 ? 100.0 : set;
}

double ZYMBeerCalculations::effectiveTimeForAdditionTime_atTemperature(double minutes,
                                                                       double temperature) {
  return timeOfBoil(minutes, boilingPoint() - temperature);
}

double ZYMBeerCalculations::convertLovibondtoEBC(double lovibond) {
  const double srm = lovibondToSRM(lovibond);
  return srm < 0 ? 0 : ebcInSRM * srm;
}

double ZYMBeerCalculations::convertEBCtoLovibond(double ebc) {
  return ebc < 0 ? 0 : std::max(0.0, (ebc / ebcInSRM + 0.76) / 1.3546);
}

double ZYMBeerCalculations::convertSRMtoEBC(double srm) {
  return srm < 0 ? 0 : ebcInSRM * srm;
}

double ZYMBeerCalculations::convertEBCtoSRM(double ebc) {
  return ebc < 0 ? 0 : ebc / ebcInSRM;
}

double ZYMBeerCalculations::beerColorForMCU_withFormula(double mcu, std::int64_t formula) {
  switch (formula) {
    case 0:
      return 1.4922 * std::pow(mcu, 0.6859);
    case 1:
      return 0.2 * mcu + 8.4;
    case 2:
      return 0.3 * mcu + 4.7;
    default:
      return 0;
  }
}

NSColor ZYMBeerCalculations::colourForBeerWithSRM(double srm) {
  const auto* segment = std::find_if(std::begin(colourSegments), std::end(colourSegments) - 1,
                                     [=](const ColourSegment& s) { return srm <= s.upTo; });
  const auto channel = [&](double value, double fall) {
    return std::max(0.0, (value - fall * (srm - segment->from)) / 255);
  };
  return NSColor::colorWithRed_green_blue_alpha(channel(segment->red, segment->redFall),
                                                channel(segment->green, segment->greenFall),
                                                channel(segment->blue, segment->blueFall), 1.0);
}

double ZYMBeerCalculations::utilisationForGravity_addedUsing_withTime_usingFormula(
    double gravity, std::int64_t hopForm, double minutes, std::int64_t formula) {
  if (formula < 0 || formula >= std::ssize(utilisationFormulas)) return 0;
  return hopFormAdjustment(hopForm) * utilisationFormulas[formula](gravity, minutes);
}

double ZYMBeerCalculations::
    calculateIBUForGrammesOfHops_addedUsing_withAlphaInPercent_forTimeInMinutes_forGravity_forTemperature_finalVolume_usingFormula(
        double grammes, std::int64_t hopForm, double alpha, double minutes, double gravity,
        double temperature, double finalVolume, std::int64_t formula) {
  if (grammes == 0 || alpha == 0 || minutes == 0 || gravity == 0 || finalVolume == 0) return 0;
  const double litres = finalVolume / 1000;
  // From 100 degrees and not from the local boiling point: at altitude every boil counts for less.
  const double boiled = timeOfBoil(minutes, 100 - temperature);
  const double utilisation =
      utilisationForGravity_addedUsing_withTime_usingFormula(gravity, hopForm, boiled, formula);
  return grammes * alpha * 10 * utilisation / litres;
}

double ZYMBeerCalculations::
    calculateIBUForGrammesOfHops_addedUsing_withAlphaInPercent_forTimeInMinutes_forGravity_finalVolume_usingFormula(
        double grammes, std::int64_t hopForm, double alpha, double minutes, double gravity,
        double finalVolume, std::int64_t formula) {
  return calculateIBUForGrammesOfHops_addedUsing_withAlphaInPercent_forTimeInMinutes_forGravity_forTemperature_finalVolume_usingFormula(
      grammes, hopForm, alpha, minutes, gravity, boilingPoint(), finalVolume, formula);
}

double ZYMBeerCalculations::apparentAttenuationWithStartingSG_FinishedSG(double og, double fg) {
  const double start = ZYMUnitConverter::convertSGToPlato(og);
  const double finish = ZYMUnitConverter::convertSGToPlato(fg);
  return start < 0.01 ? 0 : (1 - finish / start) * 100;
}

double ZYMBeerCalculations::realAttenuationWithStartingSG_FinishedSG(double og, double fg) {
  const double start = ZYMUnitConverter::convertSGToPlato(og);
  const double finish = ZYMUnitConverter::convertSGToPlato(fg);
  return start < 0.01 ? 0 : (1 - (0.8192 * finish + 0.1808 * start) / start) * 100;
}

double ZYMBeerCalculations::percentageAlcoholByWeightWithStartingSG_FinishedSG(double og,
                                                                               double fg) {
  const double start = ZYMUnitConverter::convertSGToPlato(og);
  const double finish = ZYMUnitConverter::convertSGToPlato(fg);
  return (start - (0.1808 * start + 0.8192 * finish)) / (2.0665 - 0.010665 * start);
}

double ZYMBeerCalculations::percentageAlcoholByVolumeWithStartingSG_FinishedSG(double og,
                                                                               double fg) {
  return percentageAlcoholByWeightWithStartingSG_FinishedSG(og, fg) * fg / 0.794;
}

double ZYMBeerCalculations::convertBrixToSG(double brix) {
  const double plato = brix / refractometerFactor;
  return 1 + plato / (258.6 - plato / 258.2 * 227.1);
}

double ZYMBeerCalculations::convertSGtoBrix(double sg) {
  const double points = sg - 1;
  return refractometerFactor * 258.6 * points / (1 + 0.87955 * points);
}

double ZYMBeerCalculations::finalBrixGivenFG_OG(double fg, double og) {
  constexpr int mostSteps = 100000;
  double brix = (og - 1) / 0.01;
  for (int step = 0; step < mostSteps && fg > specificGravityGivenOG_currentBrix(og, brix);
       ++step) {
    brix += 0.1;
  }
  return brix * refractometerFactor;
}

double ZYMBeerCalculations::percentageAlcoholByVolumeWithBrix_FG(double brix, double fg) {
  return percentageAlcoholByVolumeWithStartingSG_FinishedSG(
      originalGravityGivenSG_currentBrix(fg, brix), fg);
}

double ZYMBeerCalculations::percentageAlcoholByWeightWithBrix_FG(double brix, double fg) {
  return percentageAlcoholByWeightWithStartingSG_FinishedSG(
      originalGravityGivenSG_currentBrix(fg, brix), fg);
}

double ZYMBeerCalculations::originalGravityGivenSG_currentBrix(double sg, double brix) {
  const double refraction = 1.33302 + 0.001427193 * brix + 5.791157e-06 * brix * brix;
  const double realExtract =
      194.5935 + 129.8 * sg - 790.8732 * refraction + 410.8815 * refraction * refraction;
  const double alcoholByWeight =
      1017.5596 - 277.4 * sg - 1805.1228 * refraction + 937.8135 * refraction * refraction;
  const double plato =
      100 * (2.0665 * alcoholByWeight + realExtract) / (100 + 1.0665 * alcoholByWeight);
  return ZYMUnitConverter::convertPlatoToSG(plato);
}

double ZYMBeerCalculations::specificGravityGivenOG_currentBrix(double og, double brix) {
  const double p = ZYMUnitConverter::convertSGToPlato(og);
  return 1.001843 - 0.002318474 * p - 7.775e-06 * p * p - 3.4e-08 * p * p * p + 0.00574 * brix +
         3.344e-05 * brix * brix + 8.6e-08 * brix * brix * brix;
}

double ZYMBeerCalculations::SGCorrectionValueForTemp(double t) {
  if (t > 50) return -0.005431719 + 0.0001963596 * t + 2.661056e-06 * t * t;
  if (t >= 4) {
    return -0.0008031922 - 4.73773e-05 * t + 7.231263e-06 * t * t - 3.078278e-08 * t * t * t;
  }
  return -0.000740644 - 3.2692e-05 * t;
}

}  // namespace zym
