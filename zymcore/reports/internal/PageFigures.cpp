#include "zymcore/reports/internal/PageFigures.h"

#include <cmath>

#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/transformers/ZYMDateValueTransformer.h"
#include "zymcore/transformers/ZYMVolumeValueTransformer.h"

namespace zym::pages {

bool isShowable(double number) noexcept {
  constexpr double most = 1e15;
  return std::abs(number) < most;
}

template <>
std::string shown<ZYMGravityValueTransformer>(const PlistValue* value) {
  constexpr double leastInPlato = 0.001;
  constexpr std::int64_t plato = 1;
  const bool hasNumber = value && (value->string() || value->isNumber());
  const double gravity = hasNumber ? value->doubleValue() : 0;
  if (!isShowable(gravity) ||
      (gravity < leastInPlato &&
       NSUserDefaults::standardUserDefaults().integerForKey(keys::GravityUnits) == plato)) {
    return noFigure;
  }
  return ZYMGravityValueTransformer::convertForDisplay(hasNumber ? value : nullptr);
}

std::string decimals(double number, int decimalPlaces) {
  if (!isShowable(number)) return noFigure;
  return localizedStringFromFloat_decimalPlaces(static_cast<float>(number), decimalPlaces);
}

std::string whole(double number) {
  return isShowable(number) ? stringWithDecimals(number, 0) : noFigure;
}

std::string_view nameOfFormula(KeyName preference, words::Vocabulary names) {
  const auto code = NSUserDefaults::standardUserDefaults().integerForKey(preference);
  return code >= 0 && code < std::ssize(names) ? names[static_cast<std::size_t>(code)] : "";
}

std::string packs(const PlistValue* amount) {
  const std::int64_t count = amount ? amount->integerValue() : 0;
  if (count == 1) return Localized_String("1 pack");
  return stringWithFormat(Localized_String("%ld packs"), {std::to_string(count)});
}

std::string yeastAmount(const PlistDictionary& yeast) {
  return yeast.stringValue(keys::YeastAmountType) == words::Slurry
             ? shownAt<ZYMVolumeValueTransformer>(yeast, keys::Amount)
             : packs(yeast.find(keys::Amount));
}

std::string dayAt(const PlistDictionary& record, KeyName key) {
  return ZYMDateValueTransformer::convertForDisplay(record.find(key));
}

}  // namespace zym::pages
