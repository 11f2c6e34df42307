#include "tests/reference/PlainFormulas.h"

#include <cmath>

#include "tests/reference/PlainNumbers.h"

namespace zym::reference {
namespace {

double boilingPoint(const PlainDefaults& user) {
  return user.boilingPoint < 20 ? 100.0 : user.boilingPoint;
}

double timeBelow(double minutes, double degrees) {
  return degrees > 0 ? minutes / std::pow(2.0F, static_cast<float>(degrees / 10)) : minutes;
}

double formFactor(int form, const PlainDefaults& user) {
  switch (form) {
    case 1:
      return user.baggedHops;
    case 2:
      return user.pelletHops;
    case 3:
      return user.baggedPelletHops;
    default:
      return 1.0;
  }
}

double danielsStep(double t) {
  if (t < 10) return 0.05;
  if (t < 20) return 0.12;
  if (t < 30) return 0.15;
  if (t < 45) return 0.19;
  if (t < 60) return 0.22;
  if (t < 75) return 0.24;
  return 0.27;
}

double garetzStep(double t) {
  if (t < 11) return 0;
  if (t < 16) return 0.02;
  if (t < 21) return 0.05;
  if (t < 26) return 0.08;
  if (t < 31) return 0.11;
  if (t < 36) return 0.14;
  if (t < 41) return 0.16;
  if (t < 46) return 0.18;
  if (t < 51) return 0.19;
  if (t < 61) return 0.20;
  if (t < 71) return 0.21;
  if (t < 81) return 0.22;
  return 0.23;
}

int formOf(const PlainHop& hop) {
  if (hop.form == "Bagged Whole Hops") return 1;
  if (hop.form == "Loose Pellet Hops") return 2;
  if (hop.form == "Bagged Pellet Hops") return 3;
  return 0;
}

double isomerised(double grammes, int form, double alpha, double minutes, double gravity,
                  double volume, const PlainDefaults& user) {
  if (grammes == 0 || alpha == 0 || minutes == 0 || gravity == 0 || volume == 0) return 0;
  const double litres = volume / 1000;
  const double boiled = timeBelow(minutes, 100 - boilingPoint(user));
  return grammes * alpha * 10 * utilisation(gravity, form, boiled, user) / litres;
}

}  // namespace

double poundsOf(double grammes) {
  return grammes / 453.59;
}

double gallonsOf(double millilitres) {
  return millilitres / 3785.41;
}

double platoOf(double sg) {
  return 260 - 260 / sg;
}

double gravityOf(double plato) {
  return 260 / (260 - plato);
}

double ebcOf(double srm) {
  return srm < 0 ? 0 : 1.97 * srm;
}

double colorOf(double mcu, std::int64_t formula) {
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

double beerColor(double mcu, double viggiano, double direct, std::int64_t formula) {
  const double base = formula == 3 ? (viggiano > 0.1 ? viggiano + 1 : viggiano)
                                   : static_cast<float>(colorOf(mcu, formula));
  return static_cast<float>(direct + base);
}

double effectiveTime(double minutes, double temperature, const PlainDefaults& user) {
  return timeBelow(minutes, boilingPoint(user) - temperature);
}

double utilisation(double gravity, int form, double minutes, const PlainDefaults& user) {
  const double adjusted = (gravity - 1.05) / 0.2 + 1;
  const double factor = formFactor(form, user);
  switch (user.hopFormula) {
    case 0:
      return factor *
             (1.65 * std::pow(0.000125, gravity - 1) * (1 - std::exp(-0.04 * minutes)) / 4.15);
    case 1:
      return factor * (danielsStep(minutes) / adjusted);
    case 2:
      return factor * ((18.11 + 13.86 * std::tanh((minutes - 31.32) / 18.27)) /
                       (gravity > 1.05 ? adjusted : 1) / 100);
    case 3:
      return factor * (garetzStep(minutes) / adjusted);
    default:
      return 0;
  }
}

double bitterness(const PlainHop& hop, const PlainRecipe& recipe, double gravity,
                  double finalVolume, const PlainDefaults& user) {
  double minutes = number(hop.minutes);
  if (hop.when != "In Fermenter" && hop.when != "Dry-Hopped") {
    minutes += effectiveTime(single(recipe.steepDuration), single(recipe.steepTemperature), user);
  }
  const double ibu = isomerised(number(hop.amount), formOf(hop), number(hop.alpha), minutes,
                                gravity, finalVolume, user);
  if (hop.when == "First Wort Hopped") return ibu * user.firstWortHops;
  if (hop.when == "In Mash") return ibu * user.mashHops;
  return ibu;
}

double apparentAttenuation(double og, double fg) {
  const double start = platoOf(og);
  return start < 0.01 ? 0 : (1 - platoOf(fg) / start) * 100;
}

double realAttenuation(double og, double fg) {
  const double start = platoOf(og);
  return start < 0.01 ? 0 : (1 - (0.8192 * platoOf(fg) + 0.1808 * start) / start) * 100;
}

double alcoholByWeight(double og, double fg) {
  const double start = platoOf(og);
  return (start - (0.1808 * start + 0.8192 * platoOf(fg))) / (2.0665 - 0.010665 * start);
}

double alcoholByVolume(double og, double fg) {
  return alcoholByWeight(og, fg) * fg / 0.794;
}

double hydrometerOffset(double t) {
  if (t > 50) return -0.005431719 + 0.0001963596 * t + 2.661056e-06 * t * t;
  if (t < 4) return -0.000740644 - 3.2692e-05 * t;
  return -0.0008031922 - 4.73773e-05 * t + 7.231263e-06 * t * t - 3.078278e-08 * t * t * t;
}

}  // namespace zym::reference
