#include "app/terminal/Table.h"

#include <algorithm>
#include <string_view>

#include "app/terminal/Text.h"

namespace zym::host {
namespace {

constexpr std::size_t gap = 2;

struct Quantity {
  std::string_view number, unit;
};

Quantity split(std::string_view cell) {
  const std::size_t blank = cell.find(' ');
  if (blank == std::string_view::npos) return {cell, {}};
  return {cell.substr(0, blank), cell.substr(blank + 1)};
}

std::string blanksUpTo(std::size_t width, std::string_view text) {
  return padded("", width - std::min(width, displayWidth(text)));
}

/// The cells of one column, all equally wide.
std::vector<std::string> alignedQuantities(const std::vector<std::string_view>& cells,
                                           std::string_view heading) {
  std::size_t numberWidth = 0;
  std::size_t unitWidth = 0;
  for (const std::string_view cell : cells) {
    numberWidth = std::max(numberWidth, displayWidth(split(cell).number));
    unitWidth = std::max(unitWidth, displayWidth(split(cell).unit));
  }
  const std::size_t width = numberWidth + (unitWidth > 0 ? 1 + unitWidth : 0);
  const std::size_t indent = displayWidth(heading) - std::min(displayWidth(heading), width);

  std::vector<std::string> aligned{blanksUpTo(width, heading) + std::string(heading)};
  for (const std::string_view cell : cells) {
    const auto [number, unit] = split(cell);
    std::string text = padded("", indent) + blanksUpTo(numberWidth, number) + std::string(number);
    if (unitWidth > 0) text.append(" ").append(padded(unit, unitWidth));
    aligned.push_back(std::move(text));
  }
  return aligned;
}

std::vector<std::string> alignedTexts(const std::vector<std::string_view>& cells,
                                      std::string_view heading) {
  std::size_t width = displayWidth(heading);
  for (const std::string_view cell : cells) width = std::max(width, displayWidth(cell));
  std::vector<std::string> aligned{padded(heading, width)};
  for (const std::string_view cell : cells) aligned.push_back(padded(cell, width));
  return aligned;
}

}  // namespace

std::vector<std::string> Table::lines() const {
  std::vector<std::string> lines(rows_.size() + 1);
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    std::vector<std::string_view> cells;
    for (const std::vector<std::string>& row : rows_) cells.push_back(row.at(i));
    const std::string& heading = columns_[i].heading;
    const std::vector<std::string> column = columns_[i].cells == Cells::Quantities
                                                ? alignedQuantities(cells, heading)
                                                : alignedTexts(cells, heading);
    for (std::size_t j = 0; j < lines.size(); ++j) {
      if (i > 0) lines[j].append(gap, ' ');
      lines[j] += column[j];
    }
  }
  for (std::string& line : lines) line.erase(line.find_last_not_of(' ') + 1);
  if (lines.front().empty()) lines.erase(lines.begin());
  return lines;
}

}  // namespace zym::host
