#pragma once

#include <cstdint>
#include <string>

#include "zymcore/platform/values/PlistDictionary.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// Why an operation that can fail did. A fresh one is no error: its domain is empty.
struct NSError {
  std::string domain;
  std::int64_t code = 0;
  std::string localizedDescription;
  PlistDictionary userInfo;
  std::string
      localizedFailureReason;  // without the name of the file; empty where there is no other
};

inline constexpr const char* NSCocoaErrorDomain = "NSCocoaErrorDomain";
inline constexpr const char* NSPOSIXErrorDomain = "NSPOSIXErrorDomain";

/// Fills `error` where the caller asked for one. Answers false, so that `return fail(...)` reads.
inline bool fail(NSError* error, std::string domain, std::int64_t code, std::string description) {
  if (error) *error = {std::move(domain), code, std::move(description), {}, {}};
  return false;
}

}  // namespace zym
