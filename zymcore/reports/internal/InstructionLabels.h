#pragma once

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::pages {

/// Stores the words of the instructions under their keys. Those that hold a figure take it from the
/// values, which have all of them.
void addInstructionLabels(PlistDictionary& values);

}  // namespace zym::pages
