#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/values/RecordValue.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/platform/values/PlistValue.h"
#include "zymcore/store/ZYMCachingModel.h"

namespace zym::host {

/// A kind of record that the program lists, shows and edits.
struct LibraryKind {
  std::string_view plural;  // as it is listed
  std::string_view singular;
  ZYMCachingModel& (*library)();  // null for styles, which can't be edited
  std::span<const RecordValue> values;
  bool firstIsNone = false;  // the first record by name stands for no choice

  /// The key of the name in a record.
  [[nodiscard]] KeyName nameKey() const {
    return library ? library().nameKeyInRecords() : keys::Name;
  }
};

[[nodiscard]] std::span<const LibraryKind> libraryKinds();
/// The kind of that name, singular or plural. Throws `UsageError` for any other.
[[nodiscard]] const LibraryKind& libraryKindNamed(std::string_view name);
[[nodiscard]] std::string libraryKindNames();

/// All records of the kind, in the order of their list.
[[nodiscard]] PlistArray recordsOf(const LibraryKind& kind);
/// The record that the user means: by its uuid, its name, or a beginning of its name that no other
/// has, whatever the case. Throws `InputError` for none, and, with the candidates, for several.
[[nodiscard]] PlistDictionary recordNamed(const LibraryKind& kind, const std::string& name);
/// Throws `InputError` where the record stands for no choice and so keeps its name and its place.
void requireChosen(const LibraryKind& kind, const PlistDictionary& record);
/// Throws `InputError` for a name that would come before the record that stands for no choice.
void requirePlaceForName(const LibraryKind& kind, const std::string& name);
/// Sets values from texts of the form KEY=VALUE, by key or label. Throws `UsageError`.
void setValues(const LibraryKind& kind, PlistDictionary& record,
               const std::vector<std::string>& assignments);

}  // namespace zym::host
