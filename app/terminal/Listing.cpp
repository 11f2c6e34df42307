#include "app/terminal/Listing.h"

#include <iostream>

#include "app/terminal/Output.h"
#include "app/terminal/Text.h"

namespace zym::host {

Listing::Listing(std::vector<Table::Column> columns) : table_(columns) {}

void Listing::addRow(const std::vector<std::string>& cells) {
  std::vector<std::string> shown;
  std::string line;
  for (const std::string& cell : cells) {
    // A tab is a control character, so a cell has none.
    shown.push_back(printable(cell));
    line.append(shown.size() == 1 ? "" : "\t").append(shown.back());
    shown.back() = shortened(shown.back(), 40);
  }
  lines_.push_back(std::move(line));
  table_.addRow(std::move(shown));
}

void Listing::print(bool withTabs) const {
  if (!withTabs) {
    if (!table_.empty()) printTable(table_);
    return;
  }
  for (const std::string& line : lines_) std::cout << line << '\n';
}

}  // namespace zym::host
