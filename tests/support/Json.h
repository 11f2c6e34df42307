#pragma once

#include <stdexcept>

#include "zymcore/platform/formats/NSJSONSerialization.h"

namespace zym {

/// Documents written as JSON.
inline PlistDictionary operator""_json(const char* text, std::size_t length) {
  const auto value = NSJSONSerialization::JSONObjectWithData_options({text, length}, 0);
  if (!value || !value->dictionary()) throw std::invalid_argument(text);
  return *value->dictionary();
}

}  // namespace zym
