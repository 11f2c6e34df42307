#pragma once

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// What a recipe of any age gets whenever it is read, alone or in a batch: salt weights, and
/// additions without the descriptions of the library. Yeasts keep theirs.
void repairStoredRecipe(PlistDictionary& recipe);

}  // namespace zym
