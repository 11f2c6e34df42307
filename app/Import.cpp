#include "app/Import.h"

#include "app/Faults.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/interchange/ZYMFileImportOperation.h"
#include "zymcore/library/ZYMRecipes.h"
#include "zymcore/platform/NSException.h"

namespace zym::host {

RecipeToImport recipeToImport(const std::string& file) {
  ZYMFileImportOperation operation(file);
  try {
    std::optional<PlistDictionary> recipe = operation.recipeInFile();
    if (!recipe) throw InputError(operation.failureReason().value_or("can't be imported"));
    ZYMRecipes::checkSaltWeightsExistInRecipe(*recipe);
    ZYMRecipes::ensureRecipeLatestVersion(*recipe);
    ZYMBeerCalculations::recalculateBeerRecipe(*recipe);
    return {std::move(*recipe), operation.matches()};
  } catch (const NSException& exception) {
    throw InputError(exception.reason());
  }
}

}  // namespace zym::host
