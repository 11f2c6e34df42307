#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym::lots {

[[nodiscard]] inline bool isDeducted(const PlistDictionary& ingredient) noexcept {
  return ingredient.boolValue(keys::IngredientDeducted);
}

/// The item of the ingredient in a working inventory, or null.
[[nodiscard]] inline const PlistDictionary* itemOf(const PlistDictionary& ingredient,
                                                   const PlistDictionary& inventory) noexcept {
  const std::string* uuid = ingredient.string(keys::UUID);
  return uuid ? inventory.dictionary(KeyName(*uuid)) : nullptr;
}
[[nodiscard]] inline PlistDictionary* editItemOf(const PlistDictionary& ingredient,
                                                 PlistDictionary& inventory) {
  const std::string* uuid = ingredient.string(keys::UUID);
  return uuid ? inventory.editDictionary(KeyName(*uuid)) : nullptr;
}

/// The lots, last first: what expires first goes first.
[[nodiscard]] inline std::vector<PlistDictionary*> soonestFirst(PlistDictionary& ingredient) {
  std::vector<PlistDictionary*> rows;
  for (PlistDictionary& lot : ingredient.editRows(keys::Batches)) rows.push_back(&lot);
  return {rows.rbegin(), rows.rend()};
}

enum class Least { zero, none };
/// Takes from the lots of the item what the addition takes of each, by position.
void take(PlistDictionary& item, const PlistArray& taken, Least least);

/// Whether both hold the same lots, position by position.
[[nodiscard]] bool areSame(const PlistArray& taken, const PlistArray& inStock);

}  // namespace zym::lots
