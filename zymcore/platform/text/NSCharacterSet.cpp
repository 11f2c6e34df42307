#include "zymcore/platform/text/NSCharacterSet.h"

#include <unicode/uchar.h>

#include "zymcore/platform/text/NSString.h"

namespace zym {

NSCharacterSet NSCharacterSet::decimalDigitCharacterSet() {
  NSCharacterSet set;
  set.hasDecimalDigits_ = true;
  return set;
}

void NSCharacterSet::addCharactersInString(std::string_view characters) {
  characters_ += UTF32String(characters);
}

bool NSCharacterSet::characterIsMember(char32_t character) const noexcept {
  return (hasDecimalDigits_ && u_isdigit(static_cast<UChar32>(character))) ||
         characters_.find(character) != std::u32string::npos;
}

}  // namespace zym
