#include "zymcore/store/Resources.h"

#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/formats/XMLPropertyList.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

std::optional<PlistDictionary> resourceDictionary(std::string_view name) {
  const std::optional<std::string> path =
      NSBundle::mainBundle().pathForResource_ofType(name, "plist");
  return path ? dictionaryAtPath(*path) : std::nullopt;
}

std::optional<PlistDictionary> dictionaryAtPath(const std::string& path) {
  const std::optional<std::string> bytes =
      NSFileManager::contentsAtPath(path, XMLPropertyList::mostBytes);
  std::optional<PlistValue> list =
      bytes ? NSPropertyListSerialization::propertyListWithData(*bytes) : std::nullopt;
  PlistDictionary* dictionary = list ? list->editDictionary() : nullptr;
  return dictionary ? std::optional(std::move(*dictionary)) : std::nullopt;
}

}  // namespace zym
