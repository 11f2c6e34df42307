#pragma once

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::pages {

/// Stores the words of a sheet of a recipe or batch, in the user's language, under their keys.
void addSheetLabels(PlistDictionary& values);

}  // namespace zym::pages
