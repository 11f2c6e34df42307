#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// Copies what the ingredient's library says of its quality into the record of a lot or a line: of
/// a fermentable "Extract" and "Color", of a hop "Alpha", of others nothing. What the library
/// doesn't have is `unknown`.
void copyQualitiesFromLibrary(PlistDictionary& record, std::string_view ingredientType,
                              const std::optional<std::string>& ingredientUUID,
                              std::string_view unknown);

/// The qualities that a lot takes over from the line of an order, a hop's form among them.
void copyQualitiesFromOrderItem(PlistDictionary& lot, const PlistDictionary& orderItem);

}  // namespace zym
