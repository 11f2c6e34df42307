#pragma once

#include <cstddef>
#include <initializer_list>
#include <vector>

#include "zymcore/platform/values/CowPtr.h"

namespace zym {

class PlistValue;

/// A list of values. A copy is independent at every depth and costs nothing until one side writes.
class PlistArray {
 public:
  PlistArray() noexcept;
  PlistArray(std::initializer_list<PlistValue> values);
  explicit PlistArray(std::vector<PlistValue> values);
  PlistArray(const PlistArray&) noexcept;
  PlistArray(PlistArray&&) noexcept;
  PlistArray& operator=(const PlistArray&) noexcept;
  PlistArray& operator=(PlistArray&&) noexcept;
  ~PlistArray();

  [[nodiscard]] std::size_t size() const noexcept;
  [[nodiscard]] bool empty() const noexcept { return size() == 0; }

  // Reading never copies.
  [[nodiscard]] const PlistValue* begin() const noexcept;
  [[nodiscard]] const PlistValue* end() const noexcept;
  /// Null past the end.
  [[nodiscard]] const PlistValue* find(std::size_t index) const noexcept;

  // Writing first takes storage of its own. All of these throw `NSRangeException` past the end.
  // What an `edit...` call answers is for changing at once: it must not be used after this or what
  // holds it was copied, since the change would show in the copy, nor after a value came or went.
  void append(PlistValue value);
  void insert(std::size_t index, PlistValue value);
  void set(std::size_t index, PlistValue value);
  void remove(std::size_t index);
  void clear();
  [[nodiscard]] PlistValue& edit(std::size_t index);
  /// All values, for changing them in place.
  [[nodiscard]] std::vector<PlistValue>& editAll();

  /// Equal values in the same order.
  friend bool operator==(const PlistArray& a, const PlistArray& b) noexcept;

 private:
  struct Storage;
  CowPtr<Storage> storage_;
};

}  // namespace zym
