#include "zymcore/platform/values/PlistValue.h"

#include <cmath>

#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

// Past 2^53 a double can't tell neighbouring integers apart, so the integer side decides.
bool isSame(std::int64_t integer, double real) noexcept {
  return real >= -0x1p63 && real < 0x1p63 && std::trunc(real) == real &&
         static_cast<std::int64_t>(real) == integer;
}

bool areSameNumber(const PlistValue& a, const PlistValue& b) noexcept {
  if (a.real() && b.real()) {
    return *a.real() == *b.real() || (std::isnan(*a.real()) && std::isnan(*b.real()));
  }
  if (a.real()) return isSame(b.integerValue(), *a.real());
  if (b.real()) return isSame(a.integerValue(), *b.real());
  return a.integerValue() == b.integerValue();
}

}  // namespace

const char* PlistValue::className() const noexcept {
  switch (kind()) {
    case Kind::Dictionary:
      return "NSDictionary";
    case Kind::Array:
      return "NSArray";
    case Kind::String:
      return "NSString";
    case Kind::Date:
      return "NSDate";
    case Kind::Data:
      return "NSData";
    default:
      return "NSNumber";
  }
}

double PlistValue::doubleValue() const noexcept {
  if (const std::string* text = string()) return zym::doubleValue(*text);
  if (const double* number = real()) return *number;
  if (const std::int64_t* number = integer()) return static_cast<double>(*number);
  if (const bool* flag = boolean()) return *flag ? 1 : 0;
  return 0;
}

std::int64_t PlistValue::integerValue() const noexcept {
  if (const std::string* text = string()) return zym::integerValue(*text);
  if (const std::int64_t* number = integer()) return *number;
  if (const double* number = real()) return zym::integerValue(*number);
  if (const bool* flag = boolean()) return *flag ? 1 : 0;
  return 0;
}

bool operator==(const PlistValue& a, const PlistValue& b) noexcept {
  if (a.isNumber() && b.isNumber()) return areSameNumber(a, b);
  return a.value_ == b.value_;
}

}  // namespace zym
