#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// A table of attribute values: one row for each record found, one column for each attribute that
/// was asked for.
class NSFetchedProperties {
 public:
  explicit NSFetchedProperties(std::size_t columns) noexcept : columns_(columns) {}

  [[nodiscard]] std::size_t size() const noexcept { return keys_.size(); }
  /// The value, or null when the record has none there. Neither number is checked.
  [[nodiscard]] const PlistValue* value(std::size_t row, std::size_t column) const noexcept {
    const std::optional<PlistValue>& value = values_[row * columns_ + column];
    return value ? &*value : nullptr;
  }
  /// The text of a string value, or null.
  [[nodiscard]] const std::string* string(std::size_t row, std::size_t column) const noexcept {
    const PlistValue* text = value(row, column);
    return text ? text->string() : nullptr;
  }
  /// The key of the record's `NSManagedObjectID`.
  [[nodiscard]] std::int64_t key(std::size_t row) const noexcept { return keys_[row]; }

  void reserve(std::size_t rows) {
    keys_.reserve(rows);
    values_.reserve(rows * columns_);
  }
  /// Begins a row; its values follow by `addValue`, one for each column.
  void addRow(std::int64_t key) { keys_.push_back(key); }
  void addValue(std::optional<PlistValue> value) { values_.push_back(std::move(value)); }

  struct Order {
    std::size_t column;
    bool ascending;
  };
  /// Sorts the rows as `NSSortDescriptor` does, first by the first column.
  void sort(const std::vector<Order>& order);

 private:
  std::size_t columns_;
  std::vector<std::int64_t> keys_;
  std::vector<std::optional<PlistValue>> values_;
};

}  // namespace zym
