#pragma once

#include <string_view>

#include "zymcore/platform/values/PlistKey.h"

/// The keys of a parsed recipe, the flat dictionary that the readers of other programs' files
/// answer, beyond those that it shares with a recipe (`RecipeKeys.h`). All values are texts as the
/// file spells them, or "%f" where they were converted to grams or millilitres, but for the arrays.
namespace zym::parsedKeys {

// The recipe.
inline constexpr KeyName TYPE{"TYPE"};          // also of an ingredient, a step
inline constexpr KeyName AGE{"AGE"};            // days
inline constexpr KeyName AGE_TEMP{"AGE_TEMP"};  // °C
inline constexpr KeyName FORCED_CARBONATION{
    "FORCED_CARBONATION"};  // there or not, whatever it says
inline constexpr KeyName PRIMING_SUGAR_NAME{"PRIMING_SUGAR_NAME"};
inline constexpr KeyName STYLENAME{"STYLENAME"};  // or `noStyle`
inline constexpr KeyName MASHNAME{"MASHNAME"};

// Its water, mg/l.
inline constexpr KeyName CALCIUM{"CALCIUM"};
inline constexpr KeyName BICARBONATE{"BICARBONATE"};
inline constexpr KeyName SULFATE{"SULFATE"};
inline constexpr KeyName CHLORIDE{"CHLORIDE"};
inline constexpr KeyName SODIUM{"SODIUM"};
inline constexpr KeyName MAGNESIUM{"MAGNESIUM"};

// Its additions and steps: arrays of dictionaries. The yeasts are under "YeastIngredients".
inline constexpr KeyName FERMENTABLES{"FERMENTABLES"};
inline constexpr KeyName HOPS{"HOPS"};
inline constexpr KeyName MISCS{"MISCS"};
inline constexpr KeyName MASHSTEPS{"MASHSTEPS"};

// A fermentable, a hop or another ingredient.
inline constexpr KeyName NAME{"NAME"};      // also of a step
inline constexpr KeyName AMOUNT{"AMOUNT"};  // grams
inline constexpr KeyName ORIGIN{"ORIGIN"};
inline constexpr KeyName YIELD{"YIELD"};  // percent
inline constexpr KeyName COLOR{"COLOR"};  // degrees Lovibond
inline constexpr KeyName ADD_AFTER_BOIL{"ADD_AFTER_BOIL"};
inline constexpr KeyName MOISTURE{"MOISTURE"};  // percent
inline constexpr KeyName ALPHA{"ALPHA"};        // percent
inline constexpr KeyName USE{"USE"};
inline constexpr KeyName TIME{"TIME"};  // minutes
inline constexpr KeyName FORM{"FORM"};
inline constexpr KeyName AMOUNT_IS_WEIGHT{"AMOUNT IS WEIGHT"};
inline constexpr KeyName WORTMEISTER_FORM{"WORTMEISTER_FORM"};
inline constexpr KeyName WORTMEISTER_UUID{"WORTMEISTER_UUID"};

// A yeast.
inline constexpr KeyName YEAST_NAME{"YEAST NAME"};
inline constexpr KeyName YEAST_TYPE{"YEAST TYPE"};
inline constexpr KeyName YEAST_FORM{"YEAST FORM"};

// A mash step.
inline constexpr KeyName STEP_TEMP{"STEP_TEMP"};  // °C
inline constexpr KeyName STEP_TIME{"STEP_TIME"};  // minutes

/// The style of a file that names none. No style is called so, with its leading blank.
inline constexpr std::string_view noStyle = " No Style Chosen";

}  // namespace zym::parsedKeys
