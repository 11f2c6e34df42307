#include "zymcore/transformers/ZYMDistanceValueTransformer.h"

#include "zymcore/documents/DefaultsKeys.h"
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

constexpr double ofAnySize = -HUGE_VAL;
constexpr bool isPlain = true;
constexpr transformer::Unit units[] = {
    {0, "ft", 0, toFeet, fromFeet, ofAnySize, isPlain},
    {1, "ft", 0, toFeet, fromFeet, ofAnySize, isPlain},
    {2, "m", 1, asItIs, asItIs},
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
  return transformer::shown(quantity, value);
}

std::string ZYMDistanceValueTransformer::convertForStorage(const PlistValue* value) {
  return transformer::stored(quantity, value);
}

}  // namespace zym
