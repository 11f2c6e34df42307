#include "zymcore/reports/internal/Sentences.h"

#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/text/NSString.h"

namespace zym::pages {

std::string sentence(std::string_view english, std::initializer_list<std::string_view> arguments) {
  return stringWithFormat(Localized_String(english), arguments);
}

}  // namespace zym::pages
