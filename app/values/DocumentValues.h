#pragma once

#include <string>
#include <vector>

#include "app/values/Items.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::host {

/// Sets values of a recipe from texts of the form KEY=VALUE, by key or label, or those of a batch
/// and of its recipe as brewed. Throws `UsageError`.
void setDocumentValues(Item::Kind kind, PlistDictionary& document,
                       const std::vector<std::string>& assignments);
/// Sets measurements of a batch in the same way.
void setMeasurements(PlistDictionary& batch, const std::vector<std::string>& assignments);

/// What there is to set, for the help text.
[[nodiscard]] std::string recipeValuesHelp();
[[nodiscard]] std::string batchValuesHelp();
[[nodiscard]] std::string measurementsHelp();

}  // namespace zym::host
