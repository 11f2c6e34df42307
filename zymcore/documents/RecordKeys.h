#pragma once

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/platform/values/PlistKey.h"

/// The keys of the records of the libraries and of groups, beyond those that recipes and batches
/// share with them.
namespace zym::keys {

// Waters.
inline constexpr KeyName Town{"Town"};  // of early versions, for "Name"
inline constexpr KeyName Calcium{"Calcium"};
inline constexpr KeyName Carbonate{"Carbonate"};  // bicarbonate
inline constexpr KeyName Chloride{"Chloride"};
inline constexpr KeyName Magnesium{"Magnesium"};
inline constexpr KeyName Sodium{"Sodium"};
inline constexpr KeyName Sulfate{"Sulfate"};

// Suppliers.
inline constexpr KeyName Homepage{"Homepage"};
inline constexpr KeyName Email{"Email"};
inline constexpr KeyName Location{"Location"};
inline constexpr KeyName Phone{"Phone"};

// Equipment profiles.
inline constexpr KeyName ProfileName{"ProfileName"};
inline constexpr KeyName PreBoilVolume{"PreBoilVolume"};
inline constexpr KeyName PostBoilVolume{"PostBoilVolume"};
inline constexpr KeyName FinishedBatchVolume{"FinishedBatchVolume"};
inline constexpr KeyName PreferredRecipeType{"PreferredRecipeType"};
inline constexpr KeyName PreferredMashSchedule{"PreferredMashSchedule"};
inline constexpr KeyName PreferredBaseWaterUUID{"PreferredBaseWaterUUID"};
inline constexpr KeyName PreferredTargetWaterUUID{"PreferredTargetWaterUUID"};
inline constexpr KeyName PreferredSpargeMethod{"PreferredSpargeMethod"};
inline constexpr KeyName ExtractEfficiency{"ExtractEfficiency"};

// Styles.
inline constexpr KeyName Category{"Category"};
inline constexpr KeyName Type{"Type"};  // also of a group
inline constexpr KeyName MinOG{"MinOG"};
inline constexpr KeyName MaxOG{"MaxOG"};
inline constexpr KeyName MinFG{"MinFG"};
inline constexpr KeyName MaxFG{"MaxFG"};
inline constexpr KeyName MinIBU{"MinIBU"};
inline constexpr KeyName MaxIBU{"MaxIBU"};
inline constexpr KeyName MinColor{"MinColor"};
inline constexpr KeyName MaxColor{"MaxColor"};
inline constexpr KeyName MinABV{"MinABV"};
inline constexpr KeyName MaxABV{"MaxABV"};

// Groups.
inline constexpr KeyName GroupName{"GroupName"};
inline constexpr KeyName KeysOfContents{"KeysOfContents"};

// Rows of lists.
inline constexpr KeyName Children{"Children"};  // integer

}  // namespace zym::keys
