#pragma once

#include <array>

#include "zymcore/platform/values/PlistKey.h"

/// The keys of a `RecipeDocument`. Quantities are decimal text with a point (`doubleValue`),
/// booleans the texts "1" and "0" (`boolFromString`). Grams, millilitres, °C, minutes, specific
/// gravity, SRM for beer and degrees Lovibond for malt, percent from 0 to 100.
namespace zym::keys {

// Identity.
inline constexpr KeyName UUID{"UUID"};
inline constexpr KeyName DateLastModified{"DateLastModified"};  // date
inline constexpr KeyName Description{"Description"};

// The recipe.
inline constexpr KeyName RecipeTitle{"RecipeTitle"};
inline constexpr KeyName StyleUUID{"StyleUUID"};
inline constexpr KeyName StyleGuidelinesSource{"StyleGuidelinesSource"};  // integer or its text
inline constexpr KeyName Profile{"Profile"};                              // dictionary
inline constexpr KeyName MashType{"MashType"};
inline constexpr KeyName MashEfficiency{"MashEfficiency"};
inline constexpr KeyName BoilDuration{"BoilDuration"};  // whole minutes
inline constexpr KeyName WortFermentability{"WortFermentability"};
inline constexpr KeyName MashSchedule{"MashSchedule"};  // dictionary
inline constexpr KeyName MashpH{"MashpH"};
inline constexpr KeyName Acid{"Acid"};
inline constexpr KeyName FermentationTemperature{"FermentationTemperature"};
inline constexpr KeyName Carbonation{"Carbonation"};
inline constexpr KeyName CarbonationVolumes{"CarbonationVolumes"};  // volumes of CO2
inline constexpr KeyName Conditioning{"Conditioning"};
inline constexpr KeyName Notes{"Notes"};
inline constexpr KeyName SteepTemperature{"SteepTemperature"};
inline constexpr KeyName SteepDuration{"SteepDuration"};

// Its volumes, ml.
inline constexpr KeyName PreBoilWortVolume{"PreBoilWortVolume"};
inline constexpr KeyName FinalWortVolume{"FinalWortVolume"};  // after the boil
inline constexpr KeyName VolumeToFermenter{"VolumeToFermenter"};
inline constexpr KeyName VolumeWaterAdded{"VolumeWaterAdded"};  // in the fermenter
inline constexpr KeyName VolumeAtPitching{"VolumeAtPitching"};
inline constexpr KeyName FinalBatchVolume{"FinalBatchVolume"};

// What is predicted of it.
inline constexpr KeyName ExpectedPreBoilGravity{"ExpectedPreBoilGravity"};
inline constexpr KeyName ExpectedOriginalGravity{"ExpectedOriginalGravity"};
inline constexpr KeyName ExpectedFinalGravity{"ExpectedFinalGravity"};
inline constexpr KeyName GravityForIBUCalcs{"GravityForIBUCalcs"};
inline constexpr KeyName ExpectedABV{"ExpectedABV"};
inline constexpr KeyName ExpectedABW{"ExpectedABW"};
inline constexpr KeyName ExpectedColor{"ExpectedColor"};
inline constexpr KeyName ExpectedIBU{"ExpectedIBU"};
inline constexpr KeyName Attenuation{"Attenuation"};  // also of a yeast
inline constexpr KeyName ApparentAttenuation{"ApparentAttenuation"};

// Its water.
inline constexpr KeyName TargetWaterProfileUsedUUID{"TargetWaterProfileUsedUUID"};
inline constexpr KeyName BaseWaterProfileUsedUUID{"BaseWaterProfileUsedUUID"};
inline constexpr KeyName WaterProfileUsed{"WaterProfileUsed"};  // name of the target
inline constexpr KeyName MgSO4{"MgSO4"};                        // salts: grams per ml of water
inline constexpr KeyName CaCO3{"CaCO3"};
inline constexpr KeyName CaSO4{"CaSO4"};
inline constexpr KeyName NaCl{"NaCl"};
inline constexpr KeyName CaCl2{"CaCl2"};
inline constexpr KeyName NaHCO3{"NaHCO3"};
inline constexpr KeyName MgSO4InGrammes{"MgSO4InGrammes"};
inline constexpr KeyName CaCO3InGrammes{"CaCO3InGrammes"};
inline constexpr KeyName CaSO4InGrammes{"CaSO4InGrammes"};
inline constexpr KeyName NaClInGrammes{"NaClInGrammes"};
inline constexpr KeyName CaCl2InGrammes{"CaCl2InGrammes"};
inline constexpr KeyName NaHCO3InGrammes{"NaHCO3InGrammes"};
struct SaltKeys {
  KeyName concentration, weight;
};
inline constexpr SaltKeys salts[] = {{MgSO4, MgSO4InGrammes}, {CaCO3, CaCO3InGrammes},
                                     {CaSO4, CaSO4InGrammes}, {NaCl, NaClInGrammes},
                                     {CaCl2, CaCl2InGrammes}, {NaHCO3, NaHCO3InGrammes}};

// Its additions: arrays of dictionaries.
inline constexpr KeyName FermentableIngredients{"FermentableIngredients"};
inline constexpr KeyName HopIngredients{"HopIngredients"};
inline constexpr KeyName OtherIngredients{"OtherIngredients"};
inline constexpr KeyName YeastIngredients{"YeastIngredients"};
inline constexpr std::array<KeyName, 4> additions = {FermentableIngredients, HopIngredients,
                                                     OtherIngredients, YeastIngredients};

// Any addition.
inline constexpr KeyName Ingredient{"Ingredient"};  // name of a fermentable or other addition
inline constexpr KeyName Amount{"Amount"};          // grams; packs or ml of yeast
inline constexpr KeyName When{"When"};
inline constexpr KeyName Batches{"Batches"};  // array of inventory allocations
inline constexpr KeyName IngredientDeducted{"IngredientDeducted"};
inline constexpr KeyName Cost{"Cost"};  // of an allocation: for one unit of "Amount"

// A fermentable addition.
inline constexpr KeyName Extract{"Extract"};  // yield, percent of the weight
inline constexpr KeyName Color{"Color"};      // degrees Lovibond; above 1000 a colouring
inline constexpr KeyName Moisture{"Moisture"};
inline constexpr KeyName IsGrain{"IsGrain"};
inline constexpr KeyName MustBeMashed{"MustBeMashed"};
inline constexpr KeyName Percentage{"Percentage"};
inline constexpr KeyName MCUForAddition{"MCUForAddition"};
inline constexpr KeyName MCUPercentage{"MCUPercentage"};
inline constexpr KeyName ColorForAdditionInSRM{"ColorForAdditionInSRM"};
inline constexpr KeyName ColorForAdditionInEBC{"ColorForAdditionInEBC"};
inline constexpr KeyName GravityPointsForAddition{"GravityPointsForAddition"};

// A hop addition.
inline constexpr KeyName Variety{"Variety"};
inline constexpr KeyName Alpha{"Alpha"};
inline constexpr KeyName Form{"Form"};
inline constexpr KeyName Minutes{"Minutes"};
inline constexpr KeyName IBUForAddition{"IBUForAddition"};

// A yeast addition.
inline constexpr KeyName Name{"Name"};
inline constexpr KeyName BeerType{"BeerType"};
inline constexpr KeyName YeastType{"YeastType"};
inline constexpr KeyName YeastAmountType{"YeastAmountType"};
inline constexpr KeyName UsageNote{"UsageNote"};

// A mash schedule and its steps.
inline constexpr KeyName ScheduleName{"ScheduleName"};
inline constexpr KeyName Version{"Version"};
inline constexpr KeyName Steps{"Steps"};  // array of dictionaries
inline constexpr KeyName StepType{"StepType"};
inline constexpr KeyName Temperature{"Temperature"};
inline constexpr KeyName Duration{"Duration"};

// Of early versions: names, where there are uuids and additions now.
inline constexpr KeyName Style{"Style"};
inline constexpr KeyName Yeast{"Yeast"};
inline constexpr KeyName YeastAmount{"YeastAmount"};

// Of an addition while it is sorted; sorting leaves none behind.
inline constexpr KeyName Amount2{"Amount2"};
inline constexpr KeyName WhenIndex{"WhenIndex"};

// Beside the recipe where it travels in a file.
inline constexpr KeyName Images{"Images"};

}  // namespace zym::keys
