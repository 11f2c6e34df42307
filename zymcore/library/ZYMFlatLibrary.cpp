#include "zymcore/library/ZYMFlatLibrary.h"

#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/store/FirstOf.h"

namespace zym {
void ZYMFlatLibrary::prepareNewItem(PlistDictionary& item) {
  for (const Default& value : defaults_) {
    item.set(value.key,
             value.isTranslated ? Localized_String(value.text) : std::string(value.text));
  }
}

PlistDictionary ZYMFlatLibrary::firstItem() {
  return *firstOf(allItems()).dictionary();
}

PlistArray ZYMFlatLibrary::allItemsWithoutFirst() {
  PlistArray items = allItems();
  (void)firstOf(items);
  items.remove(0);
  return items;
}

std::vector<ZYMSummary> ZYMFlatLibrary::summariesWithoutFirst() const {
  std::vector<ZYMSummary> rows = rowsOfAllItems();
  (void)firstOf(rows);
  rows.erase(rows.begin());
  return rows;
}

}  // namespace zym
