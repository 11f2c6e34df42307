#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/values/PlistValue.h"

namespace zym {

class ZYMOrderEntity;

/// A new line of the order in the store, not saved: on order, with the qualities that the library
/// has for the ingredient. Answers its record.
PlistDictionary insertOrderLine(ZYMOrderEntity& order,
                                const std::optional<std::string>& ingredientUUID,
                                std::string_view ingredientType, const PlistValue* amount);

}  // namespace zym
