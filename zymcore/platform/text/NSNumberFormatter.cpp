#include "zymcore/platform/text/NSNumberFormatter.h"

#include <unicode/numberformatter.h>
#include <unicode/ucurr.h>

#include <algorithm>
#include <map>
#include <optional>
#include <tuple>

namespace zym {

// A format is settled once for each count of decimals and then only used.
struct NSNumberFormatter::Formats {
  explicit Formats(const NSLocale& ofPeople) : locale(ofPeople) {}

  NSLocale locale;
  int minimum = 0;
  int maximum = 3;
  UNumberFormatRoundingMode rounding = UNUM_ROUND_HALFUP;
  std::optional<icu::number::LocalizedNumberFormatter> money;  // while the style is that
  std::map<std::tuple<int, int, UNumberFormatRoundingMode>, icu::number::LocalizedNumberFormatter>
      settled;

  const icu::number::LocalizedNumberFormatter& current() {
    if (money) return *money;
    const std::tuple digits(minimum, maximum, rounding);
    const auto found = settled.find(digits);
    if (found != settled.end()) return found->second;
    using icu::number::NumberFormatter;
    using icu::number::Precision;
    return settled
        .emplace(digits, NumberFormatter::withLocale(icu::Locale(locale.localeIdentifier().c_str()))
                             .grouping(UNUM_GROUPING_OFF)
                             .roundingMode(rounding)
                             .precision(Precision::minMaxFraction(minimum, maximum)))
        .first->second;
  }
};

NSNumberFormatter::NSNumberFormatter(const NSLocale& locale)
    : formats_(std::make_unique<Formats>(locale)) {}
NSNumberFormatter::~NSNumberFormatter() = default;
NSNumberFormatter::NSNumberFormatter(NSNumberFormatter&&) noexcept = default;
NSNumberFormatter& NSNumberFormatter::operator=(NSNumberFormatter&&) noexcept = default;

const NSLocale& NSNumberFormatter::locale() const noexcept {
  return formats_->locale;
}

void NSNumberFormatter::setNumberStyle(Style style) {
  formats_->money.reset();
  if (style == Style::Decimal) return;
  const icu::Locale locale(formats_->locale.localeIdentifier().c_str());
  using icu::number::NumberFormatter;
  using icu::number::Precision;
  const auto sum = NumberFormatter::withLocale(locale)
                       .grouping(UNUM_GROUPING_OFF)
                       .roundingMode(UNUM_ROUND_HALFUP);
  UErrorCode status = U_ZERO_ERROR;
  char16_t code[4] = {};
  ucurr_forLocale(locale.getName(), code, 4, &status);
  const icu::CurrencyUnit unit(code, status);
  formats_->money = U_SUCCESS(status)
                        ? sum.unit(unit).precision(Precision::currency(UCURR_USAGE_STANDARD))
                        : sum.precision(Precision::fixedFraction(2));
}

void NSNumberFormatter::setRoundingMode(RoundingMode mode) {
  formats_->rounding = mode == RoundingMode::HalfEven ? UNUM_ROUND_HALFEVEN : UNUM_ROUND_HALFUP;
}

void NSNumberFormatter::setMinimumFractionDigits(int digits) {
  formats_->minimum = std::clamp(digits, 0, 100);
  formats_->maximum = std::max(formats_->maximum, formats_->minimum);
}

void NSNumberFormatter::setMaximumFractionDigits(int digits) {
  formats_->maximum = std::clamp(digits, 0, 100);
  formats_->minimum = std::min(formats_->minimum, formats_->maximum);
}

std::string NSNumberFormatter::stringFromNumber(double number) {
  UErrorCode status = U_ZERO_ERROR;
  std::string text;
  const icu::number::FormattedNumber formatted = formats_->current().formatDouble(number, status);
  return formatted.toString(status).toUTF8String(text);
}

}  // namespace zym
