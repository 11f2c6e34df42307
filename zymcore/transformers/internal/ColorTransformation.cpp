#include "zymcore/transformers/internal/ColorTransformation.h"

#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym::transformer {
namespace {

std::int64_t colorUnit() {
  return NSUserDefaults::standardUserDefaults().integerForKey(keys::ColorUnit);
}

double bareNumber(double number, const ColorScale& scale) {
  switch (colorUnit()) {
    case 0:
      return number;
    case 1:
      return scale.fromEBC(number);
    default:
      return -1;
  }
}

}  // namespace

std::string colorForDisplay(const PlistValue* value, const ColorScale& scale) {
  const Stored color = limitForDisplay(value);
  switch (colorUnit()) {
    case 0:
      return shown(color, color.number, 1, scale.unit);
    case 1:
      return shown(color, scale.toEBC(color.number), 1, "EBC");
    default:
      return "";
  }
}

std::string colorForStorage(const PlistValue* value, const ColorScale& scale) {
  const std::string_view text = textForStorage(value);
  const double number = floatValueFromLocalizedString(text);
  const double color = byUnitWord(text, number, scale.words).value_or(-1);
  return stringWithFormatF(color < -0.5 ? bareNumber(number, scale) : color);
}

}  // namespace zym::transformer
