#pragma once

#include <string>
#include <string_view>

#include "app/terminal/Words.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::host {

// What a document says under a key, as the user reads it: in the units, the number form and the
// language of the user. What is missing, or of a kind that has no number, reads as 0.

[[nodiscard]] std::string gravityAt(const PlistDictionary& document, KeyName key);
[[nodiscard]] std::string volumeAt(const PlistDictionary& document, KeyName key);
[[nodiscard]] std::string weightAt(const PlistDictionary& document, KeyName key);
[[nodiscard]] std::string hopWeightAt(const PlistDictionary& document, KeyName key);
[[nodiscard]] std::string saltWeightAt(const PlistDictionary& document, KeyName key);
[[nodiscard]] std::string beerColorAt(const PlistDictionary& document, KeyName key);
[[nodiscard]] std::string maltColorAt(const PlistDictionary& document, KeyName key);
[[nodiscard]] std::string temperatureAt(const PlistDictionary& document, KeyName key);
[[nodiscard]] std::string waterGrainAt(const PlistDictionary& document, KeyName key);
[[nodiscard]] std::string percentAt(const PlistDictionary& document, KeyName key);
[[nodiscard]] std::string bitternessAt(const PlistDictionary& document, KeyName key);
[[nodiscard]] std::string minutesAt(const PlistDictionary& document, KeyName key);
/// Packs or a volume of slurry, whichever the yeast is measured in.
[[nodiscard]] std::string yeastAmount(const PlistDictionary& yeast);
/// Empty when there is none.
[[nodiscard]] std::string dayAt(const PlistDictionary& document, KeyName key);

[[nodiscard]] std::string percent(double number);

/// The text on one line, at most a column wide.
[[nodiscard]] std::string nameAt(const PlistDictionary& document, KeyName key);
/// A title for a sheet, also where the document has none.
[[nodiscard]] std::string titleAt(const PlistDictionary& document, KeyName key);
/// The text on one line, whatever its length.
[[nodiscard]] std::string textAt(const PlistDictionary& document, KeyName key);
/// A word of a vocabulary, in the user's language.
[[nodiscard]] std::string wordAt(const PlistDictionary& document, KeyName key);

}  // namespace zym::host
