#pragma once

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/platform/values/PlistKey.h"

/// The keys of the values of pages, beyond those that documents and records have. Label keys, which
/// end in "Text", stand beside their texts in the tables of `internal/`.
namespace zym::keys {

// Every page.
inline constexpr KeyName FontName{"FontName"};
inline constexpr KeyName Viewport{"Viewport"};
inline constexpr KeyName ZoomFactor{"ZoomFactor"};

// Sheets of recipes and batches. Beside these, the keys of the document itself, its figures shown.
inline constexpr KeyName BeerColorInHex{"BeerColorInHex"};
inline constexpr KeyName StyleName{"StyleName"};
inline constexpr KeyName GravityUnit{"Gravity Unit"};
inline constexpr KeyName ColorUnitName{"Color Unit"};
inline constexpr KeyName BUGURatio{"BUGURatio"};
inline constexpr KeyName Formula{"Formula"};
inline constexpr KeyName ColorFormula{"ColorFormula"};
inline constexpr KeyName ActualPreBoilGravity{"ActualPreBoilGravity"};
inline constexpr KeyName ActualOriginalGravity{"ActualOriginalGravity"};
inline constexpr KeyName ActualFinalGravity{"ActualFinalGravity"};
inline constexpr KeyName ActualPreBoilWortVolume{"ActualPreBoilWortVolume"};
inline constexpr KeyName ActualFinalWortVolume{"ActualFinalWortVolume"};
inline constexpr KeyName ActualVolumeToFermenter{"ActualVolumeToFermenter"};
inline constexpr KeyName ActualVolumeAtPitching{"ActualVolumeAtPitching"};
inline constexpr KeyName ActualFinalBatchVolume{"ActualFinalBatchVolume"};
inline constexpr KeyName ActualColor{"ActualColor"};
inline constexpr KeyName ActualApparentAttenuation{"ActualApparentAttenuation"};
inline constexpr KeyName ActualABV{"ActualABV"};
inline constexpr KeyName ActualABW{"ActualABW"};
inline constexpr KeyName ActualIBU{"ActualIBU"};
inline constexpr KeyName ActualFermentationTemperature{"ActualFermentationTemperature"};

// Where the figures stand in their style (`internal/StylePlaces.h`).
inline constexpr KeyName OriginalGravityPlace{"OriginalGravityPlace"};
inline constexpr KeyName FinalGravityPlace{"FinalGravityPlace"};
inline constexpr KeyName BitternessPlace{"BitternessPlace"};
inline constexpr KeyName ColorPlace{"ColorPlace"};

// Their tables: the rows, filled in, one after the other.
inline constexpr KeyName FermentableItems{"FermentableItems"};
inline constexpr KeyName HopItems{"HopItems"};
inline constexpr KeyName OtherItems{"OtherItems"};
inline constexpr KeyName YeastItems{"YeastItems"};
inline constexpr KeyName ScheduleSteps{"ScheduleSteps"};
inline constexpr KeyName StepText{"StepText"};  // of a step: its minutes

// Instructions of a brew day.
inline constexpr KeyName PreBoilGravity{"PreBoilGravity"};
inline constexpr KeyName PreFermentationGravity{"PreFermentationGravity"};
inline constexpr KeyName FinalGravity{"FinalGravity"};
inline constexpr KeyName TotalGrain{"TotalGrain"};
inline constexpr KeyName StrikeWaterVolume{"StrikeWaterVolume"};
inline constexpr KeyName StrikeWaterTemperature{"StrikeWaterTemperature"};
inline constexpr KeyName FirstRestTemperature{"FirstRestTemperature"};
inline constexpr KeyName FirstRestTime{"FirstRestTime"};
inline constexpr KeyName WaterTreatment{"WaterTreatment"};
inline constexpr KeyName SaltAdditions{"SaltAdditions"};
inline constexpr KeyName MashFermentables{"MashFermentables"};
inline constexpr KeyName MashOthers{"MashOthers"};
inline constexpr KeyName MashPH{"MashPH"};
inline constexpr KeyName SubsequentMashSteps{"SubsequentMashSteps"};
inline constexpr KeyName BatchSpargeSteps{"BatchSpargeSteps"};
inline constexpr KeyName BatchSpargeMashFinalLine{"BatchSpargeMashFinalLine"};
inline constexpr KeyName SpargeVolume{"SpargeVolume"};
inline constexpr KeyName TotalWaterRequired{"TotalWaterRequired"};
inline constexpr KeyName AdditionalWaterText{"AdditionalWaterText"};
inline constexpr KeyName FirstWortHops{"FirstWortHops"};
inline constexpr KeyName StartOfBoilFermentables{"StartOfBoilFermentables"};
inline constexpr KeyName BoilHops{"BoilHops"};
inline constexpr KeyName BoilOthers{"BoilOthers"};
inline constexpr KeyName EndOfBoilFermentables{"EndOfBoilFermentables"};
inline constexpr KeyName BoilTime{"BoilTime"};
inline constexpr KeyName TurnOffHops{"TurnOffHops"};
inline constexpr KeyName HopbackHops{"HopbackHops"};
inline constexpr KeyName FermentationHops{"FermentationHops"};
inline constexpr KeyName FermentationOthers{"FermentationOthers"};
inline constexpr KeyName DryHops{"DryHops"};
inline constexpr KeyName Yeasts{"Yeasts"};
inline constexpr KeyName CarbonationText{"CarbonationText"};

// Stock.
inline constexpr KeyName InventoryHeading{"InventoryHeading"};
inline constexpr KeyName IntroText{"IntroText"};
inline constexpr KeyName Stock{"Stock"};

// What can be brewed: the groups, by how many ingredients are short.
inline constexpr KeyName brewToday{"brewToday"};
inline constexpr KeyName needOne{"needOne"};
inline constexpr KeyName needTwo{"needTwo"};
inline constexpr KeyName needThree{"needThree"};

}  // namespace zym::keys
