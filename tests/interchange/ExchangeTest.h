#pragma once

#include "tests/support/Store.h"
#include "tests/support/Test.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/interchange/operations/ZYMFileExportOperation.h"
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/ZYMOtherIngredients.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {

/// A store with the libraries of the program.
class ExchangeTest : public testing::WithStore {
 protected:
  ExchangeTest() {
    model().installInitialState();
    endTurn();
    undoManager().removeAllActions();
  }
  static ZYMRecipes& recipes() { return ZYMRecipes::sharedInstance(); }

  /// A recipe of ingredients that the libraries have, other for each number.
  static PlistDictionary randomRecipe(unsigned number) {
    std::mt19937 random(number);
    const auto below = [&](std::size_t count) { return random() % count; };
    const auto amount = [&] { return stringWithFormatF(static_cast<double>(below(500'000)) / 64); };
    const auto oneOf = [&](const PlistArray& records) {
      return *records.find(below(records.size()))->dictionary();
    };
    PlistDictionary recipe = recipes().emptyRecipe();
    recipe.set(keys::RecipeTitle, "Brew & <" + std::to_string(number) + ">");
    recipe.set(keys::MashType, words::mashTypes[below(std::size(words::mashTypes))]);
    recipe.set(keys::BoilDuration, std::to_string(60 + 5 * below(8)));
    recipe.set(keys::StyleUUID,
               oneOf(ZYMStyles::sharedInstance().allStylesInGuidelines(1)).stringValue(keys::UUID));
    recipe.set(keys::BaseWaterProfileUsedUUID,
               oneOf(ZYMWaters::sharedInstance().allItems()).stringValue(keys::UUID));
    recipe.set(keys::MashSchedule, oneOf(ZYMMashSchedules::sharedInstance().allItems()));
    for (const keys::SaltKeys& salt : keys::salts) recipe.set(salt.concentration, "0.0001");
    const auto add = [&](KeyName key, const PlistArray& library, words::Vocabulary whens) {
      PlistArray additions;
      for (std::size_t count = below(5); count > 0; --count) {
        PlistDictionary addition = oneOf(library);
        addition.remove(keys::Description);
        const std::size_t when = below(whens.size());
        addition.set(keys::When, whens[when]);
        addition.set(keys::Amount, amount());
        if (whens.size() == std::size(words::hopWhen)) {
          const std::string_view minutes = words::hopMinutes[when];
          addition.set(keys::Minutes,
                       minutes.empty() ? recipe.stringValue(keys::BoilDuration) : minutes);
          addition.set(keys::Form, words::hopForms[below(std::size(words::hopForms))]);
        }
        additions.append(std::move(addition));
      }
      recipe.set(key, std::move(additions));
    };
    add(keys::FermentableIngredients, ZYMFermentables::sharedInstance().allItems(),
        words::fermentableWhen);
    add(keys::HopIngredients, ZYMHops::sharedInstance().allItems(), words::hopWhen);
    add(keys::OtherIngredients, ZYMOtherIngredients::sharedInstance().allItems(), words::otherWhen);
    PlistDictionary yeast = oneOf(ZYMYeasts::sharedInstance().allItems());
    yeast.set(keys::Amount, "2");
    yeast.set(keys::YeastAmountType, words::yeastAmountTypes[below(2)]);
    recipe.set(keys::YeastIngredients, PlistArray{yeast});
    ZYMRecipes::ensureRecipeLatestVersion(recipe);
    return recipe;
  }

  /// The file in which the item is exported.
  std::string exported(const PlistValue& item, ZYMExportFileType type) {
    ZYMFileExportOperation operation(item, folder.path(), static_cast<std::int32_t>(type));
    operation.start();
    EXPECT_EQ(operation.failureReason(), std::nullopt);
    return operation.writtenPath().value_or("");
  }
  /// The recipe of the file as it is stored.
  static PlistDictionary imported(const std::string& path) {
    ZYMFileImportOperation operation(path);
    operation.start();
    EXPECT_EQ(operation.failureReason(), std::nullopt) << path;
    endTurn();
    return recipes()
        .recipeForUUID(operation.uuidOfRecipe().value_or(""))
        .value_or(PlistDictionary());
  }
  PlistDictionary travelled(const PlistDictionary& recipe, ZYMExportFileType type) {
    return imported(exported(recipe, type));
  }
  static std::size_t count(const PlistDictionary& document, KeyName key) {
    const PlistArray* found = document.array(key);
    return found ? found->size() : 0;
  }
};

/// Without what each import makes anew.
inline PlistDictionary withoutIdentity(PlistDictionary document) {
  for (const KeyName key : {keys::UUID, keys::DateLastModified}) document.remove(key);
  return document;
}

}  // namespace zym
