#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "zymcore/platform/objects/NSManagedObject.h"
#include "zymcore/platform/values/PlistKey.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// How an attribute is written to a record: what comes under its key, if anything does.
namespace written {
using Rule = std::optional<PlistValue> (*)(NSManagedObject& object, KeyName attribute);

/// An attribute without a value leaves the key out.
std::optional<PlistValue> ifPresent(NSManagedObject& object, KeyName attribute);
/// "" in place of an absent value.
std::optional<PlistValue> always(NSManagedObject& object, KeyName attribute);
/// An absent value becomes "" in the object itself first.
std::optional<PlistValue> alwaysStored(NSManagedObject& object, KeyName attribute);
/// An object without a UUID gets one first.
std::optional<PlistValue> withNewUUID(NSManagedObject& object, KeyName attribute);
/// The UUID of a water: without one, that of the first in the library.
std::optional<PlistValue> orFirstWater(NSManagedObject& object, KeyName attribute);
/// The name that the library of the item's type has now for its uuid; "" when it has none.
std::optional<PlistValue> nameInLibrary(NSManagedObject& object, KeyName attribute);
/// The uuid of the object at the other end of a relationship to one; left out without one.
std::optional<PlistValue> uuidOfRelated(NSManagedObject& object, KeyName relationship);
}  // namespace written

/// What an attribute becomes when a record is read: from the value given, null when the record has
/// none that the attribute can hold, and the value stored. Absent takes the value away.
namespace read {
using Rule = std::optional<PlistValue> (*)(const PlistValue* given, const PlistValue* stored);

std::optional<PlistValue> asGiven(const PlistValue* given, const PlistValue* stored);
std::optional<PlistValue> orKept(const PlistValue* given, const PlistValue* stored);
std::optional<PlistValue> orEmpty(const PlistValue* given, const PlistValue* stored);
std::optional<PlistValue> orKeptWhenEmpty(const PlistValue* given, const PlistValue* stored);
std::optional<PlistValue> orNewUUID(const PlistValue* given, const PlistValue* stored);
std::optional<PlistValue> orNow(const PlistValue* given, const PlistValue* stored);
/// Its number in single precision, with six decimals.
std::optional<PlistValue> number(const PlistValue* given, const PlistValue* stored);
std::optional<PlistValue> wholeNumber(const PlistValue* given, const PlistValue* stored);
std::optional<PlistValue> orNoCost(const PlistValue* given, const PlistValue* stored);
std::optional<PlistValue> aleOrLager(const PlistValue* given, const PlistValue* stored);
std::optional<PlistValue> orLiquid(const PlistValue* given, const PlistValue* stored);
std::optional<PlistValue> orFermentable(const PlistValue* given, const PlistValue* stored);
}  // namespace read

/// One attribute of an entity and the key it has in a record. A rule that is null is not applied.
struct RecordField {
  constexpr RecordField(std::string_view attributeName, KeyName recordKey, written::Rule writeRule,
                        read::Rule readRule)
      : attribute(attributeName),
        key(recordKey),
        write(writeRule),
        read(readRule),
        readKey(recordKey),
        otherwise(recordKey) {}

  /// Read under another key than it is written.
  [[nodiscard]] constexpr RecordField readUnder(KeyName other) const {
    RecordField field = *this;
    field.readKey = field.otherwise = other;
    return field;
  }
  /// Read under a second key where the first is absent.
  [[nodiscard]] constexpr RecordField orUnder(KeyName second) const {
    RecordField field = *this;
    field.otherwise = second;
    return field;
  }

  KeyName attribute;
  KeyName key;
  written::Rule write;
  read::Rule read;
  KeyName readKey;
  KeyName otherwise;
};

/// The objects of another entity that a record holds as an array of records.
struct RecordChildren {
  enum class Order { ByIndex, ByExpiryDescending, None };

  KeyName relationship;
  KeyName key;
  std::string_view entity;
  Order order;
  bool haveIndex;  // numbered from 0 as they stand
  bool getUUIDs;   // a record without a UUID gets one
};

/// The record of an entity. Keys stand in it in this order.
struct RecordForm {
  std::span<const RecordField> fields;
  const RecordChildren* children = nullptr;
};

}  // namespace zym
