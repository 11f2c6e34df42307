#include "zymcore/library/ZYMFlatLibrary.h"

#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/values/NSException.h"

namespace zym {
namespace {

[[noreturn]] void noFirst() {
  throw NSException(NSRangeException, "index 0 beyond bounds for empty array");
}

}  // namespace

void ZYMFlatLibrary::prepareNewItem(PlistDictionary& item) {
  for (const Default& value : defaults_) {
    if (value.comment.empty()) {
      item.set(value.key, value.text);
    } else {
      item.set(value.key, Localized_String(value.text, value.comment));
    }
  }
}

PlistDictionary ZYMFlatLibrary::firstItem() {
  const PlistArray items = allItems();
  if (items.empty()) noFirst();
  return *items.find(0)->dictionary();
}

PlistArray ZYMFlatLibrary::allItemsWithoutFirst() {
  PlistArray items = allItems();
  if (items.empty()) noFirst();
  items.remove(0);
  return items;
}

std::vector<ZYMSummary> ZYMFlatLibrary::summariesWithoutFirst() const {
  std::vector<ZYMSummary> rows = rowsOfAllItems();
  if (rows.empty()) noFirst();
  rows.erase(rows.begin());
  return rows;
}

}  // namespace zym
