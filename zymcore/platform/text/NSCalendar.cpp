#include "zymcore/platform/text/NSCalendar.h"

#include <unicode/calendar.h>
#include <unicode/timezone.h>

#include <string>

#include "zymcore/platform/values/NSException.h"

namespace zym {

struct NSCalendar::Rules {
  std::unique_ptr<icu::Calendar> calendar;
};

NSCalendar::NSCalendar(const NSLocale& locale) : rules_(std::make_unique<Rules>()) {
  UErrorCode status = U_ZERO_ERROR;
  rules_->calendar.reset(icu::Calendar::createInstance(
      icu::TimeZone::detectHostTimeZone(), icu::Locale(locale.localeIdentifier().c_str()), status));
  if (U_FAILURE(status)) {
    throw NSException(NSInternalInconsistencyException,
                      std::string("no calendar: ") + u_errorName(status));
  }
}

NSCalendar::~NSCalendar() = default;
NSCalendar::NSCalendar(NSCalendar&&) noexcept = default;
NSCalendar& NSCalendar::operator=(NSCalendar&&) noexcept = default;

NSCalendar NSCalendar::currentCalendar() {
  return NSCalendar(NSLocale::currentLocale());
}

void NSCalendar::setTimeZone(std::string_view name) {
  rules_->calendar->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(
      icu::StringPiece(name.data(), static_cast<std::int32_t>(name.size())))));
}

NSDateComponents NSCalendar::componentsFromDate(NSDate date) const {
  UErrorCode status = U_ZERO_ERROR;
  rules_->calendar->setTime(date.timeIntervalSince1970() * 1000, status);
  return {rules_->calendar->get(UCAL_YEAR, status)};
}

NSDate NSCalendar::dateFromComponents(const NSDateComponents& components) const {
  UErrorCode status = U_ZERO_ERROR;
  rules_->calendar->clear();
  rules_->calendar->set(UCAL_YEAR, components.year);
  return NSDate::dateWithTimeIntervalSince1970(rules_->calendar->getTime(status) / 1000);
}

}  // namespace zym
