#pragma once

#include <string_view>

#include "zymcore/platform/PlistDictionary.h"

namespace zym {

class ZYMRecipeEntity;

/// A new recipe in the main context, with the document.
ZYMRecipeEntity& insertRecipe(PlistDictionary& recipe);
/// Adds the recipe to the group and moves the group's date, if there is such a group; the library
/// is none.
void joinGroup(ZYMRecipeEntity& recipe, std::string_view groupUUID);

}  // namespace zym
