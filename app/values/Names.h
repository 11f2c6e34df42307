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

/// The position of the one that the user means: by its uuid, its name, or a beginning of its name
/// that no other has, whatever the case. Throws `InputError` for none, with the nearest names,
/// and for several, with the candidates.
[[nodiscard]] std::size_t positionMeant(const std::string& typed, std::span<const Named> candidates,
                                        std::string_view what);

}  // namespace zym::host
