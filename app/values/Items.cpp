#include "app/values/Items.h"

#include "app/sheets/RecipeSheet.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Words.h"
#include "app/values/Names.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/BatchKeys.h"
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

/// The one with that uuid, which may be in no list: a batch without a day of brewing isn't.
std::optional<Item> itemWithUUID(const std::string& uuid, bool withRecipes, bool withBatches) {
  if (withRecipes) {
    const auto recipe = recipes().recipeForUUID(uuid);
    if (recipe) {
      return Item{Item::Kind::Recipe, std::string(recipe->stringValue(keys::RecipeTitle)), uuid};
    }
  }
  const auto batch = withBatches ? recipes().batchWithUUID(uuid) : std::nullopt;
  if (!batch) return std::nullopt;
  return Item{Item::Kind::Batch, std::string(batch->stringValue(keys::BatchTitle)), uuid};
}

Item itemAmong(const std::string& name, bool withRecipes, bool withBatches, std::string_view what) {
  if (isUUID(name)) {
    if (auto item = itemWithUUID(name, withRecipes, withBatches)) return *item;
  }
  std::vector<ZYMSummary> rows;
  if (withRecipes) rows = recipes().summariesForAllRecipes();
  const std::size_t firstBatch = rows.size();
  if (withBatches) {
    const std::vector<ZYMSummary> batches = recipes().allBatchSummariesNewestFirst();
    rows.insert(rows.end(), batches.begin(), batches.end());
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
  throw InputError(
      label("'%1' has no document that can be read, or shares its identity", {item.name}));
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

std::string changeOf(const Item& item, const PlistDictionary& before,
                     const PlistDictionary& after) {
  const auto recipeIn = [&item](const PlistDictionary& document) {
    if (item.kind == Item::Kind::Recipe) return document;
    const PlistDictionary* brewed = document.dictionary(keys::ModifiedRecipe);
    PlistDictionary recipe = brewed ? *brewed : PlistDictionary();
    ZYMBeerCalculations::recalculateBeerRecipe(recipe);
    return recipe;
  };
  const PlistDictionary old = recipeIn(before);
  return makesNow(recipeIn(after), &old);
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
