#include "zymcore/reports/internal/Template.h"

#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/reports/ZYMHTML.h"

namespace zym::pages {

std::optional<std::string> templateNamed(std::string_view name) {
  constexpr std::size_t mostBytes = 32U << 20U;
  const std::optional<std::string> path =
      NSBundle::mainBundle().pathForResource_ofType(name, "html");
  std::optional<std::string> text =
      path ? NSFileManager::contentsAtPath(*path, mostBytes) : std::nullopt;
  return text && isUTF8(*text) ? text : std::nullopt;
}

std::string pageOf(std::string_view name, const PlistDictionary& values) {
  return ZYMHTML::replaceKeysInString_fromDictionary(templateNamed(name), &values);
}

}  // namespace zym::pages
