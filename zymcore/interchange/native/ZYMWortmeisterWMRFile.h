#pragma once

#include <optional>

#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// Our recipe as a property list: the document with its batches under "Batches" and its pictures
/// under "Images". Such files have been written for many years, and this brings each of them to
/// the present shape. The recalculation reads user defaults. Main thread.
class ZYMWortmeisterWMRFile {
 public:
  /// The recipe of a file, upgraded and recalculated. Absent, with an error, for what is no
  /// property list or no recipe of ours, which has "Attenuation", "Notes" and "CaCl2". Throws
  /// `NSRangeException` for a recipe that names its style where there are no styles.
  [[nodiscard]] static std::optional<PlistDictionary> parseFileData(const NSData& data,
                                                                    NSError* error = nullptr);
  // Absent: such a file is a plain property list, for which nothing of this is needed.
  [[nodiscard]] static std::optional<NSData> dataForItem(const PlistDictionary& item);
  [[nodiscard]] static std::optional<NSData> dataForRecipe(const PlistDictionary& recipe);

  // The upgrades, all in place.

  /// Volumes that early versions didn't tell apart.
  static void checkVolumesForRecipe(PlistDictionary& recipe);
  /// "Actuals" from the measurements that once stood in the batch itself, which loses them, and
  /// from "ModifiedRecipe". A batch that has it stays.
  static void createActualsBlockForExistingBatch(PlistDictionary& batch);
  /// Keys once had blanks in them.
  static void removeAllSpacesInKeysInRecipe(PlistDictionary& recipe);
  /// Fills in what the batch lacks, from the recipe or with a start, puts its dates in order, and
  /// recalculates it.
  static PlistDictionary& checkAllKeysExistInBatch_ofParentRecipe(PlistDictionary& batch,
                                                                  const PlistDictionary& recipe);
  /// Before version 2 the first step was what is now no step. A schedule of any version becomes
  /// version 3.
  static void updateSchedule(PlistDictionary& schedule);
};

}  // namespace zym
