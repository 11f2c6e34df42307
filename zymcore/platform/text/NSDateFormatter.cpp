#include "zymcore/platform/text/NSDateFormatter.h"

#include <unicode/datefmt.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <cmath>

#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

icu::UnicodeString unicode(std::string_view text) {
  constexpr std::size_t longestText = 1000;
  const std::string_view read = text.substr(0, longestText);
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(read.data(), static_cast<std::int32_t>(read.size())));
}

}  // namespace

struct NSDateFormatter::Format {
  std::unique_ptr<icu::DateFormat> format;
};

NSDateFormatter::NSDateFormatter(const NSLocale& locale)
    : format_(std::make_unique<Format>(
          Format{std::unique_ptr<icu::DateFormat>(icu::DateFormat::createDateInstance(
              icu::DateFormat::kMedium, icu::Locale(locale.localeIdentifier().c_str())))})) {
  format_->format->setLenient(false);
}

NSDateFormatter::~NSDateFormatter() = default;
NSDateFormatter::NSDateFormatter(NSDateFormatter&&) noexcept = default;
NSDateFormatter& NSDateFormatter::operator=(NSDateFormatter&&) noexcept = default;

void NSDateFormatter::setTimeZone(std::string_view name) {
  format_->format->adoptTimeZone(icu::TimeZone::createTimeZone(unicode(name)));
}

std::string NSDateFormatter::stringFromDate(NSDate date) const {
  // Some five thousand years around the present, beyond which calendars have no months to offer.
  constexpr double mostMilliseconds = 1.8e14;
  const double milliseconds = date.timeIntervalSince1970() * 1000;
  if (std::isnan(milliseconds)) return "";
  icu::UnicodeString text;
  format_->format->format(std::clamp(milliseconds, -mostMilliseconds, mostMilliseconds), text);
  std::string utf8;
  return text.toUTF8String(utf8);
}

std::optional<NSDate> NSDateFormatter::dateFromString(std::string_view text) const {
  const icu::UnicodeString units =
      unicode(withoutTrailingWhiteSpace(withoutLeadingWhiteSpace(text)));
  icu::ParsePosition position;
  const UDate milliseconds = format_->format->parse(units, position);
  if (position.getErrorIndex() >= 0 || position.getIndex() == 0 ||
      position.getIndex() != units.length()) {
    return std::nullopt;
  }
  return NSDate::dateWithTimeIntervalSince1970(milliseconds / 1000);
}

}  // namespace zym
