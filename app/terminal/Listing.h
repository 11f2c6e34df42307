#pragma once

#include <string>
#include <vector>

#include "app/terminal/Table.h"

namespace zym::host {

/// A list that is a table to a reader and lines with tabs to a script.
class Listing {
 public:
  explicit Listing(std::vector<Table::Column> columns);
  /// Cells of any origin, one a column.
  void addRow(const std::vector<std::string>& cells);
  void print(bool withTabs) const;
  [[nodiscard]] const Table& table() const noexcept { return table_; }

 private:
  Table table_;
  std::vector<std::string> lines_;
};

}  // namespace zym::host
