#pragma once

#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>

#include "zymcore/platform/values/NSNotFound.h"

/// The words that documents hold. They are stored in English, also where another language is
/// shown. The order of each list is that of brewing, and additions are sorted by it.
namespace zym::words {

using Vocabulary = std::span<const std::string_view>;

/// The position of the word, else `NSNotFound`.
[[nodiscard]] constexpr std::int64_t positionOf(std::string_view word,
                                                Vocabulary vocabulary) noexcept {
  for (std::size_t i = 0; i < vocabulary.size(); ++i) {
    if (vocabulary[i] == word) return static_cast<std::int64_t>(i);
  }
  return NSNotFound;
}

// Times of addition.
inline constexpr std::string_view InMashSteeped = "In Mash/Steeped";
inline constexpr std::string_view StartOfBoil = "Start Of Boil";
inline constexpr std::string_view EndOfBoil = "End Of Boil";
inline constexpr std::string_view InMash = "In Mash";
inline constexpr std::string_view FirstWortHopped = "First Wort Hopped";
inline constexpr std::string_view AllOfBoil = "All Of Boil";
inline constexpr std::string_view AtTurnOff = "At turn off";
inline constexpr std::string_view InHopBack = "In Hop-Back";
inline constexpr std::string_view InFermenter = "In Fermenter";
inline constexpr std::string_view DryHopped = "Dry-Hopped";
inline constexpr std::string_view InBoil = "In Boil";
inline constexpr std::string_view InDispenseVessel = "In Dispense Vessel";

inline constexpr std::string_view fermentableWhen[] = {InMashSteeped, StartOfBoil, EndOfBoil};

inline constexpr std::string_view hopWhen[] = {InMash,
                                               FirstWortHopped,
                                               AllOfBoil,
                                               "90 Min From End",
                                               "80 Min From End",
                                               "70 Min From End",
                                               "60 Min From End",
                                               "55 Min From End",
                                               "50 Min From End",
                                               "45 Min From End",
                                               "40 Min From End",
                                               "35 Min From End",
                                               "30 Min From End",
                                               "25 Min From End",
                                               "20 Min From End",
                                               "15 Min From End",
                                               "10 Min From End",
                                               "5 Min From End",
                                               "1 Min From End",
                                               AtTurnOff,
                                               InHopBack,
                                               InFermenter,
                                               DryHopped};

/// How long a hop boils that is added at each of `hopWhen`; "" for as long as the wort does.
inline constexpr std::string_view hopMinutes[] = {"",   "",   "",   "90", "80", "70", "60", "55",
                                                  "50", "45", "40", "35", "30", "25", "20", "15",
                                                  "10", "5",  "1",  "0",  "0",  "0",  "0"};
static_assert(std::size(hopMinutes) == std::size(hopWhen));

inline constexpr std::string_view otherWhen[] = {InMash, InBoil, InFermenter, InDispenseVessel};

// Forms of hops. The position is the form code of the bitterness formulas.
inline constexpr std::string_view LooseWholeHops = "Loose Whole Hops";
inline constexpr std::string_view BaggedWholeHops = "Bagged Whole Hops";
inline constexpr std::string_view LoosePelletHops = "Loose Pellet Hops";
inline constexpr std::string_view BaggedPelletHops = "Bagged Pellet Hops";
inline constexpr std::string_view hopForms[] = {LooseWholeHops, BaggedWholeHops, LoosePelletHops,
                                                BaggedPelletHops};
/// Written by early versions for "Loose Pellet Hops".
inline constexpr std::string_view PelletizedHops = "Pelletized Hops";

// Types of recipe.
inline constexpr std::string_view FullMash = "Full Mash";
inline constexpr std::string_view Extract = "Extract";
inline constexpr std::string_view ExtractWithSteepedGrains = "Extract with Steeped Grains";
inline constexpr std::string_view ExtractWithMiniMash = "Extract with Mini-mash";
inline constexpr std::string_view mashTypes[] = {FullMash, Extract, ExtractWithSteepedGrains,
                                                 ExtractWithMiniMash};

// Steps of a mash.
inline constexpr std::string_view HeatToStrike = "Heat to strike and dough in";
inline constexpr std::string_view RestAt = "Rest at";
inline constexpr std::string_view RaiseByInfusion = "Raise by infusion to";
inline constexpr std::string_view PullDecoction = "Pull decoction, boil, add back raising mash to";
inline constexpr std::string_view MashOut = "Raise to and Mash out at";
inline constexpr std::string_view RaiseByDirectHeating = "Raise by direct heating to";
inline constexpr std::string_view stepTypes[] = {HeatToStrike,  RestAt,  RaiseByInfusion,
                                                 PullDecoction, MashOut, RaiseByDirectHeating};

inline constexpr std::string_view FlySparge = "Fly Sparge";
inline constexpr std::string_view BatchSparge = "Batch Sparge";
inline constexpr std::string_view NoSparge = "Brew in a Bag/No Sparge";
inline constexpr std::string_view spargeMethods[] = {FlySparge, BatchSparge, NoSparge};

inline constexpr std::string_view Low = "Low";
inline constexpr std::string_view Medium = "Medium";
inline constexpr std::string_view High = "High";
inline constexpr std::string_view wortFermentabilities[] = {Low, Medium, High};

inline constexpr std::string_view Nothing = "Nothing";
inline constexpr std::string_view KrausenedWithWort = "Krausened with Wort";
inline constexpr std::string_view PrimedWithSugar = "Primed With Sugar";
inline constexpr std::string_view PrimedWithHoney = "Primed With Honey";
inline constexpr std::string_view PrimedWithDME = "Primed With DME";
inline constexpr std::string_view ForceCarbonated = "Force Carbonated";
inline constexpr std::string_view carbonations[] = {
    Nothing, KrausenedWithWort, PrimedWithSugar, PrimedWithHoney, PrimedWithDME, ForceCarbonated};

inline constexpr std::string_view LageredFor4Weeks = "Lagered for 4 weeks";
inline constexpr std::string_view conditionings[] = {
    "Matured for 1 week",    "Matured for 2 weeks",   "Matured for 3 weeks",
    "Matured for 4 weeks",   "Matured for 6 weeks",   "Matured for 8 weeks",
    "Matured for 10 weeks",  "Matured for 12 weeks",  "Matured for 4 months",
    "Matured for 6 months",  "Matured for 8 months",  "Matured for 10 months",
    "Matured for 12 months", "Matured for 24 months", "Lagered for 1 week",
    "Lagered for 2 weeks",   "Lagered for 3 weeks",   LageredFor4Weeks,
    "Lagered for 6 weeks",   "Lagered for 8 weeks",   "Lagered for 10 weeks",
    "Lagered for 12 weeks"};

/// The name of the water that stands for no choice. Its blank sorts it before all others.
inline constexpr std::string_view NoWaterProfileChosen = " No Water Profile Chosen";

/// What a brewer takes for the mash pH is free text; but for taking nothing there is a word.
inline constexpr std::string_view Unadjusted = "Unadjusted";
inline constexpr std::string_view acids[] = {Unadjusted};

inline constexpr std::string_view Ale = "Ale";
inline constexpr std::string_view Lager = "Lager";
inline constexpr std::string_view beerTypes[] = {Ale, Lager};

inline constexpr std::string_view Liquid = "Liquid";
inline constexpr std::string_view Dry = "Dry";
inline constexpr std::string_view yeastTypes[] = {Liquid, Dry};

inline constexpr std::string_view CommercialPack = "Commercial Pack";
inline constexpr std::string_view Slurry = "Slurry";
inline constexpr std::string_view yeastAmountTypes[] = {CommercialPack, Slurry};

// Types of ingredient in stock and orders.
inline constexpr std::string_view Fermentable = "Fermentable";
inline constexpr std::string_view Hop = "Hop";
inline constexpr std::string_view Yeast = "Yeast";
inline constexpr std::string_view Other = "Other";

// Forms of the hops of a lot or an order. A lot is of pellets when its form holds the word
// "Pellet".
inline constexpr std::string_view Whole = "Whole";
inline constexpr std::string_view Pellet = "Pellet";
inline constexpr std::string_view stockForms[] = {Whole, "Pellets"};

// States of a line of an order.
inline constexpr std::string_view OnOrder = "OnOrder";
inline constexpr std::string_view Delivered = "Delivered";

// The formulas that the user defaults choose from; the position is the code.
inline constexpr std::string_view hopFormulas[] = {"Tinseth", "Daniels", "Rager", "Garetz"};
inline constexpr std::string_view beerColorFormulas[] = {"Morey", "Daniels", "Mosher", "Viggiano"};

}  // namespace zym::words
