#pragma once

#include <functional>
#include <optional>
#include <string>

#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// What brewing the recipe takes: a row for each ingredient of its additions.
[[nodiscard]] PlistArray ingredientsRequiredForRecipe(PlistDictionary recipe);

/// How much of an ingredient is in stock; absent when there is no item of it, or more than one.
using StockOf = std::function<std::optional<float>(const std::string& uuid)>;

/// The rows of which there isn't enough, with what is missing.
[[nodiscard]] PlistArray missingIngredients(PlistArray rows, const StockOf& stockOf);

}  // namespace zym
