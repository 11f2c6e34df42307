#include "zymcore/transformers/ZYMBeerColorValueTransformer.h"

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/transformers/internal/Quantity.h"

namespace zym {
namespace {

using Calculations = ZYMBeerCalculations;
using transformer::asItIs;

constexpr transformer::Unit units[] = {
    {0, "SRM", 1, asItIs, asItIs},
    {1, "EBC", 1, Calculations::convertSRMtoEBC, Calculations::convertEBCtoSRM},
};
constexpr transformer::UnitWord unitWords[] = {
    {"l", asItIs}, {"srm", asItIs}, {"ebc", Calculations::convertEBCtoSRM}};
constexpr transformer::Quantity quantity = {.preference = keys::ColorUnit,
                                            .units = units,
                                            .words = unitWords,
                                            .sentinel = -1,
                                            .threshold = -0.5,
                                            .isLimited = true};

}  // namespace

std::string ZYMBeerColorValueTransformer::convertForDisplay(const PlistValue* value) {
  return transformer::shown(quantity, value);
}

std::string ZYMBeerColorValueTransformer::convertForStorage(const PlistValue* value) {
  return transformer::stored(quantity, value);
}

}  // namespace zym
