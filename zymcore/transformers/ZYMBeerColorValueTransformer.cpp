#include "zymcore/transformers/ZYMBeerColorValueTransformer.h"

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/transformers/internal/ColorTransformation.h"

namespace zym {
namespace {

constexpr transformer::UnitWord unitWords[] = {
    {"l", transformer::asItIs},
    {"srm", transformer::asItIs},
    {"ebc", ZYMBeerCalculations::convertEBCtoSRM},
};
constexpr transformer::ColorScale scale = {"SRM", ZYMBeerCalculations::convertSRMtoEBC,
                                           ZYMBeerCalculations::convertEBCtoSRM, unitWords};

}  // namespace

std::string ZYMBeerColorValueTransformer::convertForDisplay(const PlistValue* value) {
  return transformer::colorForDisplay(value, scale);
}

std::string ZYMBeerColorValueTransformer::convertForStorage(const PlistValue* value) {
  return transformer::colorForStorage(value, scale);
}

}  // namespace zym
