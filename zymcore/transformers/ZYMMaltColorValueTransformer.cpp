#include "zymcore/transformers/ZYMMaltColorValueTransformer.h"

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/transformers/internal/ColorTransformation.h"

namespace zym {
namespace {

constexpr transformer::UnitWord unitWords[] = {
    {"l", transformer::asItIs},
    {"lov", transformer::asItIs},
    {"ebc", ZYMBeerCalculations::convertEBCtoLovibond},
};
constexpr transformer::ColorScale scale = {"˚L", ZYMBeerCalculations::convertLovibondtoEBC,
                                           ZYMBeerCalculations::convertEBCtoLovibond, unitWords};

}  // namespace

std::string ZYMMaltColorValueTransformer::convertForDisplay(const PlistValue* value) {
  return transformer::colorForDisplay(value, scale);
}

std::string ZYMMaltColorValueTransformer::convertForStorage(const PlistValue* value) {
  return transformer::colorForStorage(value, scale);
}

}  // namespace zym
