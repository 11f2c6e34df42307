#include "tests/support/Defaults.h"
#include "tests/support/Test.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/NSColorExtensions.h"
#include "zymcore/platform/values/NSNotFound.h"

namespace zym {
namespace {

using Calculations = ZYMBeerCalculations;
using Convert = ZYMUnitConverter;

enum Formula { Tinseth, Daniels, Rager, Garetz };

double utilisation(double gravity, double minutes, std::int64_t formula) {
  return Calculations::utilisationForGravity_addedUsing_withTime_usingFormula(gravity, 0, minutes,
                                                                              formula);
}
double ibu(double grammes, std::int64_t form, double alpha, double minutes, double gravity,
           double volume, std::int64_t formula) {
  return Calculations::
      calculateIBUForGrammesOfHops_addedUsing_withAlphaInPercent_forTimeInMinutes_forGravity_finalVolume_usingFormula(
          grammes, form, alpha, minutes, gravity, volume, formula);
}

class Formulas : public testing::WithDefaults {};

// To the digits that brewers agreed on, which are fewer than the units have.
TEST_F(Formulas, UnitsOfWeightAndVolume) {
  struct Unit {
    double (*to)(double);
    double (*from)(double);
    double factor;
  };
  const Unit units[] = {
      {Convert::convertKilogrammesToGrammes, Convert::convertGrammesToKilogrammes, 1000},
      {Convert::convertOuncesToGrammes, Convert::convertGrammesToOunces, 28.35},
      {Convert::convertPoundsToGrammes, Convert::convertGrammesToPounds, 453.59},
      {Convert::convertLitresToMillilitres, Convert::convertMillilitresToLitres, 1000},
      {Convert::convertImperialPintsToMillilitres, Convert::convertMillilitresToImperialPints,
       568.26},
      {Convert::convertImperialGallonsToMillilitres, Convert::convertMillilitresToImperialGallons,
       4546.09},
      {Convert::convertUSPintsToMillilitres, Convert::convertMillilitresToUSPints, 473.18},
      {Convert::convertUSQuartsToMillilitres, Convert::convertMillilitresToUSQuarts, 946.35},
      {Convert::convertUSGallonsToMillilitres, Convert::convertMillilitresToUSGallons, 3785.41},
      {Convert::convertUSBarrelsToMillilitres, Convert::convertMillilitresToUSBarrels, 117347.77},
      {Convert::convertUKBarrelsToMillilitres, Convert::convertMillilitresToUKBarrels, 163659.24}};
  for (const Unit& unit : units) {
    EXPECT_EQ(unit.to(1), unit.factor);
    EXPECT_EQ(unit.from(unit.factor), 1);
    EXPECT_DOUBLE_EQ(unit.from(unit.to(7)), 7);
  }
}

TEST_F(Formulas, UnitsAreTrimmedFromNumbers) {
  constexpr std::pair<const char*, const char*> texts[] = {
      {"", "0.0"},   {"5.5 kg", "5.5"}, {"+5kg", "+5"},     {"1,5", "1"},
      {"12x", "12"}, {"kg 5", ""},      {"-1.2e3", "-1.2"}, {"1-2+3.4", "1-2+3.4"}};
  for (const auto& [text, head] : texts) EXPECT_EQ(Convert::trimUnitFromNumber(text), head);
}

// One number in, one out; the right sides are worked out by hand from the published formulas.
TEST_F(Formulas, OfOneNumber) {
  struct Row {
    double (*formula)(double);
    double from, to;
    double tolerance = 1e-9;
  };
  const Row rows[] = {
      {Convert::convertCelciusToFahrenheit, 100, 212},
      {Convert::convertCelciusToFahrenheit, -40, -40},
      {Convert::convertFahrenheitToCelcius, 50, 10},
      {Convert::convertSGToPlato, 1.04, 10},
      {Convert::convertPlatoToSG, 10, 1.04},
      // Single precision is good for four decimals.
      {Calculations::boilingPointAtAltitude, -400, 101.29418, 1e-4},
      {Calculations::boilingPointAtAltitude, 0, 100.00480, 1e-4},
      {Calculations::boilingPointAtAltitude, 1609, 94.69802, 1e-4},
      {Calculations::boilingPointAtAltitude, 3640, 87.70652, 1e-4},
      {Calculations::convertSRMtoEBC, 10, 19.7},
      {Calculations::convertSRMtoEBC, 0, 0},
      {Calculations::convertSRMtoEBC, -1, 0},
      {Calculations::convertEBCtoSRM, 19.7, 10},
      {Calculations::convertEBCtoSRM, -1, 0},
      {Calculations::convertLovibondtoEBC, 10, 25.18842},
      {Calculations::convertLovibondtoEBC, 0.5, 0},  // below nothing
      {Calculations::convertEBCtoLovibond, 25, 9.929392684},
      {Calculations::convertEBCtoLovibond, 0, 0.561051233},
      {Calculations::convertEBCtoLovibond, -0.1, 0},
      {Calculations::convertBrixToSG, 10.4, 1.040031306},
      {Calculations::convertBrixToSG, -5.2, 0.980988431},
      {Calculations::convertSGtoBrix, 1.04, 10.392143604},
      {Calculations::convertSGtoBrix, 0.995, -1.350659864},
      {Calculations::SGCorrectionValueForTemp, -5, -0.000577184},
      {Calculations::SGCorrectionValueForTemp, 3.999, -0.000871379},
      {Calculations::SGCorrectionValueForTemp, 4, -0.000878971},
      {Calculations::SGCorrectionValueForTemp, 20, 0.000895505},
      {Calculations::SGCorrectionValueForTemp, 50, 0.011058253},
      {Calculations::SGCorrectionValueForTemp, 50.001, 0.011039363},
      {Calculations::SGCorrectionValueForTemp, 70, 0.021352627},
  };
  for (const Row& row : rows) {
    EXPECT_NEAR(row.formula(row.from), row.to, row.tolerance)
        << "row " << &row - rows << " of " << row.from;
  }
  EXPECT_TRUE(std::isinf(Convert::convertPlatoToSG(260)));
}

TEST_F(Formulas, OfTwoNumbers) {
  struct Row {
    double (*formula)(double, double);
    double first, second, to;
  };
  const Row rows[] = {
      {Calculations::apparentAttenuationWithStartingSG_FinishedSG, 1.04, 1.01, 74.257425743},
      {Calculations::apparentAttenuationWithStartingSG_FinishedSG, 1, 1, 0},
      {Calculations::realAttenuationWithStartingSG_FinishedSG, 1.04, 1.01, 60.831683168},
      {Calculations::realAttenuationWithStartingSG_FinishedSG, 0.99, 1, 0},
      {Calculations::percentageAlcoholByWeightWithStartingSG_FinishedSG, 1.09, 1.02, 7.297879520},
      {Calculations::percentageAlcoholByVolumeWithStartingSG_FinishedSG, 1.09, 1.02, 9.375109711},
      {Calculations::specificGravityGivenOG_currentBrix, 1.05, 6, 1.007544159},
      {Calculations::specificGravityGivenOG_currentBrix, 1.1, 12, 1.016093981},
      {Calculations::originalGravityGivenSG_currentBrix, 1.012, 6.2, 1.045055210},
      {Calculations::originalGravityGivenSG_currentBrix, 1.02, 10, 1.072006490},
      {Calculations::percentageAlcoholByWeightWithBrix_FG, 6.2, 1.012, 3.419228173},
      {Calculations::percentageAlcoholByVolumeWithBrix_FG, 10, 1.02, 6.921313509},
      // From (OG - 1) / 0.01 in steps of 0.1: 18, 28 and none.
      {Calculations::finalBrixGivenFG_OG, 1.012, 1.05, 7.072},
      {Calculations::finalBrixGivenFG_OG, 1.02, 1.08, 11.232},
      {Calculations::finalBrixGivenFG_OG, 1.001843, 1.0, 0},
  };
  for (const Row& row : rows) {
    EXPECT_NEAR(row.formula(row.first, row.second), row.to, 1e-8)
        << "row " << &row - rows << " of " << row.first << ", " << row.second;
  }
}

TEST_F(Formulas, AReadingWithoutEndIsGivenUp) {
  EXPECT_NEAR(Calculations::finalBrixGivenFG_OG(HUGE_VAL, 1.0), 10'000 * 1.04, 1e-6);
  for (const double og : {-1e300, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
    (void)Calculations::finalBrixGivenFG_OG(1e300, og);
  }
}

TEST_F(Formulas, BeerColourFromMaltColourUnits) {
  EXPECT_NEAR(Calculations::beerColorForMCU_withFormula(10, 0), 7.239807780, 1e-9);
  EXPECT_DOUBLE_EQ(Calculations::beerColorForMCU_withFormula(10, 1), 10.4);
  EXPECT_DOUBLE_EQ(Calculations::beerColorForMCU_withFormula(10, 2), 7.7);
  for (const std::int64_t noFormula :
       {std::int64_t{3}, std::int64_t{4}, std::int64_t{-1}, NSNotFound}) {
    EXPECT_EQ(Calculations::beerColorForMCU_withFormula(10, noFormula), 0);
  }
}

TEST_F(Formulas, ColourOnAScreen) {
  constexpr std::pair<double, const char*> colours[] = {
      {0, "c5e8f8"},  {0.1, "c5e8f8"},  {0.11, "fafa3c"},  {2, "fafa3c"},  {7, "dcb63a"},
      {12, "be7339"}, {12.5, "ba6e38"}, {21, "542e28"},    {22, "482727"}, {22.5, "432626"},
      {30, "190f0e"}, {40, "000000"},   {1e300, "000000"}, {NAN, "000000"}};
  for (const auto& [srm, hex] : colours) {
    EXPECT_EQ(hexRepresentation(Calculations::colourForBeerWithSRM(srm)), hex) << srm;
  }
}

TEST_F(Formulas, Utilisation) {
  struct Row {
    Formula formula;
    double gravity, minutes, utilisation;
  };
  constexpr Row rows[] = {
      {Tinseth, 1.05, 60, 0.230664077}, {Tinseth, 1.03, 10, 0.100100371},
      {Tinseth, 1.08, 90, 0.188433004}, {Rager, 1.04, 60, 0.308195064},  // as at 1.050
      {Rager, 1.05, 10, 0.066992167},   {Rager, 1.15, 60, 0.205463376},
      {Daniels, 1.04, 60, 0.24 / 0.95}, {Garetz, 1.04, 60, 0.20 / 0.95},
      {Daniels, 1.15, 60, 0.24 / 1.5},  {Garetz, 1.15, 60, 0.20 / 1.5}};
  for (const Row& row : rows) {
    EXPECT_NEAR(utilisation(row.gravity, row.minutes, row.formula), row.utilisation, 1e-9)
        << row.formula << " " << row.gravity << " " << row.minutes;
  }
  constexpr std::pair<double, double> daniels[] = {
      {0, .05},    {9.99, .05}, {10, .12}, {19.99, .12}, {20, .15}, {30, .19},
      {44.9, .19}, {45, .22},   {60, .24}, {74.9, .24},  {75, .27}, {600, .27}};
  for (const auto& [minutes, step] : daniels) {
    EXPECT_DOUBLE_EQ(utilisation(1.05, minutes, Daniels), step) << minutes;
  }
  constexpr std::pair<double, double> garetz[] = {
      {10.9, 0}, {11, .02}, {15.9, .02}, {16, .05},   {21, .08}, {26, .11}, {31, .14}, {36, .16},
      {41, .18}, {46, .19}, {51, .20},   {60.9, .20}, {61, .21}, {71, .22}, {81, .23}, {1e9, .23}};
  for (const auto& [minutes, step] : garetz) {
    EXPECT_DOUBLE_EQ(utilisation(1.05, minutes, Garetz), step) << minutes;
  }
  EXPECT_EQ(utilisation(1.05, 60, 4), 0);
  EXPECT_EQ(utilisation(1.05, 60, -1), 0);
}

TEST_F(Formulas, TheFormOfTheHopAdjustsItsUtilisation) {
  set(keys::BaggedHopAdjustment, 0.9);
  set(keys::PelletHopAdjustment, "1.1");
  set(keys::BaggedPelletHopAdjustment, 1);
  const double loose = ibu(28, 0, 5, 60, 1.05, 20000, Tinseth);
  EXPECT_NEAR(loose, 28 * 5 * 10 * 0.230664077 / 20, 1e-7);
  EXPECT_DOUBLE_EQ(ibu(28, 1, 5, 60, 1.05, 20000, Tinseth), loose * 0.9);
  EXPECT_DOUBLE_EQ(ibu(28, 2, 5, 60, 1.05, 20000, Tinseth), loose * 1.1);
  EXPECT_DOUBLE_EQ(ibu(28, 3, 5, 60, 1.05, 20000, Tinseth), loose);
  EXPECT_DOUBLE_EQ(ibu(28, NSNotFound, 5, 60, 1.05, 20000, Tinseth), loose);
  defaults().reset();
  EXPECT_EQ(ibu(28, 2, 5, 60, 1.05, 20000, Tinseth), 0);  // nothing registered
}

TEST_F(Formulas, NoBitternessFromNothing) {
  for (int formula = 0; formula < 4; ++formula) {
    for (int nothing = 0; nothing < 5; ++nothing) {
      double values[] = {28, 5, 60, 1.05, 20000};
      values[nothing] = 0;
      const auto [grammes, alpha, minutes, gravity, volume] = values;
      EXPECT_EQ(ibu(grammes, 0, alpha, minutes, gravity, volume, formula), 0) << nothing;
    }
  }
}

TEST_F(Formulas, BelowTheBoilTimeCountsForLess) {
  const auto effective = &Calculations::effectiveTimeForAdditionTime_atTemperature;
  EXPECT_DOUBLE_EQ(effective(60, 80), 15);  // 100 degrees while nothing is set
  set(keys::BoilingPoint, "19.9");
  EXPECT_DOUBLE_EQ(effective(60, 90), 30);
  set(keys::BoilingPoint, 20);
  EXPECT_DOUBLE_EQ(effective(60, 10), 30);
  set(keys::BoilingPoint, 95);
  EXPECT_DOUBLE_EQ(effective(60, 85), 30);
  EXPECT_DOUBLE_EQ(effective(60, 95), 60);
  EXPECT_DOUBLE_EQ(effective(60, 99), 60);
  // Bitterness counts from 100 degrees: 60 minutes at 90 are 30, a step of 0.19.
  set(keys::BoilingPoint, 90);
  EXPECT_DOUBLE_EQ(ibu(28, 0, 5, 60, 1.05, 20000, Daniels), 28 * 5 * 10 * 0.19 / 20);
  set(keys::BoilingPoint, 101);
  EXPECT_DOUBLE_EQ(ibu(28, 0, 5, 60, 1.05, 20000, Daniels), 28 * 5 * 10 * 0.24 / 20);
}

}  // namespace
}  // namespace zym
