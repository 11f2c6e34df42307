#pragma once

#include <string>

#include "app/terminal/Sheet.h"
#include "app/terminal/Table.h"
#include "zymcore/documents/ZYMSummary.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym::host {

/// Prints the tree as JSON and nothing else. Throws `InputError` for one that has no JSON form.
void printJSON(const PlistValue& tree);
void printTable(const Table& table);
/// A sheet on standard output, set off by more than place on a terminal.
[[nodiscard]] Sheet sheetOnOutput();

/// Whether the user agrees; true where nobody can be asked.
[[nodiscard]] bool isConfirmed(const std::string& question);

}  // namespace zym::host
