#include "zymcore/transformers/ZYMDistanceValueTransformer.h"

#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/transformers/internal/Quantity.h"

namespace zym {
namespace {

using transformer::asItIs;

constexpr double toFeet(double metres) {
  return metres * 3.2808399;
}
constexpr double fromFeet(double feet) {
  return feet / 3.2808399;
}
constexpr double fromYards(double yards) {
  return yards / 1.0936133;
}

constexpr std::int64_t metric = 2;
constexpr transformer::Unit units[] = {
    {0, "ft", 0, toFeet, fromFeet},
    {1, "ft", 0, toFeet, fromFeet},
    {metric, "m", 1, asItIs, asItIs},
};
constexpr transformer::UnitWord unitWords[] = {
    {"m", asItIs},     {"mt", asItIs},     {"yd", fromYards},
    {"ft", fromFeet},  {"yds", fromYards}, {"feet", fromFeet},
    {"metre", asItIs}, {"metres", asItIs}, {"meters", asItIs},
};
constexpr transformer::Quantity quantity = {.preference = keys::Units,
                                            .units = units,
                                            .words = unitWords,
                                            .sentinel = 0,
                                            .threshold = 0.0001,
                                            .leastNumber = 0.1};

}  // namespace

std::string ZYMDistanceValueTransformer::convertForDisplay(const PlistValue* value) {
  const std::int64_t preference = transformer::preferenceUnder(keys::Units);
  if (preference != 0 && preference != 1) return transformer::shown(quantity, value);
  // Feet aren't localized.
  return stringWithDecimals(toFeet(transformer::numberForDisplay(value)), 0) + " ft";
}

std::string ZYMDistanceValueTransformer::convertForStorage(const PlistValue* value) {
  return transformer::stored(quantity, value);
}

}  // namespace zym
