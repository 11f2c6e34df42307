#include "app/sheets/Figures.h"

#include "app/terminal/Text.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/values/NSDate.h"
#include "zymcore/platform/values/PlistValue.h"
#include "zymcore/transformers/ZYMBeerColorValueTransformer.h"
#include "zymcore/transformers/ZYMDateValueTransformer.h"
#include "zymcore/transformers/ZYMGravityValueTransformer.h"
#include "zymcore/transformers/ZYMHopWeightValueTransformer.h"
#include "zymcore/transformers/ZYMMaltColorValueTransformer.h"
#include "zymcore/transformers/ZYMPercentValueTransformer.h"
#include "zymcore/transformers/ZYMSaltWeightValueTransformer.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"
#include "zymcore/transformers/ZYMVolumeValueTransformer.h"
#include "zymcore/transformers/ZYMWaterGrainValueTransformer.h"
#include "zymcore/transformers/ZYMWeightValueTransformer.h"

namespace zym::host {
namespace {

constexpr std::size_t nameWidth = 32;
constexpr std::size_t titleWidth = 80;

template <class Transformer>
std::string shown(const PlistDictionary& document, KeyName key) {
  const PlistValue* value = document.find(key);
  const bool hasNumber = value && (value->string() || value->isNumber());
  return Transformer::convertForDisplay(hasNumber ? value : nullptr);
}

std::string numberWithUnit(double number, int decimalPlaces, std::string_view unit) {
  return localizedStringFromFloat_decimalPlaces(static_cast<float>(number), decimalPlaces) + " " +
         label(unit);
}

}  // namespace

std::string gravityAt(const PlistDictionary& document, KeyName key) {
  return shown<ZYMGravityValueTransformer>(document, key);
}
std::string volumeAt(const PlistDictionary& document, KeyName key) {
  return shown<ZYMVolumeValueTransformer>(document, key);
}
std::string weightAt(const PlistDictionary& document, KeyName key) {
  return shown<ZYMWeightValueTransformer>(document, key);
}
std::string hopWeightAt(const PlistDictionary& document, KeyName key) {
  return shown<ZYMHopWeightValueTransformer>(document, key);
}
std::string saltWeightAt(const PlistDictionary& document, KeyName key) {
  return shown<ZYMSaltWeightValueTransformer>(document, key);
}
std::string beerColorAt(const PlistDictionary& document, KeyName key) {
  return shown<ZYMBeerColorValueTransformer>(document, key);
}
std::string maltColorAt(const PlistDictionary& document, KeyName key) {
  return shown<ZYMMaltColorValueTransformer>(document, key);
}
std::string temperatureAt(const PlistDictionary& document, KeyName key) {
  return shown<ZYMTemperatureValueTransformer>(document, key);
}
std::string waterGrainAt(const PlistDictionary& document, KeyName key) {
  return shown<ZYMWaterGrainValueTransformer>(document, key);
}
std::string percentAt(const PlistDictionary& document, KeyName key) {
  return percent(document.doubleValue(key));
}
std::string bitternessAt(const PlistDictionary& document, KeyName key) {
  return numberWithUnit(document.doubleValue(key), 1, "IBU");
}
std::string minutesAt(const PlistDictionary& document, KeyName key) {
  return numberWithUnit(document.doubleValue(key), 0, "min");
}

std::string yeastAmount(const PlistDictionary& yeast) {
  if (yeast.stringValue(keys::YeastAmountType) == words::Slurry)
    return volumeAt(yeast, keys::Amount);
  const double packs = yeast.doubleValue(keys::Amount);
  return numberWithUnit(packs, 0, packs == 1 ? "pack" : "packs");
}

std::string dayAt(const PlistDictionary& document, KeyName key) {
  const NSDate* date = document.date(key);
  if (!date) return {};
  const PlistValue value(*date);
  return ZYMDateValueTransformer::convertForDisplay(&value);
}

std::string percent(double number) {
  const PlistValue value(number);
  return ZYMPercentValueTransformer::convertForDisplay(&value);
}

std::string nameAt(const PlistDictionary& document, KeyName key) {
  return shortened(textAt(document, key), nameWidth);
}
std::string titleAt(const PlistDictionary& document, KeyName key) {
  const std::string title = shortened(textAt(document, key), titleWidth);
  return displayWidth(title) > 0 ? title : label("Untitled");
}
std::string textAt(const PlistDictionary& document, KeyName key) {
  return printable(document.stringValue(key));
}
std::string wordAt(const PlistDictionary& document, KeyName key) {
  return shortened(printable(label(document.stringValue(key))), nameWidth);
}

}  // namespace zym::host
