#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

enum class NSPropertyListFormat { XMLFormat_v1_0 = 100, BinaryFormat_v1_0 = 200 };

/// Property lists in whichever form. Any thread.
class NSPropertyListSerialization {
 public:
  /// The tree of a property list, whose form is recognised. Absent, with an error, for anything
  /// else.
  [[nodiscard]] static std::optional<PlistValue> propertyListWithData(std::string_view data,
                                                                      NSError* error = nullptr);

  /// The tree as a property list of that form. Absent, with an error, for a tree it can't carry.
  [[nodiscard]] static std::optional<std::string> dataWithPropertyList_format(
      const PlistValue& propertyList, NSPropertyListFormat format, NSError* error = nullptr);
};

}  // namespace zym
