#include "zymcore/platform/objects/NSFetchedProperties.h"

#include <algorithm>
#include <numeric>

#include "zymcore/platform/objects/NSSortDescriptor.h"

namespace zym {

void NSFetchedProperties::sort(const std::vector<Order>& order) {
  if (order.empty()) return;
  std::vector<std::size_t> rows(size());
  std::iota(rows.begin(), rows.end(), std::size_t{0});
  std::stable_sort(rows.begin(), rows.end(), [&](std::size_t a, std::size_t b) {
    for (const auto& [column, ascending] : order) {
      const auto ordering = NSSortDescriptor::compareValues(value(a, column), value(b, column));
      if (ordering != 0) return ascending ? ordering < 0 : ordering > 0;
    }
    return false;
  });

  NSFetchedProperties sorted(columns_);
  sorted.reserve(size());
  for (const std::size_t row : rows) {
    sorted.addRow(keys_[row]);
    for (std::size_t column = 0; column < columns_; ++column) {
      sorted.addValue(std::move(values_[row * columns_ + column]));
    }
  }
  *this = std::move(sorted);
}

}  // namespace zym
