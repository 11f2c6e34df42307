#include "zymcore/documents/ZYMLocalization.h"

#include "zymcore/platform/host/NSBundle.h"

namespace zym {

ZYMLocalization& ZYMLocalization::sharedInstance() {
  static ZYMLocalization instance;
  return instance;
}

std::string ZYMLocalization::localizedString(std::string_view key) const {
  return NSBundle::mainBundle().localizedStringForKey_value_table(key, key, {});
}

std::string Localized_String(std::string_view key) {
  return ZYMLocalization::sharedInstance().localizedString(key);
}

}  // namespace zym
