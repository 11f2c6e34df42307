#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cmath>

#include "tests/support/Defaults.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/NSColorExtensions.h"
#include "zymcore/platform/values/NSNotFound.h"

namespace zym {
namespace {

using Calculations = ZYMBeerCalculations;
using Convert = ZYMUnitConverter;

enum Formula { Tinseth, Daniels, Rager, Garetz };

class Formulas : public testing::WithDefaults {
 protected:
  static double utilisation(double gravity, double minutes, std::int64_t formula) {
    return Calculations::utilisationForGravity_addedUsing_withTime_usingFormula(gravity, 0, minutes,
                                                                                formula);
  }
  static double ibu(double grammes, std::int64_t form, double alpha, double minutes, double gravity,
                    double volume, std::int64_t formula) {
    return Calculations::
        calculateIBUForGrammesOfHops_addedUsing_withAlphaInPercent_forTimeInMinutes_forGravity_finalVolume_usingFormula(
            grammes, form, alpha, minutes, gravity, volume, formula);
  }
};

// Each unit against what it is by definition, and each pair against each other.
TEST_F(Formulas, UnitsOfWeightAndVolume) {
  struct Unit {
    double (*to)(double);
    double (*from)(double);
    double factor;
  };
  const Unit units[] = {
      {Convert::convertKilogrammesToGrammes, Convert::convertGrammesToKilogrammes, 1000},
      {Convert::convertOuncesToGrammes, Convert::convertGrammesToOunces, 28.349523125},
      {Convert::convertPoundsToGrammes, Convert::convertGrammesToPounds, 453.59237},
      {Convert::convertLitresToMillilitres, Convert::convertMillilitresToLitres, 1000},
      {Convert::convertImperialPintsToMillilitres, Convert::convertMillilitresToImperialPints,
       568.26125},
      {Convert::convertImperialGallonsToMillilitres, Convert::convertMillilitresToImperialGallons,
       4546.09},
      {Convert::convertUSPintsToMillilitres, Convert::convertMillilitresToUSPints, 473.176473},
      {Convert::convertUSQuartsToMillilitres, Convert::convertMillilitresToUSQuarts, 946.352946},
      {Convert::convertUSGallonsToMillilitres, Convert::convertMillilitresToUSGallons, 3785.411784},
      {Convert::convertUSBarrelsToMillilitres, Convert::convertMillilitresToUSBarrels,
       117347.765304},
      {Convert::convertUKBarrelsToMillilitres, Convert::convertMillilitresToUKBarrels, 163659.24}};
  for (const Unit& unit : units) {
    EXPECT_NEAR(unit.to(1), unit.factor, unit.factor * 2e-5);
    EXPECT_DOUBLE_EQ(unit.from(unit.to(7)), 7);
  }
}

TEST_F(Formulas, TemperatureAndGravityUnits) {
  EXPECT_DOUBLE_EQ(Convert::convertCelciusToFahrenheit(100), 212);
  EXPECT_DOUBLE_EQ(Convert::convertFahrenheitToCelcius(-40), -40);
  EXPECT_DOUBLE_EQ(Convert::convertSGToPlato(1.04), 10);
  EXPECT_DOUBLE_EQ(Convert::convertPlatoToSG(10), 1.04);
  EXPECT_TRUE(std::isinf(Convert::convertPlatoToSG(260)));
}

TEST_F(Formulas, UnitsAreTrimmedFromNumbers) {
  constexpr std::pair<const char*, const char*> texts[] = {
      {"", "0.0"},  {"5.5 kg", "5.5"}, {"+5kg", "+5"},     {"1,5", "1"},
      {"12", "12"}, {"kg 5", ""},      {"-1.2e3", "-1.2"}, {"1-2+3.4", "1-2+3.4"}};
  for (const auto& [text, head] : texts) EXPECT_EQ(Convert::trimUnitFromNumber(text), head);
}

// Boiling points from tables of altitude: sea level, Denver, La Paz.
TEST_F(Formulas, WaterBoilsEarlierHigherUp) {
  EXPECT_NEAR(Calculations::boilingPointAtAltitude(0), 100, 0.1);
  EXPECT_NEAR(Calculations::boilingPointAtAltitude(1609), 94.6, 0.3);
  EXPECT_NEAR(Calculations::boilingPointAtAltitude(3640), 87.7, 0.4);
}

TEST_F(Formulas, MaltAndBeerColour) {
  EXPECT_DOUBLE_EQ(Calculations::convertSRMtoEBC(10), 19.7);
  EXPECT_EQ(Calculations::convertSRMtoEBC(-1), 0);
  EXPECT_EQ(Calculations::convertEBCtoSRM(-1), 0);
  EXPECT_EQ(Calculations::convertLovibondtoEBC(0.5), 0);  // below nothing
  EXPECT_NEAR(Calculations::convertLovibondtoEBC(10), 25.19, 0.005);
  EXPECT_EQ(Calculations::convertEBCtoLovibond(-1), 0);
  EXPECT_NEAR(Calculations::convertEBCtoLovibond(0), 0.76 / 1.3546, 1e-12);
  rc::check([](std::uint16_t tenths) {
    const double lovibond = 0.6 + tenths / 10.0;
    RC_ASSERT(
        std::fabs(Calculations::convertEBCtoLovibond(Calculations::convertLovibondtoEBC(lovibond)) -
                  lovibond) < 1e-9 * lovibond);
  });
}

TEST_F(Formulas, BeerColourFromMaltColourUnits) {
  EXPECT_NEAR(Calculations::beerColorForMCU_withFormula(10, 0), 7.24, 0.005);
  EXPECT_DOUBLE_EQ(Calculations::beerColorForMCU_withFormula(10, 1), 10.4);
  EXPECT_DOUBLE_EQ(Calculations::beerColorForMCU_withFormula(10, 2), 7.7);
  for (const std::int64_t noFormula :
       {std::int64_t{3}, std::int64_t{4}, std::int64_t{-1}, NSNotFound}) {
    EXPECT_EQ(Calculations::beerColorForMCU_withFormula(10, noFormula), 0);
  }
}

TEST_F(Formulas, ColourOnAScreen) {
  constexpr std::pair<double, const char*> colours[] = {
      {0, "c5e8f8"},    {0.1, "c5e8f8"}, {0.11, "fafa3c"}, {2, "fafa3c"},
      {7, "dcb63a"},    {12, "be7339"},  {12.5, "ba6e38"}, {22, "482727"},
      {22.5, "432626"}, {40, "000000"},  {1e300, "000000"}};
  for (const auto& [srm, hex] : colours) {
    EXPECT_EQ(hexRepresentation(Calculations::colourForBeerWithSRM(srm)), hex) << srm;
  }
}

// Tinseth's published table.
TEST_F(Formulas, TinsethUtilisation) {
  EXPECT_NEAR(utilisation(1.030, 60, Tinseth), 0.276, 0.0005);
  EXPECT_NEAR(utilisation(1.050, 60, Tinseth), 0.231, 0.0005);
  EXPECT_NEAR(utilisation(1.050, 10, Tinseth), 0.084, 0.0005);
  EXPECT_NEAR(utilisation(1.080, 30, Tinseth), 0.135, 0.0005);
}

TEST_F(Formulas, StepsOfDanielsAndGaretz) {
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
}

TEST_F(Formulas, OnlyRagerSparesWeakWorts) {
  EXPECT_DOUBLE_EQ(utilisation(1.04, 60, Daniels), 0.24 / 0.95);
  EXPECT_DOUBLE_EQ(utilisation(1.04, 60, Garetz), 0.20 / 0.95);
  EXPECT_DOUBLE_EQ(utilisation(1.04, 60, Rager), utilisation(1.05, 60, Rager));
  EXPECT_DOUBLE_EQ(utilisation(1.15, 60, Rager), utilisation(1.05, 60, Rager) / 1.5);
  EXPECT_NEAR(utilisation(1.04, 31.32, Rager), 0.1811, 1e-12);
}

TEST_F(Formulas, NoUtilisationByAnUnknownFormula) {
  EXPECT_EQ(utilisation(1.05, 60, 4), 0);
  EXPECT_EQ(utilisation(1.05, 60, -1), 0);
}

TEST_F(Formulas, TheFormOfTheHopAdjustsItsUtilisation) {
  set(keys::BaggedHopAdjustment, 0.9);
  set(keys::PelletHopAdjustment, "1.1");
  set(keys::BaggedPelletHopAdjustment, 1);
  const double loose = ibu(28, 0, 5, 60, 1.05, 20000, Tinseth);
  EXPECT_NEAR(loose, 28 * 5 * 10 * 0.2306 / 20, 0.01);
  EXPECT_DOUBLE_EQ(ibu(28, 1, 5, 60, 1.05, 20000, Tinseth), loose * 0.9);
  EXPECT_DOUBLE_EQ(ibu(28, 2, 5, 60, 1.05, 20000, Tinseth), loose * 1.1);
  EXPECT_DOUBLE_EQ(ibu(28, 3, 5, 60, 1.05, 20000, Tinseth), loose);
  EXPECT_DOUBLE_EQ(ibu(28, NSNotFound, 5, 60, 1.05, 20000, Tinseth), loose);
  defaults().reset();
  EXPECT_EQ(ibu(28, 2, 5, 60, 1.05, 20000, Tinseth), 0);  // nothing registered
}

TEST_F(Formulas, NoBitternessFromNothing) {
  for (int formula = 0; formula < 4; ++formula) {
    EXPECT_EQ(ibu(0, 0, 5, 60, 1.05, 20000, formula), 0);
    EXPECT_EQ(ibu(28, 0, 0, 60, 1.05, 20000, formula), 0);
    EXPECT_EQ(ibu(28, 0, 5, 0, 1.05, 20000, formula), 0);
    EXPECT_EQ(ibu(28, 0, 5, 60, 0, 20000, formula), 0);
    EXPECT_EQ(ibu(28, 0, 5, 60, 1.05, 0, formula), 0);
  }
}

TEST_F(Formulas, BelowTheBoilTimeCountsForLess) {
  const auto effective = &Calculations::effectiveTimeForAdditionTime_atTemperature;
  EXPECT_DOUBLE_EQ(effective(60, 80), 15);  // 100 degrees while nothing is set
  set(keys::BoilingPoint, "19.9");
  EXPECT_DOUBLE_EQ(effective(60, 90), 30);
  set(keys::BoilingPoint, 95);
  EXPECT_DOUBLE_EQ(effective(60, 85), 30);
  EXPECT_DOUBLE_EQ(effective(60, 95), 60);
  EXPECT_DOUBLE_EQ(effective(60, 99), 60);
  // A boil at 95 degrees counts as 2^-0.5 of one at 100.
  const double atSea = ibu(28, 0, 5, 60 / std::sqrt(2.0F), 1.05, 20000, Tinseth);
  set(keys::BoilingPoint, 90);
  EXPECT_DOUBLE_EQ(ibu(28, 0, 5, 60, 1.05, 20000, Daniels), 28 * 5 * 10 * 0.19 / 20);
  set(keys::BoilingPoint, 95);
  const double aloft = ibu(28, 0, 5, 60, 1.05, 20000, Tinseth);
  set(keys::BoilingPoint, 100);
  EXPECT_NEAR(aloft, ibu(28, 0, 5, 60 / std::sqrt(2.0F), 1.05, 20000, Tinseth), 1e-6);
  EXPECT_LT(atSea, aloft);  // worked out at 95 degrees, its time was shortened again
}

TEST_F(Formulas, AttenuationAndAlcohol) {
  // 1.04 is 10 degrees Plato, 1.01 is 2.5743.
  EXPECT_NEAR(Calculations::apparentAttenuationWithStartingSG_FinishedSG(1.04, 1.01), 74.257, 1e-3);
  EXPECT_NEAR(Calculations::realAttenuationWithStartingSG_FinishedSG(1.04, 1.01), 60.832, 1e-3);
  EXPECT_NEAR(Calculations::percentageAlcoholByWeightWithStartingSG_FinishedSG(1.04, 1.01),
              (10 - 1.808 - 0.8192 * 2.574257) / (2.0665 - 0.10665), 1e-5);
  EXPECT_NEAR(Calculations::percentageAlcoholByVolumeWithStartingSG_FinishedSG(1.04, 1.01), 3.949,
              1e-3);
  EXPECT_EQ(Calculations::apparentAttenuationWithStartingSG_FinishedSG(1, 1), 0);
  EXPECT_EQ(Calculations::realAttenuationWithStartingSG_FinishedSG(0.99, 1), 0);
}

TEST_F(Formulas, Refractometer) {
  EXPECT_NEAR(Calculations::convertBrixToSG(10.4), 1.04003, 1e-5);
  EXPECT_NEAR(Calculations::convertSGtoBrix(Calculations::convertBrixToSG(10.4)), 10.4, 0.02);
  EXPECT_DOUBLE_EQ(Calculations::finalBrixGivenFG_OG(0.9, 1.0), 0);
  // Reading forward and backward agree within a step.
  const double reading = Calculations::finalBrixGivenFG_OG(1.012, 1.05);
  EXPECT_NEAR(Calculations::specificGravityGivenOG_currentBrix(1.05, reading / 1.04), 1.012, 0.001);
  EXPECT_NEAR(Calculations::originalGravityGivenSG_currentBrix(1.012, reading / 1.04), 1.05, 0.004);
  const double abv = Calculations::percentageAlcoholByVolumeWithBrix_FG(reading / 1.04, 1.012);
  EXPECT_NEAR(abv, 5.0, 0.5);
  EXPECT_NEAR(Calculations::percentageAlcoholByWeightWithBrix_FG(reading / 1.04, 1.012),
              abv * 0.794 / 1.012, 1e-9);
}

TEST_F(Formulas, AReadingWithoutEndIsGivenUp) {
  for (const double fg : {HUGE_VAL, 1e300, std::nan("")}) {
    for (const double og : {1.05, -1e300, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
      (void)Calculations::finalBrixGivenFG_OG(fg, og);
    }
  }
}

// Corrections printed on hydrometers for 15 degrees: about +0.001 at 20, +0.003 at 30.
TEST_F(Formulas, HydrometerCorrection) {
  const auto correction = &Calculations::SGCorrectionValueForTemp;
  EXPECT_NEAR(correction(15), 0, 0.0001);
  EXPECT_NEAR(correction(20), 0.0009, 0.0001);
  EXPECT_NEAR(correction(30), 0.0034, 0.0004);
  EXPECT_NEAR(correction(50), correction(50.0001), 0.004);
  EXPECT_DOUBLE_EQ(correction(0), -0.000740644);
  EXPECT_NE(correction(4), -0.000740644 - 3.2692e-05 * 4);  // 4 is of the cubic
  EXPECT_NE(correction(50), -0.005431719 + 0.0001963596 * 50 + 2.661056e-06 * 2500);
}

}  // namespace
}  // namespace zym
