#pragma once

#include "zymcore/library/ZYMFlatLibrary.h"

namespace zym {

/// The equipment profiles of the brewer, and what goes between a profile and a recipe. A recipe
/// holds a copy of its profile, so changes here don't reach the recipes there are.
class ZYMProfiles final : public ZYMFlatLibrary {
 public:
  [[nodiscard]] static ZYMProfiles& sharedInstance();

  void prepareNewItem(PlistDictionary& item) override;
  /// A profile whose "BoilDuration" or "ExtractEfficiency" is no text is repaired, in the store as
  /// well.
  [[nodiscard]] std::optional<PlistDictionary> itemWithUUID(std::string_view uuid) override;

  /// The profile that the user default "UUIDForDefaultProfile" names. Where there is none the first
  /// by name becomes the default, and in an empty library a new one.
  PlistDictionary defaultProfile();

  /// Gives a recipe the profile and all that it prefers; nothing is recalculated or stored. Throws
  /// `NSRangeException` when there is no water.
  static void updateRecipe_withProfile(PlistDictionary& recipe, const PlistDictionary& profile);
  /// Takes the volumes and preferences of a recipe into a profile; of the waters only the base
  /// water, unless the recipe names its target as a profile does.
  static void updateProfile_withRecipe(PlistDictionary& profile, const PlistDictionary& recipe);

  /// The same profile with volumes that differ by less than 49 ml each.
  [[nodiscard]] static bool isProfile_similarToProfile(const PlistDictionary& profile,
                                                       const PlistDictionary& other);
  [[nodiscard]] static bool volumeSimilarForKey_inProfile_toProfile(KeyName key,
                                                                    const PlistDictionary& profile,
                                                                    const PlistDictionary& other);

  /// A new profile that isn't stored. Throws `NSRangeException` when there is no water.
  [[nodiscard]] static PlistDictionary tempProfile();

 private:
  ZYMProfiles();
};

}  // namespace zym
