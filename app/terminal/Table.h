#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zym::host {

/// Rows of cells under headings. Texts stand to the left; of quantities ("3.63 kg") the numbers
/// stand to the right and the units behind them to the left.
class Table {
 public:
  enum class Cells { Texts, Quantities };
  struct Column {
    std::string heading;
    Cells cells;
  };

  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// One cell a column. Cells must be printable.
  void addRow(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  [[nodiscard]] bool empty() const noexcept { return rows_.empty(); }

  /// The line of headings, unless all are empty, and a line for each row.
  [[nodiscard]] std::vector<std::string> lines() const;

 private:
  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace zym::host
