#include "zymcore/transformers/ZYMDateValueTransformer.h"

#include "zymcore/platform/text/NSDateFormatter.h"
#include "zymcore/platform/text/NSLocale.h"

namespace zym {

std::string ZYMDateValueTransformer::convertForDisplay(const PlistValue* value) {
  const NSDate* date = value ? value->date() : nullptr;
  return date ? NSDateFormatter(NSLocale::currentLocale()).stringFromDate(*date) : "";
}

NSDate ZYMDateValueTransformer::convertForStorage(const PlistValue* value) {
  const std::string* text = value ? value->string() : nullptr;
  if (!text) return NSDate::date();
  return NSDateFormatter(NSLocale::currentLocale()).dateFromString(*text).value_or(NSDate::date());
}

std::optional<PlistValue> ZYMDateValueTransformer::reverseTransformedValue(
    const PlistValue* value) const {
  return convertForStorage(value);
}

}  // namespace zym
