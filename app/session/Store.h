#pragma once

#include <string>

namespace zym::host {

/// The folder that the user chose for the store and the settings; empty for the usual ones. Before
/// anything is read.
void useDataFolder(const std::string& folder);

/// Opens the store. A new one gets the initial state, which is said in a line on standard error; an
/// older one what has come since. Throws `InputError` when there is a file that is no store, or one
/// that can't be opened.
void openStore();

/// The path of the store's file.
[[nodiscard]] std::string storePath();

/// For a command that needs the libraries and no store of the user's: opens a new one, filled, that
/// goes with the process. Settings are the user's, and stay as they are. Nothing where a store is
/// open already.
void openTemporaryStore();

}  // namespace zym::host
