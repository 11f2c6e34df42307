#pragma once

#include "app/terminal/Sheet.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::host {

/// Writes what a recalculated batch turned out as, beside what its recipe as brewed predicts.
void writeBatch(Sheet& sheet, const PlistDictionary& batch);

}  // namespace zym::host
