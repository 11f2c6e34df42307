#pragma once

#include <string>

namespace zym {

/// What the brewer is to be told of a change that the stock made to the recipe.
struct ZYMAvailabilitiesAdvisory {
  std::string title;
  std::string message;

  [[nodiscard]] static ZYMAvailabilitiesAdvisory advisoryWithTitle_message(std::string title,
                                                                           std::string message) {
    return {std::move(title), std::move(message)};
  }

  friend bool operator==(const ZYMAvailabilitiesAdvisory&,
                         const ZYMAvailabilitiesAdvisory&) = default;
};

}  // namespace zym
