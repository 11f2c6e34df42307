#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"

#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/transformers/internal/Quantity.h"

namespace zym {
namespace {

using Convert = ZYMUnitConverter;
using transformer::asItIs;

constexpr transformer::Unit units[] = {
    {0, "˚C", 0, asItIs, asItIs},
    {1, "˚F", 0, Convert::convertCelciusToFahrenheit, Convert::convertFahrenheitToCelcius},
};
constexpr transformer::UnitWord unitWords[] = {{"c", asItIs},
                                               {"f", Convert::convertFahrenheitToCelcius}};
constexpr transformer::Quantity quantity = {.preference = keys::TemperatureUnit,
                                            .units = units,
                                            .words = unitWords,
                                            .sentinel = -100,
                                            .threshold = -99};

}  // namespace

std::string ZYMTemperatureValueTransformer::convertForDisplay(const PlistValue* value) {
  return transformer::shown(quantity, value);
}

std::string ZYMTemperatureValueTransformer::convertForStorage(const PlistValue* value) {
  return transformer::stored(quantity, value);
}

}  // namespace zym
