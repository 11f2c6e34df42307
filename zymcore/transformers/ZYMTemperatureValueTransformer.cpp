#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"

#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/transformers/internal/TransformerText.h"

namespace zym {
namespace {

constexpr transformer::UnitWord unitWords[] = {
    {"c", transformer::asItIs},
    {"f", ZYMUnitConverter::convertFahrenheitToCelcius},
};

std::int64_t temperatureUnit() {
  return NSUserDefaults::standardUserDefaults().integerForKey(keys::TemperatureUnit);
}

double bareNumber(double number) {
  switch (temperatureUnit()) {
    case 0:
      return number;
    case 1:
      return ZYMUnitConverter::convertFahrenheitToCelcius(number);
    default:
      return -100;
  }
}

}  // namespace

std::string ZYMTemperatureValueTransformer::convertForDisplay(const PlistValue* value) {
  const double celsius = transformer::numberForDisplay(value);
  switch (temperatureUnit()) {
    case 0:
      return transformer::shown(celsius, 0, "˚C");
    case 1:
      return transformer::shown(ZYMUnitConverter::convertCelciusToFahrenheit(celsius), 0, "˚F");
    default:
      return "";
  }
}

std::string ZYMTemperatureValueTransformer::convertForStorage(const PlistValue* value) {
  const std::string_view text = transformer::textForStorage(value);
  const double number = floatValueFromLocalizedString(text);
  const double celsius = transformer::byUnitWord(text, number, unitWords).value_or(-100);
  return stringWithFormatF(celsius < -99 ? bareNumber(number) : celsius);
}

}  // namespace zym
