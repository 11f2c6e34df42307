#pragma once

#include <string>

#include "zymcore/platform/values/PlistValue.h"

namespace CLI {
class App;
}

namespace zym::host {

/// Orders the ingredients: rows of "UUID", "IngredientType" and "Amount". Answers the order.
PlistDictionary placeOrder(const PlistDictionary& supplier, const PlistArray& ingredients);

/// Adds "order" with what is below it, and "orders".
void addOrderCommands(CLI::App& program);
/// Shows the order that the user means, with its lines. The store must be open.
void showOrder(const std::string& name, bool asJSON);

}  // namespace zym::host
