#include "zymcore/platform/formats/NSPropertyListSerialization.h"

#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/formats/XMLPropertyList.h"

namespace zym {

std::optional<PlistValue> NSPropertyListSerialization::propertyListWithData(std::string_view data,
                                                                            NSError* error) {
  return BinaryPropertyList::isBinary(data) ? BinaryPropertyList::read(data, error)
                                            : XMLPropertyList::read(data, error);
}

std::optional<std::string> NSPropertyListSerialization::dataWithPropertyList_format(
    const PlistValue& propertyList, NSPropertyListFormat format, NSError* error) {
  return format == NSPropertyListFormat::BinaryFormat_v1_0
             ? BinaryPropertyList::write(propertyList, error)
             : XMLPropertyList::write(propertyList, error);
}

}  // namespace zym
