#pragma once

#include <string>
#include <vector>

#include "zymcore/documents/ZYMSummary.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::host {

/// A recipe or a batch that the store holds.
struct Item {
  enum class Kind { Recipe, Batch };

  Kind kind;
  std::string name;
  std::string uuid;
};

// What the user means by a name, as in `positionMeant`. The store must be open.

[[nodiscard]] Item itemNamed(const std::string& name);
[[nodiscard]] Item recipeNamed(const std::string& name);
[[nodiscard]] Item batchNamed(const std::string& name);
[[nodiscard]] ZYMSummary groupNamed(const std::string& name);

/// The document, recalculated. Throws `InputError` when it can't be read.
[[nodiscard]] PlistDictionary documentOf(const Item& item);
/// Stores a document that was changed, recalculated, and puts it into the history.
void storeDocument(const Item& item, PlistDictionary& document);
/// What a recipe makes, or the recipe of a batch as brewed, before and after a change: one line.
[[nodiscard]] std::string changeOf(const Item& item, const PlistDictionary& before,
                                   const PlistDictionary& after);
/// Puts an item into the history.
void remember(const Item& item, const PlistDictionary& document);

/// The rows of a list as JSON has them: "Name", "UUID" and "Children".
[[nodiscard]] PlistArray recordsOf(const std::vector<ZYMSummary>& rows);

}  // namespace zym::host
