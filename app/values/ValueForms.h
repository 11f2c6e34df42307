#pragma once

#include <string>
#include <string_view>

#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/values/PlistValue.h"

/// How a stored value is shown: in the units, the number form and the language of the user. A value
/// that is absent shows as "", or as 0 where it is a plain number.
namespace zym::host::show {

[[nodiscard]] std::string text(const PlistValue* stored);
[[nodiscard]] std::string percent(const PlistValue* stored);
[[nodiscard]] std::string volume(const PlistValue* stored);
[[nodiscard]] std::string gravity(const PlistValue* stored);
[[nodiscard]] std::string beerColor(const PlistValue* stored);
[[nodiscard]] std::string maltColor(const PlistValue* stored);
[[nodiscard]] std::string temperature(const PlistValue* stored);
[[nodiscard]] std::string waterGrain(const PlistValue* stored);
[[nodiscard]] std::string number(const PlistValue* stored);
[[nodiscard]] std::string minutes(const PlistValue* stored);
[[nodiscard]] std::string grammes(const PlistValue* stored);
[[nodiscard]] std::string flag(const PlistValue* stored);
/// The name of the record with the stored uuid.
[[nodiscard]] std::string water(const PlistValue* stored);
[[nodiscard]] std::string schedule(const PlistValue* stored);

}  // namespace zym::host::show

/// What the user typed, as it is stored. All throw `UsageError` for what is no such value.
namespace zym::host::take {

[[nodiscard]] PlistValue text(const std::string& typed);
[[nodiscard]] PlistValue percent(const std::string& typed);
[[nodiscard]] PlistValue volume(const std::string& typed);
[[nodiscard]] PlistValue weight(const std::string& typed);
[[nodiscard]] PlistValue hopWeight(const std::string& typed);
[[nodiscard]] PlistValue saltWeight(const std::string& typed);
[[nodiscard]] PlistValue gravity(const std::string& typed);
[[nodiscard]] PlistValue maltColor(const std::string& typed);
[[nodiscard]] PlistValue temperature(const std::string& typed);
[[nodiscard]] PlistValue waterGrain(const std::string& typed);
[[nodiscard]] PlistValue number(const std::string& typed);
/// A number of 0 or more, as a whole one.
[[nodiscard]] PlistValue minutes(const std::string& typed);
[[nodiscard]] PlistValue flag(const std::string& typed);
/// A day: 2026-03-01, or as the user's locale writes it.
[[nodiscard]] PlistValue day(const std::string& typed);
/// The uuid of the record with the typed name.
[[nodiscard]] PlistValue water(const std::string& typed);
[[nodiscard]] PlistValue schedule(const std::string& typed);

/// A word of the vocabulary, or a beginning of one that no other has, whatever the case.
[[nodiscard]] std::string_view wordOf(words::Vocabulary vocabulary, const std::string& typed);
template <const auto& vocabulary>
[[nodiscard]] PlistValue word(const std::string& typed) {
  return wordOf(vocabulary, typed);
}

}  // namespace zym::host::take
