#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::host {

/// A value of a record: how it is shown, and how what the user types becomes it.
struct RecordValue {
  enum class Show { InList, InRecord };

  KeyName key;
  std::string_view label;
  Show show;
  std::string (*toDisplay)(const PlistValue* stored);
  PlistValue (*toStorage)(const std::string& typed);  // null where it can't be typed
  /// The other bound of a range, which is open where both are 0; the key itself where 0 alone says
  /// so.
  std::optional<KeyName> openWith = std::nullopt;
};

/// What the record has of it, for the user; "open" where it is open.
[[nodiscard]] std::string shownOf(const RecordValue& value, const PlistDictionary& record);

/// KEY=VALUE as the user typed it.
struct Assignment {
  std::string key;
  std::string text;
};

/// Throws `UsageError` for a text of another form.
[[nodiscard]] Assignment assignmentOf(const std::string& text);

/// The value of that key or label, whatever the case, that can be typed; null for none.
[[nodiscard]] const RecordValue* valueNamed(std::span<const RecordValue> values,
                                            std::string_view key);

/// Throws `UsageError` that names the keys there are.
[[noreturn]] void refuseKey(std::string_view what, const std::string& key,
                            std::span<const std::string_view> choices);

}  // namespace zym::host
