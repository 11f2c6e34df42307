#pragma once

#include <concepts>
#include <optional>

#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// What a file format offers, each as a static member: its bytes read into a dictionary, absent
/// with an error where they are none, and a dictionary as such bytes, absent where the format is
/// only read.
template <class Format>
concept ZYMFileImporterProtocol = requires(const NSData& data, NSError* error,
                                           const PlistDictionary& item) {
  { Format::parseFileData(data, error) } -> std::same_as<std::optional<PlistDictionary>>;
  { Format::dataForItem(item) } -> std::convertible_to<std::optional<NSData>>;
};

/// The same for a format of recipes.
template <class Format>
concept ZYMRecipeFormat = ZYMFileImporterProtocol<Format> &&
    requires(const PlistDictionary& recipe) {
  { Format::dataForRecipe(recipe) } -> std::convertible_to<std::optional<NSData>>;
};

}  // namespace zym
