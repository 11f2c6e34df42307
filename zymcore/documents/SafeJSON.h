#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSDate.h"
#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

// JSON for trees with dates and binary data, which JSON has not. A date travels as the text
// "//Date:" with its seconds since 1970 to six decimals, data as "//Data:" with its Base64.
//
// A marker counts anywhere in a text, so a note that holds one comes back as a date or as data, and
// there is no way to escape it. Dates directly in an array have no such form in either direction.

[[nodiscard]] std::string JSONDate(NSDate date);
[[nodiscard]] bool isJSONDate(std::string_view text) noexcept;
/// Absent where `isJSONDate` is false. What is no number after the marker reads as 0 seconds.
[[nodiscard]] std::optional<NSDate> dateFromJSONDate(std::string_view text);

[[nodiscard]] std::string JSONData(const NSData& data);
[[nodiscard]] bool isJSONData(std::string_view text) noexcept;
[[nodiscard]] NSData dataFromJSONData(std::string_view text);

/// Base64 in lines of 64 characters.
[[nodiscard]] std::string base64EncodedString(const NSData& data);
[[nodiscard]] NSData dataFromBase64String(std::string_view text);

/// Turns dates and data into marked texts, at every depth, in place.
void prepareForSerialization(PlistDictionary& tree);
void prepareForSerialization(PlistArray& tree);
/// Turns marked texts back, at every depth, in place.
void processAfterDeserialization(PlistDictionary& tree);
void processAfterDeserialization(PlistArray& tree);

/// The tree as JSON. Absent, with the error, where JSON can't hold it: a date directly in an array,
/// a number that is none, a top level that is neither dictionary nor array.
[[nodiscard]] std::optional<std::string> safeDataWithJSONObject_options(const PlistValue& tree,
                                                                        unsigned options,
                                                                        NSError* error = nullptr);
/// The tree of JSON bytes; absent, with the error, where they are none.
[[nodiscard]] std::optional<PlistValue> safeJSONObjectWithData_options(std::string_view data,
                                                                       unsigned options,
                                                                       NSError* error = nullptr);

}  // namespace zym
