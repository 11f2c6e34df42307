#include "zymcore/transformers/ZYMGravityValueTransformer.h"

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/transformers/internal/Quantity.h"

namespace zym {
namespace {

using Convert = ZYMUnitConverter;
using transformer::asItIs;

// The four digits of 1050 are meant as 1.050. With the unit behind it 1000 stays what it is.
constexpr double fromBareSG(double number) {
  return number >= 1000 ? number / 1000 : number;
}
constexpr double fromSG(double number) {
  return number > 1000 ? number / 1000 : number;
}

constexpr transformer::Unit units[] = {
    {0, "SG", 3, asItIs, fromBareSG},
    {1, "P", 1, Convert::convertSGToPlato, Convert::convertPlatoToSG},
};
constexpr transformer::UnitWord unitWords[] = {
    {"p", Convert::convertPlatoToSG},
    {"sg", fromSG},
    {"brix", ZYMBeerCalculations::convertBrixToSG},
    {"plato", Convert::convertPlatoToSG},
};
constexpr transformer::Quantity quantity = {.preference = keys::GravityUnits,
                                            .units = units,
                                            .words = unitWords,
                                            .sentinel = -1,
                                            .threshold = -0.5,
                                            .isLimited = true};

}  // namespace

std::string ZYMGravityValueTransformer::convertForDisplay(const PlistValue* value) {
  return transformer::shown(quantity, value);
}

std::string ZYMGravityValueTransformer::convertForStorage(const PlistValue* value) {
  return transformer::stored(quantity, value);
}

}  // namespace zym
