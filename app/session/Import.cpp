#include "app/session/Import.h"

#include "app/terminal/Faults.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/values/NSException.h"

namespace zym::host {

RecipeToImport recipeToImport(const std::string& file) {
  ZYMFileImportOperation operation(file);
  try {
    std::optional<PlistDictionary> recipe = operation.recipeInFile();
    if (!recipe) throw InputError(reasonOf(operation));
    ZYMRecipes::checkSaltWeightsExistInRecipe(*recipe);
    ZYMRecipes::ensureRecipeLatestVersion(*recipe);
    ZYMBeerCalculations::recalculateBeerRecipe(*recipe);
    return {std::move(*recipe), operation.matches()};
  } catch (const NSException& exception) {
    throw InputError(exception.reason());
  }
}

std::string reasonOf(const ZYMFileImportOperation& operation) {
  const std::string reason = operation.failureReason().value_or("can't be imported");
  const std::string file = operation.url().value_or("") + ": ";
  return reason.starts_with(file) ? reason.substr(file.size()) : reason;
}

}  // namespace zym::host
