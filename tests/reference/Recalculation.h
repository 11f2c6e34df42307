#pragma once

#include "zymcore/platform/values/PlistDictionary.h"

/// The calculations written a second time, straight down and without any code of the library but
/// its trees: what both agree on is right, or wrong twice in the same way.
namespace zym::reference {

/// `user`: the user defaults, numbers or texts.
void recalculateRecipe(PlistDictionary& recipe, const PlistDictionary& user);
void recalculateBatch(PlistDictionary& batch, const PlistDictionary& user);
void recalculateBatchCost(PlistDictionary& batch);

}  // namespace zym::reference
