#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace zym::host {

/// What can be called by its name or its uuid.
struct Named {
  std::string_view name;
  std::string_view uuid;
};

/// Whether the text has the form of a uuid, so that it can be looked up without a list.
[[nodiscard]] bool isUUID(std::string_view text);

/// The text in capitals, with the signs that look alike made one: ˚ and º are °, curly apostrophes
/// straight, dashes hyphens, a blank that doesn't break a blank.
[[nodiscard]] std::string folded(std::string_view text);

/// The position of the one that the user means: by its uuid, its name, a beginning of its name, or
/// words of it that no other has, whatever the case and the look of signs. Throws `InputError` for
/// none, with the nearest names, and for several, with the candidates.
[[nodiscard]] std::size_t positionMeant(const std::string& typed, std::span<const Named> candidates,
                                        std::string_view what);

}  // namespace zym::host
