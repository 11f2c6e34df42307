#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// Property lists in their binary form, version "bplist00". Any thread.
class BinaryPropertyList {
 public:
  /// Containers within containers, for reading and for writing.
  static constexpr std::size_t mostLevels = 512;
  /// Objects may be shared inside a list, so a short one can claim more values than any memory
  /// holds. One that isn't made for that has at most a value and a few bytes of text for each byte
  /// of it: the tree is refused past `freeValues` and one for each byte, and past `freeText` bytes
  /// and 8 for each byte.
  static constexpr std::size_t freeValues = 1U << 16U;
  static constexpr std::size_t freeText = 16U << 20U;

  /// Whether the bytes begin as a binary property list of any version.
  [[nodiscard]] static bool isBinary(std::string_view bytes) noexcept;

  /// The tree of a binary property list. Kinds are kept; a whole number beyond 64 signed bits
  /// becomes the nearest real, and half a surrogate pair the replacement character. Of equal keys
  /// the last wins. Absent for anything damaged, too deep or too large, and for the kinds that a
  /// tree doesn't know (null, set, UID); the error says what is wrong.
  [[nodiscard]] static std::optional<PlistValue> read(std::string_view bytes,
                                                      NSError* error = nullptr);

  /// The tree as a binary property list. Keys are written once, values as often as they stand.
  /// Bytes that aren't UTF-8 become the replacement character. Absent for a tree of too many
  /// levels.
  [[nodiscard]] static std::optional<std::string> write(const PlistValue& value,
                                                        NSError* error = nullptr);
};

}  // namespace zym
