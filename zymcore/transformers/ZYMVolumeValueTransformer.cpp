#include "zymcore/transformers/ZYMVolumeValueTransformer.h"

#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/transformers/internal/TransformerText.h"

namespace zym {
namespace {

using Convert = ZYMUnitConverter;

constexpr double anySize = 0;

// The first row of the user's units that the volume reaches; the last of each takes the rest.
struct DisplayRow {
  int units;
  double from;  // ml
  double (*toUnit)(double);
  int decimalPlaces;
  std::string_view unit;
};
constexpr double toHectolitres(double ml) {
  return ml / 100000;
}
constexpr DisplayRow displayRows[] = {
    {0, 1173477.7, Convert::convertMillilitresToUSBarrels, 2, "US brl"},
    {0, 3785.41, Convert::convertMillilitresToUSGallons, 2, "US gals"},
    {0, anySize, Convert::convertMillilitresToUSQuarts, 1, "qts"},
    {1, 1636592.4, Convert::convertMillilitresToUKBarrels, 2, "UK brl"},
    {1, 4546.09, Convert::convertMillilitresToImperialGallons, 2, "UK gals"},
    {1, anySize, Convert::convertMillilitresToImperialPints, 1, "pints"},
    {2, 100000, toHectolitres, 2, "hl"},
    {2, 1000, Convert::convertMillilitresToLitres, 2, "l"},
    {2, anySize, transformer::asItIs, 0, "ml"},
};

constexpr double fromHectolitres(double hl) {
  return hl * 100000;
}
constexpr transformer::UnitWord unitWords[] = {
    {"l", Convert::convertLitresToMillilitres},
    {"ml", transformer::asItIs},
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

// What a number without a unit means, by its size.
struct BareNumberRow {
  int units;
  double limit;
  double (*below)(double);
  double (*fromLimit)(double);
};
constexpr BareNumberRow bareNumberRows[] = {
    {0, 25, Convert::convertUSGallonsToMillilitres, Convert::convertUSQuartsToMillilitres},
    {1, 25, Convert::convertImperialGallonsToMillilitres,
     Convert::convertImperialPintsToMillilitres},
    {2, 100, Convert::convertLitresToMillilitres, transformer::asItIs},
};

double bareNumber(double number) {
  const std::int64_t units = NSUserDefaults::standardUserDefaults().integerForKey(keys::Units);
  for (const BareNumberRow& row : bareNumberRows) {
    if (row.units == units) return number < row.limit ? row.below(number) : row.fromLimit(number);
  }
  return 0;
}

}  // namespace

std::string ZYMVolumeValueTransformer::convertForDisplay(const PlistValue* value) {
  const double volume = transformer::numberForDisplay(value);
  const std::int64_t units = NSUserDefaults::standardUserDefaults().integerForKey(keys::Units);
  for (const DisplayRow& row : displayRows) {
    if (row.units == units && (volume >= row.from || row.from == anySize)) {
      return transformer::shown(row.toUnit(volume), row.decimalPlaces, row.unit);
    }
  }
  return "";
}

std::string ZYMVolumeValueTransformer::convertForStorage(const PlistValue* value) {
  const std::string_view text = transformer::textForStorage(value);
  const double number = floatValueFromLocalizedString(text);
  if (number < 0.1) return "0.0";
  const double volume = transformer::byUnitWord(text, number, unitWords).value_or(0);
  return stringWithFormatF(volume < 0.0001 ? bareNumber(number) : volume);
}

}  // namespace zym
