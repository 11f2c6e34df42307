#include "zymcore/platform/values/NSDate.h"

#include <cmath>
#include <cstdint>

#include "zymcore/platform/values/NumberText.h"

namespace zym {

std::string NSDate::description() const {
  constexpr double year0 = -62167219200;  // since 1970
  constexpr double year10000 = 253402300800;
  const double since1970 = std::floor(timeIntervalSince1970());
  if (!(since1970 >= year0 && since1970 < year10000)) return stringWithFormatF(seconds_);

  using namespace std::chrono;
  const sys_seconds moment{seconds(static_cast<std::int64_t>(since1970))};
  const sys_days day = floor<days>(moment);
  const year_month_day date(day);
  const hh_mm_ss time(moment - day);
  const auto digits = [](std::int64_t number, std::size_t count) {
    const std::string text = std::to_string(number);
    return std::string(count - text.size(), '0') + text;
  };
  return digits(int{date.year()}, 4) + '-' + digits(unsigned{date.month()}, 2) + '-' +
         digits(unsigned{date.day()}, 2) + ' ' + digits(time.hours().count(), 2) + ':' +
         digits(time.minutes().count(), 2) + ':' + digits(time.seconds().count(), 2) + " +0000";
}

}  // namespace zym
