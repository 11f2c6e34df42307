#pragma once

#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/platform/values/PlistKey.h"

/// The keys of a `BatchDocument`, beyond those that it shares with a recipe. Stored as those are.
namespace zym::keys {

inline constexpr KeyName BatchTitle{"BatchTitle"};
inline constexpr KeyName ModifiedRecipe{"ModifiedRecipe"};      // recipe as brewed
inline constexpr KeyName OriginalRecipe{"OriginalRecipe"};      // recipe when the batch was made
inline constexpr KeyName RecipeAtCreation{"RecipeAtCreation"};  // only in old documents
inline constexpr KeyName Actuals{"Actuals"};                    // dictionary of measurements
inline constexpr KeyName DateBrewed{"DateBrewed"};              // dates
inline constexpr KeyName DateRacked{"DateRacked"};
inline constexpr KeyName DatePackaged{"DatePackaged"};
inline constexpr KeyName DateReady{"DateReady"};
inline constexpr KeyName BatchNotes{"BatchNotes"};
inline constexpr KeyName BoilNotes{"BoilNotes"};
inline constexpr KeyName FermentationNotes{"FermentationNotes"};
inline constexpr KeyName PackagingNotes{"PackagingNotes"};
inline constexpr KeyName TastingNotes{"TastingNotes"};
inline constexpr KeyName WaterGrainRatio{"WaterGrainRatio"};  // l/kg
inline constexpr KeyName MTThermalMass{"MTThermalMass"};      // g of water of the same heat
inline constexpr KeyName SpargeMethod{"SpargeMethod"};
inline constexpr KeyName RoomTemperature{"RoomTemperature"};
inline constexpr KeyName AdjustedInventory{"AdjustedInventory"};

// "Actuals". The volumes, "FermentationTemperature" and "ApparentAttenuation" are named as in a
// recipe.
inline constexpr KeyName PreBoilHydroReading{"PreBoilHydroReading"};  // SG as read
inline constexpr KeyName OGHydroReading{"OGHydroReading"};
inline constexpr KeyName FGHydroReading{"FGHydroReading"};
inline constexpr KeyName PreBoilTemp{"PreBoilTemp"};  // °C of the sample
inline constexpr KeyName OGTemp{"OGTemp"};
inline constexpr KeyName FGTemp{"FGTemp"};
inline constexpr KeyName HydrometerCalibratedAt{"HydrometerCalibratedAt"};
inline constexpr KeyName PreBoilGrav{"PreBoilGrav"};  // SG corrected
inline constexpr KeyName OG{"OG"};
inline constexpr KeyName FG{"FG"};
inline constexpr KeyName RealAttenuation{"RealAttenuation"};
inline constexpr KeyName ActualMashEfficiency{"ActualMashEfficiency"};
inline constexpr KeyName ABV{"ABV"};
inline constexpr KeyName ABW{"ABW"};
inline constexpr KeyName IBU{"IBU"};

}  // namespace zym::keys
