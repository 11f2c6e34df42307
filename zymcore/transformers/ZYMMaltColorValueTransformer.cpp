#include "zymcore/transformers/ZYMMaltColorValueTransformer.h"

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/transformers/internal/Quantity.h"

namespace zym {
namespace {

using Calculations = ZYMBeerCalculations;
using transformer::asItIs;

constexpr transformer::Unit units[] = {
    {0, "˚L", 1, asItIs, asItIs},
    {1, "EBC", 1, Calculations::convertLovibondtoEBC, Calculations::convertEBCtoLovibond},
};
constexpr transformer::UnitWord unitWords[] = {
    {"l", asItIs}, {"lov", asItIs}, {"ebc", Calculations::convertEBCtoLovibond}};
constexpr transformer::Quantity quantity = {.preference = keys::ColorUnit,
                                            .units = units,
                                            .words = unitWords,
                                            .sentinel = -1,
                                            .threshold = -0.5,
                                            .isLimited = true};

}  // namespace

std::string ZYMMaltColorValueTransformer::convertForDisplay(const PlistValue* value) {
  return transformer::shown(quantity, value);
}

std::string ZYMMaltColorValueTransformer::convertForStorage(const PlistValue* value) {
  return transformer::stored(quantity, value);
}

}  // namespace zym
