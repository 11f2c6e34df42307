#include "zymcore/transformers/ZYMWaterGrainValueTransformer.h"

#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/transformers/internal/Quantity.h"

namespace zym {
namespace {

using transformer::asItIs;

// Grams in a pound stand to millilitres in a quart or pint as kilograms to litres.
constexpr double toQuartsPerPound(double v) {
  return v / 946.35 * 453.59;
}
constexpr double toPintsPerPound(double v) {
  return v / 568.26 * 453.59;
}
constexpr double fromQuartsPerPound(double v) {
  return 946.35 * v / 453.59;
}
constexpr double fromPintsPerPound(double v) {
  return 568.26 * v / 453.59;
}

constexpr transformer::Unit units[] = {
    {0, "qts/lb", 2, toQuartsPerPound, fromQuartsPerPound},
    {1, "pts/lb", 2, toPintsPerPound, fromPintsPerPound},
    {2, "l/kg", 2, asItIs, asItIs},
};
constexpr transformer::UnitWord unitWords[] = {
    {"l/kg", asItIs}, {"pts/lb", fromPintsPerPound}, {"qts/lb", fromQuartsPerPound}};
constexpr transformer::Quantity quantity = {.preference = keys::Units,
                                            .units = units,
                                            .words = unitWords,
                                            .sentinel = -1,
                                            .threshold = -0.5};

}  // namespace

std::string ZYMWaterGrainValueTransformer::convertForDisplay(const PlistValue* value) {
  return transformer::shown(quantity, value);
}

std::string ZYMWaterGrainValueTransformer::convertForStorage(const PlistValue* value) {
  return transformer::stored(quantity, value);
}

}  // namespace zym
