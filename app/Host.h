#pragma once

namespace zym::host {

/// Makes the library this program's: its resources and the initial values of the user defaults.
void setUpLibrary();

}  // namespace zym::host
