#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/text/NSCharacterSet.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

// Numbers between the user and the store: what is shown follows the current locale, what is stored
// is decimal text. All of these share one formatter a thread.

/// Makes the shared formatter, for the current locale: decimal, rounded half up, no grouping.
/// Called on first use in each thread, and by a host that has changed the locale.
void createFormatter();

/// The number with exactly that many decimals, as the locale writes it. A string is first read in
/// single precision; a value that is neither string nor number, or absent, gives "0".
[[nodiscard]] std::string localizedStringWithValue_decimalPlaces(const PlistValue* value,
                                                                 int decimalPlaces);
[[nodiscard]] std::string localizedStringFromFloat_decimalPlaces(float value, int decimalPlaces);
[[nodiscard]] std::string localizedStringWithDecimalPlaces(std::string_view text,
                                                           int decimalPlaces);

/// Digits and the locale's decimal separator, unless that is a blank.
[[nodiscard]] NSCharacterSet numberCharacterSet();

/// The first number in what the user typed, in single precision with six decimals; "" when there is
/// none, or it is beyond single precision. Words before it are passed over, and with them a sign,
/// but for one at the very start.
/// `secondValue`, where given, gets the number after it, or "" when there is only one; it is left
/// alone when there is none at all.
[[nodiscard]] std::string stringValueWithLocalizedValue_secondValue(std::string_view text,
                                                                    std::string* secondValue);
[[nodiscard]] std::string stringValueWithLocalizedValue(std::string_view text);
[[nodiscard]] std::string delocalizeValue(std::string_view text);

/// The same number as such; 0 when there is none.
[[nodiscard]] float floatValueWithLocalizedValue(std::string_view text);
[[nodiscard]] float floatValueFromLocalizedString(std::string_view text);

}  // namespace zym
