#include "zymcore/transformers/ZYMWeightValueTransformer.h"

#include <cmath>

#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/transformers/internal/Quantity.h"

namespace zym {
namespace {

using Convert = ZYMUnitConverter;

constexpr std::int64_t metric = 2;
constexpr double ouncesInPound = 16;

constexpr double toTonnes(double g) {
  return g / 1000000;
}
constexpr double fromTonnes(double t) {
  return t * 1000000;
}

constexpr double fromBareMetric(double number) {
  return number < 100 ? Convert::convertKilogrammesToGrammes(number) : number;
}
constexpr double fromBareImperial(double number) {
  return number < 20 ? Convert::convertPoundsToGrammes(number)
                     : Convert::convertOuncesToGrammes(number);
}

constexpr transformer::Unit metricUnits[] = {
    {metric, "m. ton", 2, toTonnes, fromBareMetric, 1000000},
    {metric, "kg", 3, Convert::convertGrammesToKilogrammes, fromBareMetric, 1000},
    {metric, "g", 0, transformer::asItIs, fromBareMetric, 10},
    {metric, "g", 2, transformer::asItIs, fromBareMetric},
};
constexpr transformer::UnitWord unitWords[] = {
    {"g", transformer::asItIs},
    {"kg", Convert::convertKilogrammesToGrammes},
    {"lb", Convert::convertPoundsToGrammes},
    {"oz", Convert::convertOuncesToGrammes},
    {"lbs", Convert::convertPoundsToGrammes},
    {"m. ton", fromTonnes},
};

std::string poundsAndOuncesText(double grammes) {
  const double ounces = Convert::convertGrammesToOunces(grammes);
  double pounds = std::floor(ounces / ouncesInPound);
  double remainder = ounces - pounds * ouncesInPound;
  if (remainder > 15.5) {
    pounds += 1;
    remainder = 0;
  }
  if (pounds == 0) {
    return localizedStringFromFloat_decimalPlaces(static_cast<float>(remainder), 2) + " oz";
  }
  return std::to_string(integerValue(pounds)) + "lb " +
         localizedStringFromFloat_decimalPlaces(static_cast<float>(remainder), 0) + "oz";
}

double bareNumber(double number, std::int64_t units, bool preferSmallUnits) {
  if (units == metric) return preferSmallUnits ? number : fromBareMetric(number);
  return preferSmallUnits ? Convert::convertOuncesToGrammes(number) : fromBareImperial(number);
}

}  // namespace

std::string ZYMWeightValueTransformer::convertForDisplay(const PlistValue* value) {
  return convertForDisplay(value, weightUnits());
}

std::string ZYMWeightValueTransformer::convertForStorage(const PlistValue* value) {
  return convertForStorage_preferSmallUnits(value, false);
}

std::string ZYMWeightValueTransformer::convertForStorage_preferSmallUnits(const PlistValue* value,
                                                                          bool preferSmallUnits) {
  return convertForStorage(value, weightUnits(), preferSmallUnits);
}

std::int64_t ZYMWeightValueTransformer::weightUnits() {
  return transformer::preferenceUnder(keys::Units);
}

std::string ZYMWeightValueTransformer::convertForDisplay(const PlistValue* value,
                                                         std::int64_t units) {
  const double grammes = transformer::numberForDisplay(value);
  return units == metric ? transformer::shown(grammes, metric, metricUnits)
                         : poundsAndOuncesText(grammes);
}

std::string ZYMWeightValueTransformer::convertForStorage(const PlistValue* value,
                                                         std::int64_t units,
                                                         bool preferSmallUnits) {
  const std::string_view text = transformer::textForStorage(value);
  std::string second;
  const std::string first = stringValueWithLocalizedValue_secondValue(text, &second);
  if (first.empty()) return "0.0";
  const double number = doubleValue(first);
  double grammes = transformer::byUnitWord(text, number, unitWords, -1);
  if (grammes < 0.0001) grammes = bareNumber(number, units, preferSmallUnits);
  if (!second.empty()) {
    grammes = Convert::convertOuncesToGrammes(number * ouncesInPound + doubleValue(second));
  }
  return stringWithFormatF(grammes);
}

}  // namespace zym
