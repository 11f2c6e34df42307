#pragma once

#include <optional>

#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// BeerXML 1.0, the exchange format of brewing programs. Main thread.
class ZYMBeerXML {
 public:
  /// The first recipe of a file as a parsed recipe (`ParsedRecipeKeys.h`), matched against nothing.
  /// Imperfect XML is read as far as it goes. Absent when the bytes are no document (or a larger
  /// one than `NSXMLDocument` takes), there is no RECIPE in RECIPES, it lacks one of NAME, TYPE,
  /// BATCH_SIZE, BOIL_SIZE, YEASTS and FERMENTABLES, or its first WATER lacks one of CALCIUM,
  /// SULFATE, CHLORIDE, MAGNESIUM and SODIUM; the error then names the first of these that is
  /// missing, and where the XML is damaged. Ingredients and mash steps that lack what they need are
  /// left out.
  [[nodiscard]] static std::optional<PlistDictionary> parseFileData(const NSData& data,
                                                                    NSError* error = nullptr);

  /// The recipe as a file, recalculated, with the profile it has or else the default one. What the
  /// format has no place for, and what this writer leaves out, is in docs/formats.md. The text is
  /// ASCII and well formed whatever the recipe holds: other letters become the nearest, characters
  /// that XML doesn't allow are left out. Never fails.
  [[nodiscard]] static NSData dataForRecipe(const PlistDictionary& recipe);
  [[nodiscard]] static NSData dataForItem(const PlistDictionary& item);
};

}  // namespace zym
