#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

using NSJSONReadingOptions = std::uint32_t;
/// Every tree here is mutable in all its parts, so these two ask for what is there anyway.
inline constexpr NSJSONReadingOptions NSJSONReadingMutableContainers = 1;
inline constexpr NSJSONReadingOptions NSJSONReadingMutableLeaves = 2;

using NSJSONWritingOptions = std::uint32_t;
/// One entry a line, indented by two blanks.
inline constexpr NSJSONWritingOptions NSJSONWritingPrettyPrinted = 1;

/// JSON into and out of a tree. Integers, reals, booleans and text stay apart: the real 2 is
/// written "2.0" and reads back a real. Any thread.
class NSJSONSerialization {
 public:
  // What is read at most; more is refused as soon as it is seen.
  static constexpr std::size_t mostBytes = 256U << 20U;
  static constexpr std::size_t mostValues = 4'000'000;
  /// Containers within containers, for reading and for writing.
  static constexpr std::size_t mostLevels = 512;

  /// The tree of a JSON text (UTF-8, UTF-16 or UTF-32, with or without a byte order mark) whose top
  /// level is an object or an array. A key with the value null is absent, and a null in an array is
  /// passed over. Of equal keys the last wins. A whole number outside the range of 64 bits with
  /// sign is a real. Absent when the text is anything else; the error says what is wrong, and
  /// where.
  [[nodiscard]] static std::optional<PlistValue> JSONObjectWithData_options(
      std::string_view data, NSJSONReadingOptions options, NSError* error = nullptr);

  /// The tree as JSON in UTF-8. Absent, with an error, unless `isValidJSONObject`.
  [[nodiscard]] static std::optional<std::string> dataWithJSONObject_options(
      const PlistValue& object, NSJSONWritingOptions options, NSError* error = nullptr);

  /// True for a dictionary or an array that holds neither dates nor data, no number that is
  /// infinite or no number at all, no text that isn't UTF-8, and not more than `mostLevels` levels.
  [[nodiscard]] static bool isValidJSONObject(const PlistValue& object);
};

}  // namespace zym
