#pragma once

#include <string>

#include "zymcore/platform/values/NSError.h"

namespace zym {

/// Copies all that a data folder holds into another one. Whatever happens meanwhile, the store is
/// either missing there, and the copy is to be made again, or there with all that it needs: it
/// comes last, when everything else is on disk. What is there already stays, and what else can't be
/// copied is left out; a full disk, or a store that can't be copied, is a failure.
bool copyDataFolder(const std::string& from, const std::string& to, NSError* error);
/// Clears up after a copy that was whole but didn't end.
void removeRemainsOfCopy(const std::string& to);

}  // namespace zym
