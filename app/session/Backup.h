#pragma once

#include <string>

namespace zym::host {

/// Writes all of a brewer's data into one file: the store as it stands, the pictures, the history
/// and the settings. Others may use the store meanwhile. The store must be open. Throws
/// `InputError`.
void backUp(const std::string& file);

/// Makes a backup the data folder, or another folder when one is named. It is checked before
/// anything is put in its place, and put there as a whole. Throws `InputError` when the folder
/// holds anything, or the backup isn't sound. The store must not be open.
void restore(const std::string& file, const std::string& folder);

}  // namespace zym::host
