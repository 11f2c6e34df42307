#include "zymcore/reports/ZYMHTML.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "zymcore/platform/text/NSLocale.h"
#include "zymcore/platform/text/NSNumberFormatter.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/internal/PageFigures.h"
#include "zymcore/store/Resources.h"

namespace zym {
namespace {

using pages::isShowable;
using pages::noFigure;

/// Of the pattern "#0.0". Making it takes far longer than using it.
NSNumberFormatter& formatterToOneDecimalPlace() {
  thread_local std::optional<NSNumberFormatter> formatter;
  const NSLocale locale = NSLocale::currentLocale();
  if (!formatter || formatter->locale() != locale) {
    formatter.emplace(locale);
    formatter->setMinimumFractionDigits(1);
    formatter->setMaximumFractionDigits(1);
    formatter->setRoundingMode(NSNumberFormatter::RoundingMode::HalfEven);
  }
  return *formatter;
}

double numberOf(const PlistValue& value) noexcept {
  const double number = value.doubleValue();
  return std::isnan(number) ? 0 : number;
}

/// Numbers by size and texts by code point; what is absent comes first, texts come last.
bool standsBefore(const PlistValue& a, const PlistValue& b, KeyName key) {
  const auto valueOf = [key](const PlistValue& element) {
    return element.dictionary() ? element.dictionary()->find(key) : nullptr;
  };
  const PlistValue* one = valueOf(a);
  const PlistValue* other = valueOf(b);
  if (!one || !other) return !one && other;
  if (one->string() && other->string()) return *one->string() < *other->string();
  if (one->string() || other->string()) return !one->string();
  return numberOf(*one) < numberOf(*other);
}

}  // namespace

void ZYMHTML::insertHTMLHeader(PlistDictionary& values) {
  values.set(keys::FontName, R"("San Francisco", "Lucida Grande")");
  values.set(keys::Viewport, "");
  values.set(keys::ZoomFactor, "0.75");
}

std::optional<PlistArray> ZYMHTML::loadConfigFileNamed_sortedOnKey(std::string_view name,
                                                                   std::string_view key) {
  std::optional<PlistDictionary> file = resourceDictionary(name);
  PlistArray* list = file ? file->editArray(KeyName(name)) : nullptr;
  if (!list) return std::nullopt;
  if (!key.empty()) {
    std::vector<PlistValue>& elements = list->editAll();
    std::stable_sort(elements.begin(), elements.end(),
                     [key = KeyName(key)](const PlistValue& a, const PlistValue& b) {
                       return standsBefore(a, b, key);
                     });
  }
  return std::move(*list);
}

std::string ZYMHTML::trimToOneDecimalPlace(const PlistValue* value) {
  const double number = value ? value->doubleValue() : 0;
  return isShowable(number) ? formatterToOneDecimalPlace().stringFromNumber(number) : noFigure;
}

std::string ZYMHTML::trimToOneDecimalPlaceAppendingPercent(const PlistValue* value) {
  const std::string number = trimToOneDecimalPlace(value);
  return number == noFigure ? number : number + " %";
}

}  // namespace zym
