#include <map>
#include <utility>

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/stock/ZYMSuggestABeerGenerator.h"
#include "zymcore/stock/internal/Needs.h"
#include "zymcore/store/ZYMCachingModel.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMLibraryRegistry.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMInventoryEntity.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

using Generator = ZYMSuggestABeerGenerator;

struct Kind {
  KeyName additions;
  std::string_view type;
};
constexpr Kind kinds[] = {
    {keys::FermentableIngredients, words::Fermentable},
    {keys::HopIngredients, words::Hop},
    {keys::OtherIngredients, words::Other},
    {keys::YeastIngredients, words::Yeast},
};

void addAmount(PlistDictionary& row, float amount) {
  row.setNumber(keys::Amount, row.floatValue(keys::Amount) + amount);
}

void setName(PlistDictionary& row) {
  for (const KeyName key : {keys::Variety, keys::Name}) {
    if (const PlistValue* name = row.find(key)) row.set(keys::Ingredient, PlistValue(*name));
  }
}

/// The rows of a recipe, each ingredient once. One without uuid is like no other.
class MergedRows {
 public:
  void add(PlistDictionary row) {
    if (const std::string* uuid = row.string(keys::UUID)) {
      const auto [known, isNew] = positions_.try_emplace(*uuid, rows_.size());
      if (!isNew) {
        return addAmount(*rows_[known->second].editDictionary(), row.floatValue(keys::Amount));
      }
    }
    setName(row);
    rows_.emplace_back(std::move(row));
  }
  [[nodiscard]] PlistArray take() { return PlistArray(std::move(rows_)); }

 private:
  std::vector<PlistValue> rows_;
  std::map<std::string, std::size_t> positions_;
};

bool isSlurry(const PlistDictionary& row) {
  return row.stringValue(keys::IngredientType) == words::Yeast &&
         row.stringValue(keys::YeastAmountType) != words::CommercialPack;
}

void addToTotal(const PlistDictionary& row, PlistArray& total) {
  const std::string* uuid = row.string(keys::UUID);
  const std::int64_t known = uuid ? indexOfObjectWithUUID(total, *uuid) : NSNotFound;
  if (known != NSNotFound) {
    addAmount(*total.edit(static_cast<std::size_t>(known)).editDictionary(),
              isSlurry(row) ? 1.0F : row.floatValue(keys::Amount));
    return;
  }
  PlistDictionary entry;
  for (const KeyName key : {keys::UUID, keys::IngredientType, keys::Amount}) {
    entry.setOrRemove(key, row.find(key));
  }
  if (isSlurry(row)) entry.set(keys::Amount, 1);
  total.append(std::move(entry));
}

std::optional<PlistDictionary> recipeToBrew(std::string_view uuid, NSManagedObjectContext& context,
                                            bool allowBatches) {
  if (auto* recipe = ZYMRecipeEntity::onlyObjectWithUUID(&context, uuid)) {
    return recipe->dictionaryRepresentation();
  }
  auto* object = allowBatches ? ZYMRecipeBatchEntity::onlyObjectWithUUID(&context, uuid) : nullptr;
  const auto batch = object ? object->dictionaryRepresentation() : std::nullopt;
  const PlistDictionary* brewed = batch ? batch->dictionary(keys::ModifiedRecipe) : nullptr;
  return brewed ? std::optional(*brewed) : std::nullopt;
}

}  // namespace

PlistArray ingredientsRequiredForRecipe(PlistDictionary recipe) {
  MergedRows rows;
  for (const Kind& kind : kinds) {
    PlistArray* additions = recipe.editArray(kind.additions);
    if (!additions) continue;
    PlistArray typed = Generator::insertRecipeType_intoArray(kind.type, std::move(*additions));
    for (PlistValue& row : typed.editAll()) {
      if (PlistDictionary* dictionary = row.editDictionary()) rows.add(std::move(*dictionary));
    }
  }
  return rows.take();
}

PlistArray missingIngredients(PlistArray rows, const StockOf& stockOf) {
  std::erase_if(rows.editAll(), [&](PlistValue& value) {
    PlistDictionary* row = value.editDictionary();
    if (!row) return true;
    const std::string* uuid = row->string(keys::UUID);
    const std::optional<float> inStock = uuid ? stockOf(*uuid) : std::nullopt;
    if (!inStock) return false;
    const float needed = row->floatValue(keys::Amount);
    if (!(needed > *inStock)) return true;
    row->setNumber(keys::Amount, needed - *inStock);
    return false;
  });
  return rows;
}

PlistArray Generator::insertRecipeType_intoArray(std::string_view type, PlistArray ingredients) {
  for (PlistDictionary& ingredient : PlistEditableRows(&ingredients)) {
    ingredient.set(keys::IngredientType, type);
  }
  return ingredients;
}

PlistDictionary Generator::dictionaryRepresentationForInventoryEntity_withContext(
    ZYMInventoryEntity& item, NSManagedObjectContext& context) {
  PlistDictionary record;
  for (const KeyName key :
       {keys::UUID, keys::DateLastModified, keys::AmountInStock, keys::IngredientType}) {
    if (std::optional<PlistValue> value = item.valueInRecord(key)) {
      record.set(key, std::move(*value));
    }
  }
  ZYMCachingModel* library = ZYMLibraryRegistry::sharedInstance().libraryOfIngredientType(
      record.stringValue(keys::IngredientType));
  const std::optional<PlistDictionary> known =
      library ? library->itemWithUUID_withContext(record.stringValue(keys::UUID), context)
              : std::nullopt;
  const PlistValue* name = known ? known->find(library->nameKeyInRecords()) : nullptr;
  record.set(keys::Ingredient, name ? *name : PlistValue(""));
  return record;
}

PlistArray Generator::missingIngredients_inContext(PlistArray rows,
                                                   NSManagedObjectContext& context) {
  return missingIngredients(
      std::move(rows), [&context](const std::string& uuid) -> std::optional<float> {
        auto* item = ZYMInventoryEntity::onlyObjectWithUUID(&context, uuid);
        if (!item) return std::nullopt;
        const PlistDictionary record =
            dictionaryRepresentationForInventoryEntity_withContext(*item, context);
        return record.floatValue(keys::AmountInStock);
      });
}

PlistArray Generator::ingredientsRequiredForRecipeWithUUID_usingContext_allowBatches(
    std::string_view uuid, NSManagedObjectContext& context, bool allowBatches) {
  std::optional<PlistDictionary> recipe = recipeToBrew(uuid, context, allowBatches);
  return recipe ? ingredientsRequiredForRecipe(std::move(*recipe)) : PlistArray();
}

PlistArray Generator::ingredientsRequiredForRecipeWithUUID_usingContext(
    std::string_view uuid, NSManagedObjectContext& context) {
  return ingredientsRequiredForRecipeWithUUID_usingContext_allowBatches(uuid, context, false);
}

PlistArray Generator::ingredientsNotAvailableForRecipeWithUUID_usingContext_allowBatches(
    std::string_view uuid, NSManagedObjectContext& context, bool allowBatches) {
  return missingIngredients_inContext(
      ingredientsRequiredForRecipeWithUUID_usingContext_allowBatches(uuid, context, allowBatches),
      context);
}

PlistArray Generator::ingredientsNotAvailableForRecipeWithUUID_usingContext(
    std::string_view uuid, NSManagedObjectContext& context) {
  return ingredientsNotAvailableForRecipeWithUUID_usingContext_allowBatches(uuid, context, false);
}

PlistArray Generator::ingredientsNotAvailableForRecipeOrBatchWithUUID(std::string_view uuid) {
  return ingredientsNotAvailableForRecipeWithUUID_usingContext_allowBatches(uuid, mainContext(),
                                                                            true);
}

PlistArray Generator::ingredientsNotAvailableForRecipesWithUUIDs(
    const std::vector<std::string>& uuids) {
  PlistArray total;
  for (const std::string& uuid : uuids) {
    const PlistArray rows =
        ingredientsRequiredForRecipeWithUUID_usingContext_allowBatches(uuid, mainContext(), true);
    for (const PlistDictionary& row : PlistRows(&rows)) addToTotal(row, total);
  }
  return missingIngredients_inContext(std::move(total), mainContext());
}

}  // namespace zym
