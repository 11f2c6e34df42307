#include <algorithm>
#include <iterator>

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {
namespace {

constexpr std::size_t mostItems = 10;
// A thousand times what ten items take.
constexpr std::size_t mostBytes = 4 << 20;

std::string historyFile() {
  return ZYMCoreDataModel::sharedInstance().historyFolderPath() + "/History.plist";
}

ZYMHistoryItem opened(const PlistDictionary& document, KeyName titleKey, bool isBatch) {
  const auto text = [&](KeyName key) {
    const std::string* found = document.string(key);
    return found ? std::optional(*found) : std::nullopt;
  };
  ZYMHistoryItem item;
  item.setUuid(text(keys::UUID));
  item.setName(text(titleKey));
  item.setDateAccessed(NSDate::date());
  item.setIsBatch(isBatch);
  return item;
}

// A document that can't be read is there all the same.
bool isThere(const ZYMRecipes& recipes, const ZYMHistoryItem& item) {
  if (!item.uuid()) return false;
  try {
    return recipes.recipeForUUID(*item.uuid()) || recipes.batchWithUUID(*item.uuid());
  } catch (const NSException&) {
    return true;
  }
}

}  // namespace

void ZYMRecipes::addRecipeToHistory(const PlistDictionary& recipe) {
  addHistoryItemToHistory(opened(recipe, keys::RecipeTitle, false));
}

void ZYMRecipes::addBatchToHistory(const PlistDictionary& batch) {
  addHistoryItemToHistory(opened(batch, keys::BatchTitle, true));
}

void ZYMRecipes::addHistoryItemToHistory(const ZYMHistoryItem& item) {
  std::vector<ZYMHistoryItem> items = readHistory();
  std::erase_if(items, [&](const ZYMHistoryItem& known) {
    return item.uuid() && known.uuid() == item.uuid();
  });
  items.insert(items.begin(), item);
  if (items.size() > mostItems) items.pop_back();
  writeHistory(items);
}

std::vector<ZYMHistoryItem> ZYMRecipes::readHistory() const {
  const auto bytes = NSFileManager::contentsAtPath(historyFile(), mostBytes);
  const auto list =
      bytes ? NSPropertyListSerialization::propertyListWithData(*bytes) : std::nullopt;
  std::vector<ZYMHistoryItem> items;
  for (const PlistDictionary& record : PlistRows(list ? list->array() : nullptr)) {
    items.push_back(ZYMHistoryItem::historyItemWithDictionary(record));
  }
  return items;
}

void ZYMRecipes::writeHistory(const std::vector<ZYMHistoryItem>& items) {
  PlistArray list;
  for (const ZYMHistoryItem& item : items) list.append(item.historyItemAsDictionary());
  const auto bytes = NSPropertyListSerialization::dataWithPropertyList_format(
      std::move(list), NSPropertyListFormat::XMLFormat_v1_0);
  if (bytes) NSFileManager::writeData_toPath(*bytes, historyFile());
}

std::vector<ZYMHistoryItem> ZYMRecipes::history() {
  std::vector<ZYMHistoryItem> items = readHistory();
  const std::size_t removed =
      std::erase_if(items, [&](const ZYMHistoryItem& item) { return !isThere(*this, item); });
  if (removed > 0) writeHistory(items);
  return items;
}

std::vector<ZYMHistoryItem> ZYMRecipes::historyWithMaximumNumberOfItems(std::size_t count) {
  std::vector<ZYMHistoryItem> items = history();
  if (count != 0 && items.size() > count) items.resize(count);
  return items;
}

}  // namespace zym
