#include "zymcore/transformers/ZYMVolumeValueTransformer.h"

#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/transformers/internal/Quantity.h"

namespace zym {
namespace {

using Convert = ZYMUnitConverter;
using transformer::asItIs;

constexpr double toHectolitres(double ml) {
  return ml / 100000;
}
constexpr double fromHectolitres(double hl) {
  return hl * 100000;
}

// A number without a unit is judged by its size.
constexpr double fromBareUS(double number) {
  return number < 25 ? Convert::convertUSGallonsToMillilitres(number)
                     : Convert::convertUSQuartsToMillilitres(number);
}
constexpr double fromBareBritish(double number) {
  return number < 25 ? Convert::convertImperialGallonsToMillilitres(number)
                     : Convert::convertImperialPintsToMillilitres(number);
}
constexpr double fromBareMetric(double number) {
  return number < 100 ? Convert::convertLitresToMillilitres(number) : number;
}

constexpr transformer::Unit units[] = {
    {0, "US brl", 2, Convert::convertMillilitresToUSBarrels, fromBareUS, 1173477.7},
    {0, "US gals", 2, Convert::convertMillilitresToUSGallons, fromBareUS, 3785.41},
    {0, "qts", 1, Convert::convertMillilitresToUSQuarts, fromBareUS},
    {1, "UK brl", 2, Convert::convertMillilitresToUKBarrels, fromBareBritish, 1636592.4},
    {1, "UK gals", 2, Convert::convertMillilitresToImperialGallons, fromBareBritish, 4546.09},
    {1, "pints", 1, Convert::convertMillilitresToImperialPints, fromBareBritish},
    {2, "hl", 2, toHectolitres, fromBareMetric, 100000},
    {2, "l", 2, Convert::convertMillilitresToLitres, fromBareMetric, 1000},
    {2, "ml", 0, asItIs, fromBareMetric},
};
constexpr transformer::UnitWord unitWords[] = {
    {"l", Convert::convertLitresToMillilitres},
    {"ml", asItIs},
    {"hl", fromHectolitres},
    {"pt", Convert::convertImperialPintsToMillilitres},
    {"qts", Convert::convertUSQuartsToMillilitres},
    {"pts", Convert::convertImperialPintsToMillilitres},
    {"gal", Convert::convertUSGallonsToMillilitres},
    {"gals", Convert::convertUSGallonsToMillilitres},
    {"pint", Convert::convertImperialPintsToMillilitres},
    {"pints", Convert::convertImperialPintsToMillilitres},
    {"us brl", Convert::convertUSBarrelsToMillilitres},
    {"uk brl", Convert::convertUKBarrelsToMillilitres},
    {"uk gal", Convert::convertImperialGallonsToMillilitres},
    {"litres", Convert::convertLitresToMillilitres},
    {"liters", Convert::convertLitresToMillilitres},
    {"us gals", Convert::convertUSGallonsToMillilitres},
    {"uk gals", Convert::convertImperialGallonsToMillilitres},
    {"impgals", Convert::convertImperialGallonsToMillilitres},
    {"imp gals", Convert::convertImperialGallonsToMillilitres},
};
constexpr transformer::Quantity quantity = {.preference = keys::Units,
                                            .units = units,
                                            .words = unitWords,
                                            .sentinel = 0,
                                            .threshold = 0.0001,
                                            .leastNumber = 0.1};

}  // namespace

std::string ZYMVolumeValueTransformer::convertForDisplay(const PlistValue* value) {
  return transformer::shown(quantity, value);
}

std::string ZYMVolumeValueTransformer::convertForStorage(const PlistValue* value) {
  return transformer::stored(quantity, value);
}

}  // namespace zym
