#include "zymcore/transformers/ZYMDistanceValueTransformer.h"

#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/transformers/internal/TransformerText.h"

namespace zym {
namespace {

constexpr double toFeet(double metres) {
  return metres * 3.2808399;
}
constexpr double fromFeet(double feet) {
  return feet / 3.2808399;
}
constexpr double fromYards(double yards) {
  return yards / 1.0936133;
}

constexpr transformer::UnitWord unitWords[] = {
    {"m", transformer::asItIs},
    {"mt", transformer::asItIs},
    {"yd", fromYards},
    {"ft", fromFeet},
    {"yds", fromYards},
    {"feet", fromFeet},
    {"metre", transformer::asItIs},
    {"metres", transformer::asItIs},
    {"meters", transformer::asItIs},
};

std::int64_t units() {
  return NSUserDefaults::standardUserDefaults().integerForKey(keys::Units);
}

double bareNumber(double number) {
  switch (units()) {
    case 0:
    case 1:
      return fromFeet(number);
    case 2:
      return number;
    default:
      return 0;
  }
}

}  // namespace

std::string ZYMDistanceValueTransformer::convertForDisplay(const PlistValue* value) {
  const double metres = transformer::numberForDisplay(value);
  switch (units()) {
    case 0:
    case 1:
      return stringWithDecimals(toFeet(metres), 0) + " ft";  // not localized
    case 2:
      return transformer::shown(metres, 1, "m");
    default:
      return "";
  }
}

std::string ZYMDistanceValueTransformer::convertForStorage(const PlistValue* value) {
  const std::string_view text = transformer::textForStorage(value);
  const double number = floatValueFromLocalizedString(text);
  if (number < 0.1) return "0.0";
  const double metres = transformer::byUnitWord(text, number, unitWords).value_or(0);
  return stringWithFormatF(metres < 0.0001 ? bareNumber(number) : metres);
}

}  // namespace zym
