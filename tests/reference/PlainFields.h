#pragma once

#include <string>

#include "tests/reference/PlainDocuments.h"
#include "zymcore/documents/BatchKeys.h"

/// Which key of a document each field of the plain structs stands for.
namespace zym::reference {

template <class Row>
struct Field {
  KeyName key;
  std::string Row::*text;
};

inline constexpr Field<PlainAllocation> allocationGiven[] = {
    {keys::Amount, &PlainAllocation::amount}, {keys::Cost, &PlainAllocation::cost}};

inline constexpr Field<PlainFermentable> fermentableGiven[] = {
    {keys::Ingredient, &PlainFermentable::name}, {keys::Amount, &PlainFermentable::amount},
    {keys::Extract, &PlainFermentable::extract}, {keys::Color, &PlainFermentable::color},
    {keys::IsGrain, &PlainFermentable::isGrain}, {keys::When, &PlainFermentable::when}};
inline constexpr Field<PlainFermentable> fermentableWritten[] = {
    {keys::MCUForAddition, &PlainFermentable::mcu},
    {keys::MCUPercentage, &PlainFermentable::mcuPercentage},
    {keys::ColorForAdditionInSRM, &PlainFermentable::srm},
    {keys::ColorForAdditionInEBC, &PlainFermentable::ebc},
    {keys::GravityPointsForAddition, &PlainFermentable::gravityPoints},
    {keys::Percentage, &PlainFermentable::percentage}};

inline constexpr Field<PlainHop> hopGiven[] = {{keys::Amount, &PlainHop::amount},
                                               {keys::Alpha, &PlainHop::alpha},
                                               {keys::Minutes, &PlainHop::minutes},
                                               {keys::When, &PlainHop::when},
                                               {keys::Form, &PlainHop::form}};
inline constexpr Field<PlainHop> hopWritten[] = {{keys::IBUForAddition, &PlainHop::ibu}};

inline constexpr Field<PlainOther> otherGiven[] = {{keys::Amount, &PlainOther::amount}};
inline constexpr Field<PlainYeast> yeastGiven[] = {{keys::Attenuation, &PlainYeast::attenuation}};
inline constexpr Field<PlainStep> stepGiven[] = {{keys::StepType, &PlainStep::type},
                                                 {keys::Temperature, &PlainStep::temperature}};

inline constexpr Field<PlainRecipe> recipeGiven[] = {
    {keys::VolumeAtPitching, &PlainRecipe::volumeAtPitching},
    {keys::VolumeToFermenter, &PlainRecipe::volumeToFermenter},
    {keys::PreBoilWortVolume, &PlainRecipe::preBoilWortVolume},
    {keys::FinalWortVolume, &PlainRecipe::finalWortVolume},
    {keys::FinalBatchVolume, &PlainRecipe::finalBatchVolume},
    {keys::MashEfficiency, &PlainRecipe::mashEfficiency},
    {keys::WortFermentability, &PlainRecipe::wortFermentability},
    {keys::SteepDuration, &PlainRecipe::steepDuration},
    {keys::SteepTemperature, &PlainRecipe::steepTemperature}};
inline constexpr Field<PlainRecipe> recipeWritten[] = {
    {keys::VolumeWaterAdded, &PlainRecipe::volumeWaterAdded},
    {keys::Attenuation, &PlainRecipe::attenuation},
    {keys::ExpectedColor, &PlainRecipe::color},
    {keys::ExpectedPreBoilGravity, &PlainRecipe::preBoilGravity},
    {keys::GravityForIBUCalcs, &PlainRecipe::gravityForIBU},
    {keys::ExpectedOriginalGravity, &PlainRecipe::og},
    {keys::ExpectedFinalGravity, &PlainRecipe::fg},
    {keys::ExpectedABV, &PlainRecipe::abv},
    {keys::ExpectedABW, &PlainRecipe::abw},
    {keys::ApparentAttenuation, &PlainRecipe::apparentAttenuation},
    {keys::ExpectedIBU, &PlainRecipe::ibu},
    {keys::Cost, &PlainRecipe::cost}};

inline constexpr Field<PlainActuals> actualsGiven[] = {
    {keys::PreBoilWortVolume, &PlainActuals::preBoilWortVolume},
    {keys::FinalWortVolume, &PlainActuals::finalWortVolume},
    {keys::PreBoilHydroReading, &PlainActuals::preBoilReading},
    {keys::OGHydroReading, &PlainActuals::ogReading},
    {keys::FGHydroReading, &PlainActuals::fgReading},
    {keys::PreBoilTemp, &PlainActuals::preBoilTemp},
    {keys::OGTemp, &PlainActuals::ogTemp},
    {keys::FGTemp, &PlainActuals::fgTemp},
    {keys::HydrometerCalibratedAt, &PlainActuals::calibratedAt},
    {keys::VolumeToFermenter, &PlainActuals::volumeToFermenter},
    {keys::VolumeAtPitching, &PlainActuals::volumeAtPitching},
    {keys::FinalBatchVolume, &PlainActuals::finalBatchVolume}};
inline constexpr Field<PlainActuals> actualsWritten[] = {
    {keys::VolumeWaterAdded, &PlainActuals::volumeWaterAdded},
    {keys::PreBoilGrav, &PlainActuals::preBoilGravity},
    {keys::OG, &PlainActuals::og},
    {keys::FG, &PlainActuals::fg},
    {keys::ActualMashEfficiency, &PlainActuals::mashEfficiency},
    {keys::Color, &PlainActuals::color},
    {keys::IBU, &PlainActuals::ibu},
    {keys::ABV, &PlainActuals::abv},
    {keys::ABW, &PlainActuals::abw},
    {keys::ApparentAttenuation, &PlainActuals::apparentAttenuation},
    {keys::RealAttenuation, &PlainActuals::realAttenuation}};

inline constexpr Field<PlainBatch> batchGiven[] = {{keys::SpargeMethod, &PlainBatch::spargeMethod},
                                                   {keys::MTThermalMass, &PlainBatch::thermalMass}};
inline constexpr Field<PlainBatch> batchWritten[] = {
    {keys::WaterGrainRatio, &PlainBatch::waterGrainRatio}, {keys::Cost, &PlainBatch::cost}};

}  // namespace zym::reference
