#include "zymcore/stock/internal/Lots.h"

#include <algorithm>

namespace zym::lots {
namespace {

std::string_view uuidOf(const PlistValue& lot) {
  const PlistDictionary* record = lot.dictionary();
  return record ? record->stringValue(keys::UUID) : std::string_view();
}

}  // namespace

void take(PlistDictionary& item, const PlistArray& taken, Least least) {
  PlistArray* inStock = item.editArray(keys::Batches);
  if (!inStock) return;
  for (std::size_t i = 0; i < std::min(taken.size(), inStock->size()); ++i) {
    const PlistDictionary* part = taken.find(i)->dictionary();
    PlistDictionary* lot = inStock->edit(i).editDictionary();
    if (!part || !lot) continue;
    const double left = lot->doubleValue(keys::AmountInStock) - part->doubleValue(keys::Amount);
    lot->setNumber(keys::AmountInStock, least == Least::zero ? std::max(0.0, left) : left);
  }
}

bool areSame(const PlistArray& taken, const PlistArray& inStock) {
  return std::equal(
      taken.begin(), taken.end(), inStock.begin(), inStock.end(),
      [](const PlistValue& a, const PlistValue& b) { return uuidOf(a) == uuidOf(b); });
}

}  // namespace zym::lots
