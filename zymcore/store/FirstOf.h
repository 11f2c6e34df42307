#pragma once

#include "zymcore/platform/values/NSException.h"

namespace zym {

/// The first element of a list that must have one: an empty list throws `NSRangeException`.
template <class List>
[[nodiscard]] decltype(auto) firstOf(const List& list) {
  if (list.empty()) throw NSException(NSRangeException, "index 0 beyond bounds for empty array");
  return *list.begin();
}

}  // namespace zym
