#pragma once

#include <string>
#include <vector>

#include "zymcore/platform/values/PlistDictionary.h"

namespace CLI {
class App;
}

namespace zym::host {

struct LibraryKind;

/// Adds "list" and "profile".
void addLibraryCommands(CLI::App& program);

// What the commands for all kinds of record do with those of a library. The store must be open.
// `name` as in `recordNamed`, assignments as in `setValues`.

void showRecord(const LibraryKind& kind, const std::string& name, bool asJSON);
/// Nothing is stored when an assignment is wrong.
PlistDictionary createRecord(const LibraryKind& kind, const std::string& name,
                             const std::vector<std::string>& assignments);
PlistDictionary editRecord(const LibraryKind& kind, const std::string& name,
                           const std::vector<std::string>& assignments);
PlistDictionary copyRecord(const LibraryKind& kind, const std::string& name);
/// Asks first on a terminal, unless forced.
void removeRecord(const LibraryKind& kind, const std::string& name, bool isForced);

}  // namespace zym::host
