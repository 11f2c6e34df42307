#pragma once

#include <string>
#include <vector>

namespace zym::host {

/// Registers an initial value for every user default that the library leaves to its host.
void registerInitialDefaults();

/// Takes the initial value for this run where the kept one is none that its key can have, and says
/// so on standard error.
void passOverImpossibleDefaults();

/// Sets user defaults for this run from texts of the form KEY=VALUE, "Locale=de_DE" among them.
/// Throws `UsageError` for an unknown key or a value that the key can't have.
void setDefaultsForThisRun(const std::vector<std::string>& assignments);

/// Keeps a user default for all later runs. Throws `UsageError` as above.
void keepDefault(const std::string& key, const std::string& value);

/// Makes the locale that was kept the current one.
void useKeptLocale();

/// All user defaults with their values in words, a line each.
[[nodiscard]] std::string settingsInForce();

/// The keys, what they mean and their initial values, for the help text.
[[nodiscard]] std::string defaultsHelp();

}  // namespace zym::host
