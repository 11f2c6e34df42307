#pragma once

#include <string>

#include "app/values/LibraryKind.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::host {

/// An addition as the user asks for it. What is empty is left to the usual.
struct Addition {
  std::string amount;
  std::string when;
  std::string form;  // of hops
};

/// Adds a record of a library of ingredients to a recipe, and answers in words what was added.
/// Throws `InputError` for an unknown name, with the nearest ones, and `UsageError` for an amount
/// or a time that is none.
std::string addIngredient(PlistDictionary& recipe, const LibraryKind& kind, const std::string& name,
                          const Addition& addition);

/// Takes the addition of that name out, and answers what it was. Where there are several the user
/// gives its number in the recipe, from 1.
std::string dropIngredient(PlistDictionary& recipe, const LibraryKind& kind,
                           const std::string& name);

}  // namespace zym::host
