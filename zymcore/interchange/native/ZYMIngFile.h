#pragma once

#include <cstddef>
#include <optional>

#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// An ingredient package: records of one library, from one brewer to another, as JSON. Main thread.
class ZYMIngFile {
 public:
  /// A package of records, whose kind the first tells: it has "IsGrain", "Alpha", "Attenuation" or
  /// none of them. All go in under that kind. Empty for no records.
  [[nodiscard]] static PlistDictionary packageIngredients(const PlistArray& records);
  /// Brings the records of a package into the library of its kind, new or in place of those there,
  /// with the present time as their date, and saves. Nothing for a kind that there isn't. Answers
  /// how many records were meant for a library.
  static std::size_t installIngredients(const PlistDictionary& package);
  /// How many records of the package are meant for a library; 0 for a kind that there isn't.
  [[nodiscard]] static std::size_t countOfIngredients(const PlistDictionary& package);

  /// Absent, with an error, for what is no JSON or no dictionary.
  [[nodiscard]] static std::optional<PlistDictionary> parseFileData(const NSData& data,
                                                                    NSError* error = nullptr);
  /// Absent for records that JSON can't hold.
  [[nodiscard]] static std::optional<NSData> dataForItem(const PlistDictionary& package);
};

}  // namespace zym
