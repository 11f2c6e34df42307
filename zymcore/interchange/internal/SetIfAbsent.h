#pragma once

#include "zymcore/platform/values/PlistValue.h"

namespace zym {

inline void setIfAbsent(PlistDictionary& document, KeyName key, const PlistValue& value) {
  if (!document.contains(key)) document.set(key, value);
}

}  // namespace zym
