#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "zymcore/platform/values/CowPtr.h"
#include "zymcore/platform/values/PlistArray.h"
#include "zymcore/platform/values/PlistKey.h"

namespace zym {

class NSDate;
struct PlistEntry;
class PlistRows;
class PlistEditableRows;

/// A dictionary with text keys. A copy is independent at every depth and costs nothing until one
/// side writes. Entries keep the order in which they came in, which means nothing to equality.
class PlistDictionary {
 public:
  PlistDictionary() noexcept;
  PlistDictionary(std::initializer_list<std::pair<KeyName, PlistValue>> entries);
  /// Moves the keys, and the value at the same place for each. Of equal keys the last wins.
  PlistDictionary(std::span<PlistKey> keys, std::span<PlistValue> values);
  PlistDictionary(const PlistDictionary&) noexcept;
  PlistDictionary(PlistDictionary&&) noexcept;
  PlistDictionary& operator=(const PlistDictionary&) noexcept;
  PlistDictionary& operator=(PlistDictionary&&) noexcept;
  ~PlistDictionary();

  [[nodiscard]] std::size_t size() const noexcept;
  [[nodiscard]] bool empty() const noexcept { return size() == 0; }
  [[nodiscard]] const PlistEntry* begin() const noexcept;
  [[nodiscard]] const PlistEntry* end() const noexcept;

  // Reading never copies, never inserts and never fails.

  /// The value, or null.
  [[nodiscard]] const PlistValue* find(KeyName key) const noexcept;
  [[nodiscard]] bool contains(KeyName key) const noexcept { return find(key) != nullptr; }
  /// The value as a number (`PlistValue::doubleValue`); 0 when absent.
  [[nodiscard]] double doubleValue(KeyName key) const noexcept;
  [[nodiscard]] float floatValue(KeyName key) const noexcept;
  [[nodiscard]] std::int64_t integerValue(KeyName key) const noexcept;
  /// `PlistValue::boolValue`; false when absent.
  [[nodiscard]] bool boolValue(KeyName key) const noexcept;
  /// The text of a string value, for as long as the dictionary isn't changed; empty for anything
  /// else.
  [[nodiscard]] std::string_view stringValue(KeyName key) const noexcept;
  /// The nested value of that kind, or null.
  [[nodiscard]] const PlistDictionary* dictionary(KeyName key) const noexcept;
  [[nodiscard]] const PlistArray* array(KeyName key) const noexcept;
  [[nodiscard]] const std::string* string(KeyName key) const noexcept;
  [[nodiscard]] const NSDate* date(KeyName key) const noexcept;
  /// The dictionaries in the array under the key, in order; elements of other kinds are passed
  /// over. Empty when there is no array.
  [[nodiscard]] PlistRows rows(KeyName key) const noexcept;

  // Writing first takes storage of its own. What an `edit...` call answers is for changing at once:
  // it must not be used after this or what holds it was copied, since the change would show in the
  // copy, nor after an entry came or went.

  void set(KeyName key, PlistValue value);
  /// Stores the number as text with six decimals ("%f").
  void setNumber(KeyName key, double number);
  /// Sets the value, or removes the key when there is none.
  void setOrRemove(KeyName key, const PlistValue* value);
  /// Answers whether there was such a key.
  bool remove(KeyName key);
  void clear();
  /// The value for changing it in place, or null.
  [[nodiscard]] PlistValue* edit(KeyName key);
  [[nodiscard]] PlistDictionary* editDictionary(KeyName key);
  [[nodiscard]] PlistArray* editArray(KeyName key);
  /// `rows`, for changing them in place.
  [[nodiscard]] PlistEditableRows editRows(KeyName key);
  /// The value at a position from 0 to `size() - 1`, for changing it in place.
  [[nodiscard]] PlistValue& editAt(std::size_t position);

  /// Equal values under equal keys.
  friend bool operator==(const PlistDictionary& a, const PlistDictionary& b) noexcept;

 private:
  struct Storage;
  CowPtr<Storage> storage_;
};

}  // namespace zym
