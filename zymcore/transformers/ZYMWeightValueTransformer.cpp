#include "zymcore/transformers/ZYMWeightValueTransformer.h"

#include <cmath>

#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/transformers/internal/TransformerText.h"

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

struct MetricRow {
  double from;  // g
  double (*toUnit)(double);
  int decimalPlaces;
  std::string_view unit;
};
constexpr MetricRow metricRows[] = {
    {1000000, toTonnes, 2, "m. ton"},
    {1000, Convert::convertGrammesToKilogrammes, 3, "kg"},
    {10, transformer::asItIs, 0, "g"},
    {-HUGE_VAL, transformer::asItIs, 2, "g"},
};

constexpr transformer::UnitWord unitWords[] = {
    {"g", transformer::asItIs},
    {"kg", Convert::convertKilogrammesToGrammes},
    {"lb", Convert::convertPoundsToGrammes},
    {"oz", Convert::convertOuncesToGrammes},
    {"lbs", Convert::convertPoundsToGrammes},
    {"m. ton", fromTonnes},
};

std::string metricText(double grammes) {
  for (const MetricRow& row : metricRows) {
    if (grammes >= row.from) {
      return transformer::shown(row.toUnit(grammes), row.decimalPlaces, row.unit);
    }
  }
  return "";
}

std::string poundsAndOuncesText(double grammes) {
  const double ounces = Convert::convertGrammesToOunces(grammes);
  double pounds = std::floor(ounces / ouncesInPound);
  double remainder = ounces - pounds * ouncesInPound;
  if (remainder > 15.5) {  // never "16oz"
    pounds += 1;
    remainder = 0;
  }
  if (pounds == 0) return transformer::shown(remainder, 2, "oz");
  return std::to_string(integerValue(pounds)) + "lb " +
         localizedStringFromFloat_decimalPlaces(static_cast<float>(remainder), 0) + "oz";
}

double bareNumber(double number, std::int64_t units, bool preferSmallUnits) {
  if (units == metric) {
    const bool isKilogrammes = !preferSmallUnits && number < 100;
    return isKilogrammes ? Convert::convertKilogrammesToGrammes(number) : number;
  }
  const bool isOunces = preferSmallUnits || number >= 20;
  return isOunces ? Convert::convertOuncesToGrammes(number)
                  : Convert::convertPoundsToGrammes(number);
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
  return NSUserDefaults::standardUserDefaults().integerForKey(keys::Units);
}

std::string ZYMWeightValueTransformer::convertForDisplay(const PlistValue* value,
                                                         std::int64_t units) {
  const double grammes = transformer::numberForDisplay(value);
  return units == metric ? metricText(grammes) : poundsAndOuncesText(grammes);
}

std::string ZYMWeightValueTransformer::convertForStorage(const PlistValue* value,
                                                         std::int64_t units,
                                                         bool preferSmallUnits) {
  const std::string_view text = transformer::textForStorage(value);
  std::string second;
  const std::string first = stringValueWithLocalizedValue_secondValue(text, &second);
  if (first.empty()) return "0.0";
  const double number = doubleValue(first);
  if (!second.empty()) {
    return stringWithFormatF(
        Convert::convertOuncesToGrammes(number * ouncesInPound + doubleValue(second)));
  }
  const double grammes = transformer::byUnitWord(text, number, unitWords).value_or(-1);
  return stringWithFormatF(grammes < 0.0001 ? bareNumber(number, units, preferSmallUnits)
                                            : grammes);
}

}  // namespace zym
