#include "app/terminal/Words.h"

#include "zymcore/documents/ZYMLocalization.h"

namespace zym::host {

std::string label(std::string_view english) {
  return Localized_String(english);
}

std::string label(std::string_view english, std::initializer_list<std::string> parts) {
  std::string text;
  const std::string pattern = label(english);
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const std::size_t part = pattern[i] == '%' && i + 1 < pattern.size()
                                 ? static_cast<std::size_t>(pattern[i + 1] - '1')
                                 : parts.size();
    if (part < parts.size()) {
      text += parts.begin()[part];
      ++i;
    } else {
      text += pattern[i];
    }
  }
  return text;
}

}  // namespace zym::host
