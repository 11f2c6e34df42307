#pragma once

#include "zymcore/reports/internal/PageTexts.h"

namespace zym::pages {

/// Stores the name of the water aimed at, and the ions of the finished beer in ppm: those of the
/// base water, boiled down and thinned, with the salts. Without a base water there are no ions.
void addSheetWater(const PlistDictionary& recipe, Form form, PlistDictionary& values);

}  // namespace zym::pages
