#include "app/values/Items.h"

#include "app/terminal/Faults.h"
#include "app/values/Names.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/values/NSException.h"

namespace zym::host {
namespace {

ZYMRecipes& recipes() {
  return ZYMRecipes::sharedInstance();
}

std::size_t positionIn(const std::vector<ZYMSummary>& rows, const std::string& name,
                       std::string_view what) {
  std::vector<Named> candidates;
  candidates.reserve(rows.size());
  for (const ZYMSummary& row : rows) {
    candidates.push_back({row.name, row.uuid ? std::string_view(*row.uuid) : ""});
  }
  return positionMeant(name, candidates, what);
}

/// A batch without a day of brewing is in no list by time.
std::optional<Item> batchWithUUID(const std::string& uuid) {
  const auto batch = recipes().batchWithUUID(uuid);
  if (!batch) return std::nullopt;
  return Item{Item::Kind::Batch, std::string(batch->stringValue(keys::BatchTitle)), uuid};
}

Item itemAmong(const std::string& name, bool withRecipes, bool withBatches, std::string_view what) {
  std::vector<ZYMSummary> rows;
  if (withRecipes) rows = recipes().summariesForAllRecipes();
  const std::size_t firstBatch = rows.size();
  if (withBatches) {
    const std::vector<ZYMSummary> batches = recipes().allBatchSummariesNewestFirst();
    rows.insert(rows.end(), batches.begin(), batches.end());
    if (const auto unlisted = batchWithUUID(name)) return *unlisted;
  }
  const std::size_t position = positionIn(rows, name, what);
  return {position < firstBatch ? Item::Kind::Recipe : Item::Kind::Batch, rows[position].name,
          rows[position].uuid.value_or("")};
}

void recalculate(Item::Kind kind, PlistDictionary& document) {
  if (kind == Item::Kind::Recipe) {
    ZYMBeerCalculations::recalculateBeerRecipe(document);
  } else {
    ZYMBeerCalculations::recalculateBatch(document);
  }
}

}  // namespace

Item itemNamed(const std::string& name) {
  return itemAmong(name, true, true, "recipe or batch");
}
Item recipeNamed(const std::string& name) {
  return itemAmong(name, true, false, "recipe");
}
Item batchNamed(const std::string& name) {
  return itemAmong(name, false, true, "batch");
}
ZYMSummary groupNamed(const std::string& name) {
  const std::vector<ZYMSummary> groups = recipes().summariesForAllGroups();
  return groups[positionIn(groups, name, "group")];
}

PlistDictionary documentOf(const Item& item) {
  try {
    std::optional<PlistDictionary> document = item.kind == Item::Kind::Recipe
                                                  ? recipes().recipeForUUID(item.uuid)
                                                  : recipes().batchWithUUID(item.uuid);
    if (document) {
      recalculate(item.kind, *document);
      return *document;
    }
  } catch (const NSException& exception) {
    throw InputError(exception.what());
  }
  throw InputError("'" + item.name + "' has no document that can be read, or shares its identity");
}

void storeDocument(const Item& item, PlistDictionary& document) {
  recalculate(item.kind, document);
  if (item.kind == Item::Kind::Recipe) {
    recipes().updateRecipe(document);
  } else {
    recipes().updateBatch(document);
  }
  remember(item, document);
}

void remember(const Item& item, const PlistDictionary& document) {
  if (item.kind == Item::Kind::Recipe) {
    recipes().addRecipeToHistory(document);
  } else {
    recipes().addBatchToHistory(document);
  }
}

PlistArray recordsOf(const std::vector<ZYMSummary>& rows) {
  PlistArray records;
  for (const ZYMSummary& row : rows) records.append(row.archive());
  return records;
}

}  // namespace zym::host
