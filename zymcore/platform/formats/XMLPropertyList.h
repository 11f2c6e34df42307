#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// Property lists in their XML form. Any thread.
class XMLPropertyList {
 public:
  // What is read at most; more is refused as soon as it is seen.
  static constexpr std::size_t mostBytes = 256U << 20U;
  static constexpr std::size_t mostValues = 4'000'000;
  /// Containers within containers, for reading and for writing.
  static constexpr std::size_t mostLevels = 512;

  /// The tree of an XML property list. Nothing but the bytes given is ever read: no other file, no
  /// network, and a text with declarations of its own is refused. Of equal keys the last wins.
  /// Absent when it is anything else; the error says what is wrong, and in which line.
  [[nodiscard]] static std::optional<PlistValue> read(std::string_view bytes,
                                                      NSError* error = nullptr);

  /// The tree as an XML property list, with reals that read back the same and dates in whole
  /// seconds of UTC. Characters that XML has no form for (most control characters, and bytes that
  /// aren't UTF-8) are left out of texts and keys. Absent for a tree of too many levels.
  [[nodiscard]] static std::optional<std::string> write(const PlistValue& value,
                                                        NSError* error = nullptr);
};

}  // namespace zym
