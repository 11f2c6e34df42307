#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/documents/SimilarNames.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// The user default that says which guidelines the user prefers.
inline constexpr KeyName ZYMPreferredStyleGuidelinesKey{"PreferredStyleGuidelines"};

/// The styles of beer, from two sets of guidelines that are resources of the host: number 0 is BJCP
/// 2008, any other BJCP 2015. A set that can't be read is as one without styles, and is tried again
/// at the next call. Main thread.
class ZYMStyles {
 public:
  [[nodiscard]] static ZYMStyles& sharedInstance();
  /// Forgets the sets that were read.
  static void tearDown();

  /// The user's choice; 1 where there is none, or one from 2 up.
  [[nodiscard]] static std::int64_t userPreferredStyleGuidelines();
  [[nodiscard]] static std::string titleForStyleGuidelines(std::int64_t guidelines);
  [[nodiscard]] static std::vector<std::string> allTitlesForStyleGuidelines();
  /// The category and the name; the name alone without a category.
  [[nodiscard]] static std::string fullNameForStyle(const PlistDictionary& style);
  /// The style that stands for no choice.
  [[nodiscard]] static PlistDictionary noChosenStyle();

  void loadIfNecessaryForGuidelines(std::int64_t guidelines);
  /// The first in the order of the file; absent when there is none.
  [[nodiscard]] std::optional<PlistDictionary> styleWithName_inGuidelines(std::string_view name,
                                                                          std::int64_t guidelines);
  [[nodiscard]] std::optional<PlistDictionary> styleWithUUID_inGuidelines(std::string_view uuid,
                                                                          std::int64_t guidelines);
  /// By the number of the category, what follows it, and the name.
  [[nodiscard]] PlistArray allStylesInGuidelines(std::int64_t guidelines);
  [[nodiscard]] std::vector<std::string> allStyleNamesInGuidelines(std::int64_t guidelines);
  /// Absent without guidelines; throws `NSRangeException` when they have no style with a score.
  [[nodiscard]] std::optional<PlistDictionary> styleWithNameMostSimilarToString_inGuidelines(
      std::string_view text, std::int64_t guidelines);
  /// As of every library (`ZYMCachingModel`).
  [[nodiscard]] static std::int64_t indexOfMostSimilarObjectToString_inArray_forKey(
      std::string_view text, const PlistArray* array, const std::optional<KeyName>& key);

 private:
  struct Guidelines {
    PlistArray styles;
    SimilarNames names;
  };

  ZYMStyles() = default;
  [[nodiscard]] const PlistArray* stylesIn(std::int64_t guidelines);
  [[nodiscard]] std::optional<PlistDictionary> firstStyleWith(KeyName key, std::string_view text,
                                                              std::int64_t guidelines);

  std::array<std::optional<Guidelines>, 2> data_;
};

}  // namespace zym
