#include "zymcore/platform/NSPropertyListSerialization.h"

#include "zymcore/platform/XMLPropertyList.h"

namespace zym {

std::optional<PlistValue> NSPropertyListSerialization::propertyListWithData(std::string_view data,
                                                                            NSError* error) {
  return XMLPropertyList::read(data, error);
}

std::optional<std::string> NSPropertyListSerialization::dataWithPropertyList_format(
    const PlistValue& propertyList, NSPropertyListFormat, NSError* error) {
  return XMLPropertyList::write(propertyList, error);
}

}  // namespace zym
