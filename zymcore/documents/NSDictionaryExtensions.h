#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "zymcore/documents/ZYMSummary.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// An independent copy. A tree copied by assignment is one already; this says so where it matters.
[[nodiscard]] PlistDictionary duplicate(const PlistDictionary& tree);
[[nodiscard]] PlistArray duplicate(const PlistArray& tree);

/// The position of the first record, or summary, with the UUID; else `NSNotFound`.
[[nodiscard]] std::int64_t indexOfObjectWithUUID(const PlistArray& records, std::string_view uuid);
[[nodiscard]] std::int64_t indexOfObjectWithUUID(const std::vector<ZYMSummary>& summaries,
                                                 std::string_view uuid);

/// Takes every blank out of every key, at every depth: early versions wrote keys with blanks. Where
/// two keys become one, the value of the one with blanks stays.
void removeSpacesInKeys(PlistDictionary& tree);
/// The same for a dictionary or an array; nothing is passed over. Any other value is a fault of the
/// programmer: it is logged, with this file's name, and throws.
void removeSpacesInKeysOfObject(PlistValue* tree);

/// Makes sure that a tree can be stored, in place and at every depth. In its dictionaries, text
/// beyond 10000 characters is taken for damage and replaced by a warning, text is rid of what isn't
/// UTF-8, and a number or boolean becomes its text in single precision with six decimals. Numbers
/// and texts directly in an array stay.
void correctForSerialization(PlistDictionary& tree);
void correctForSerialization(PlistArray& tree);

}  // namespace zym
