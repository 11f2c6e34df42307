#include "zymcore/transformers/ZYMWaterGrainValueTransformer.h"

#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/transformers/internal/TransformerText.h"

namespace zym {
namespace {

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

struct Row {
  std::int64_t units;
  std::string_view unit;
  double (*toUnit)(double);
  double (*fromUnit)(double);
};
constexpr Row rows[] = {
    {0, "qts/lb", toQuartsPerPound, fromQuartsPerPound},
    {1, "pts/lb", toPintsPerPound, fromPintsPerPound},
    {2, "l/kg", transformer::asItIs, transformer::asItIs},
};
constexpr transformer::UnitWord unitWords[] = {
    {"l/kg", transformer::asItIs},
    {"pts/lb", fromPintsPerPound},
    {"qts/lb", fromQuartsPerPound},
};

const Row* rowOfUser() {
  const std::int64_t units = NSUserDefaults::standardUserDefaults().integerForKey(keys::Units);
  for (const Row& row : rows) {
    if (row.units == units) return &row;
  }
  return nullptr;
}

}  // namespace

std::string ZYMWaterGrainValueTransformer::convertForDisplay(const PlistValue* value) {
  const double ratio = transformer::numberForDisplay(value);
  const Row* row = rowOfUser();
  return row ? transformer::shown(row->toUnit(ratio), 2, row->unit) : "";
}

std::string ZYMWaterGrainValueTransformer::convertForStorage(const PlistValue* value) {
  const std::string_view text = transformer::textForStorage(value);
  const double number = floatValueFromLocalizedString(text);
  double ratio = transformer::byUnitWord(text, number, unitWords).value_or(-1);
  if (ratio < -0.5) {
    const Row* row = rowOfUser();
    ratio = row ? row->fromUnit(number) : -1;
  }
  return stringWithFormatF(ratio);
}

}  // namespace zym
