#pragma once

#include <optional>

#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// REC, the binary recipe file of an early brewing program, in American units (`RecLayout.h`). Main
/// thread.
class ZYMRecFile {
 public:
  /// The file as a parsed recipe (`ParsedRecipeKeys.h`), matched against nothing. Nothing marks
  /// such a file: absent, with an error, only for bytes too few for what they say they hold.
  [[nodiscard]] static std::optional<PlistDictionary> parseFileData(const NSData& data,
                                                                    NSError* error = nullptr);

  /// The recipe as a file, recalculated, with the profile it has or else the default one. What
  /// others read from it isn't all that was in the recipe: docs/formats.md. Reads "Units". Never
  /// fails; a text too long for its field leaves it empty, and so does one with letters that Mac
  /// Roman lacks.
  [[nodiscard]] static NSData dataForRecipe(const PlistDictionary& recipe);
  [[nodiscard]] static NSData dataForItem(const PlistDictionary& item);
};

}  // namespace zym
