#include "app/session/Import.h"

#include "app/terminal/Faults.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/values/NSException.h"

namespace zym::host {

void prepareImport(PlistDictionary& recipe) {
  ZYMRecipes::checkSaltWeightsExistInRecipe(recipe);
  ZYMRecipes::ensureRecipeLatestVersion(recipe);
  correctForSerialization(recipe);
  ZYMBeerCalculations::recalculateBeerRecipe(recipe);
}

RecipeToImport recipeToImport(const std::string& file) {
  ZYMFileImportOperation operation(file);
  try {
    std::optional<PlistDictionary> recipe = operation.recipeInFile();
    if (!recipe) throw InputError(operation.failureReason().value_or(""));
    prepareImport(*recipe);
    return {std::move(*recipe), operation.matches()};
  } catch (const NSException& exception) {
    throw InputError(exception.reason());
  }
}

}  // namespace zym::host
