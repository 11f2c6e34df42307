#include "zymcore/calculations/ZYMUnitConverter.h"

namespace zym {

std::string ZYMUnitConverter::trimUnitFromNumber(std::string_view text) {
  if (text.empty()) return "0.0";
  return std::string(text.substr(0, text.find_first_not_of("0123456789-.+")));
}

}  // namespace zym
