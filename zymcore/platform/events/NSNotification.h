#pragma once

#include <string>

#include "zymcore/platform/values/PlistDictionary.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// News that something happened to an object.
struct NSNotification {
  std::string name;
  /// Whom it is about: its address, for comparing. Null when it is about nobody.
  const void* object = nullptr;
  PlistDictionary userInfo;
};

}  // namespace zym
