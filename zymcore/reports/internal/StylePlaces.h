#pragma once

#include "zymcore/platform/values/PlistValue.h"

namespace zym::pages {

/// Adds where each figure of the recipe stands in its style, for the bars of a page: in percent of
/// a bar whose middle half is the range of the style, from "0" to "100" at its ends; "" for a range
/// that the style leaves open.
void addStylePlaces(const PlistDictionary& recipe, const PlistDictionary& style,
                    PlistDictionary& values);

}  // namespace zym::pages
