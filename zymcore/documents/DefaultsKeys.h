#pragma once

#include "zymcore/platform/values/PlistKey.h"

/// The keys of the user defaults that calculations and display read. The library registers no
/// values for them: what the host leaves out reads as 0.
namespace zym::keys {

inline constexpr KeyName BoilingPoint{"Boiling Point"};         // °C; below 20 counts as 100
inline constexpr KeyName HopFormula{"HopFormula"};              // position in `words::hopFormulas`
inline constexpr KeyName BeerColorFormula{"BeerColorFormula"};  // in `words::beerColorFormulas`
inline constexpr KeyName PelletHopAdjustment{"PelletHopAdjustment"};              // factors of the
inline constexpr KeyName BaggedHopAdjustment{"BaggedHopAdjustment"};              // utilisation
inline constexpr KeyName BaggedPelletHopAdjustment{"BaggedPelletHopAdjustment"};  // by hop form,
inline constexpr KeyName FirstWortHopAdjustment{"FirstWortHopAdjustment"};        // of the IBU
inline constexpr KeyName MashHopAdjustment{"MashHopAdjustment"};                  // by addition
inline constexpr KeyName HydrometerCalibrationTemp{"HydrometerCalibrationTemp"};  // °C

inline constexpr KeyName Units{"Units"};                      // 0 US, 1 British, 2 metric
inline constexpr KeyName HopUnits{"HopUnits"};                // likewise
inline constexpr KeyName GravityUnits{"GravityUnits"};        // 0 SG, 1 Plato
inline constexpr KeyName ColorUnit{"ColorUnit"};              // 0 SRM or Lovibond, 1 EBC
inline constexpr KeyName TemperatureUnit{"TemperatureUnit"};  // 0 Celsius, 1 Fahrenheit

inline constexpr KeyName UUIDForDefaultProfile{
    "UUIDForDefaultProfile"};  // the profile of new recipes

}  // namespace zym::keys
