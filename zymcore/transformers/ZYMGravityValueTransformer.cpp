#include "zymcore/transformers/ZYMGravityValueTransformer.h"

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/transformers/internal/TransformerText.h"

namespace zym {
namespace {

constexpr double fromTypedSG(double number) {
  return number > 1000 ? number / 1000 : number;
}

constexpr transformer::UnitWord unitWords[] = {
    {"p", ZYMUnitConverter::convertPlatoToSG},
    {"sg", fromTypedSG},
    {"brix", ZYMBeerCalculations::convertBrixToSG},
    {"plato", ZYMUnitConverter::convertPlatoToSG},
};

std::int64_t gravityUnits() {
  return NSUserDefaults::standardUserDefaults().integerForKey(keys::GravityUnits);
}

double bareNumber(double number) {
  switch (gravityUnits()) {
    case 0:
      return number >= 1000 ? number / 1000 : number;
    case 1:
      return ZYMUnitConverter::convertPlatoToSG(number);
    default:
      return -1;
  }
}

}  // namespace

std::string ZYMGravityValueTransformer::convertForDisplay(const PlistValue* value) {
  const transformer::Stored gravity = transformer::limitForDisplay(value);
  switch (gravityUnits()) {
    case 0:
      return transformer::shown(gravity, gravity.number, 3, "SG");
    case 1:
      return transformer::shown(gravity, ZYMUnitConverter::convertSGToPlato(gravity.number), 1,
                                "P");
    default:
      return "";
  }
}

std::string ZYMGravityValueTransformer::convertForStorage(const PlistValue* value) {
  const std::string_view text = transformer::textForStorage(value);
  const double number = floatValueFromLocalizedString(text);
  const double gravity = transformer::byUnitWord(text, number, unitWords).value_or(-1);
  return stringWithFormatF(gravity < -0.5 ? bareNumber(number) : gravity);
}

}  // namespace zym
