#pragma once

#include <set>
#include <string>

#include "zymcore/platform/values/PlistValue.h"

namespace zym::testing {

/// The keys under which two records differ, at any depth of dictionaries.
inline std::set<std::string> differences(const PlistDictionary& a, const PlistDictionary& b) {
  std::set<std::string> result;
  for (const auto& [one, other] : {std::pair(&a, &b), std::pair(&b, &a)}) {
    for (const PlistEntry& entry : *one) {
      const PlistValue* value = other->find(entry.key);
      if (value && *value == entry.value) continue;
      const PlistDictionary* inner = value ? value->dictionary() : nullptr;
      if (inner && entry.value.dictionary()) {
        result.merge(differences(*entry.value.dictionary(), *inner));
      } else {
        const std::string* text = entry.value.string();
        result.insert(std::string(entry.key.text()) + (text ? " \"" + *text + "\"" : ""));
      }
    }
  }
  return result;
}

}  // namespace zym::testing
