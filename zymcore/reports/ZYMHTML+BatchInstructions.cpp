#include <algorithm>
#include <iterator>

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/text/NSLocale.h"
#include "zymcore/platform/text/NSNumberFormatter.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/ZYMHTML.h"
#include "zymcore/reports/internal/AdditionList.h"
#include "zymcore/reports/internal/Carbonation.h"
#include "zymcore/reports/internal/InstructionLabels.h"
#include "zymcore/reports/internal/Mash.h"
#include "zymcore/reports/internal/PageFigures.h"
#include "zymcore/reports/internal/PageTexts.h"
#include "zymcore/reports/internal/Sentences.h"
#include "zymcore/reports/internal/SheetRows.h"
#include "zymcore/reports/internal/Template.h"
#include "zymcore/transformers/ZYMGravityValueTransformer.h"
#include "zymcore/transformers/ZYMSaltWeightValueTransformer.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"
#include "zymcore/transformers/ZYMVolumeValueTransformer.h"
#include "zymcore/transformers/ZYMWeightValueTransformer.h"

namespace zym {
namespace {

using namespace pages;

struct Salt {
  std::string_view text;
  KeyName weight;
};
constexpr Salt salts[] = {
    {"%@ of gypsum.", keys::CaSO4InGrammes},           {"%@ of epsom salts.", keys::MgSO4InGrammes},
    {"%@ of baking soda.", keys::NaHCO3InGrammes},     {"%@ of table salt.", keys::NaClInGrammes},
    {"%@ of calcium chloride.", keys::CaCl2InGrammes}, {"%@ of chalk.", keys::CaCO3InGrammes},
};

struct TimedList {
  std::string_view title;
  KeyName key;
  KeyName additions;
  std::string_view when;
};
constexpr TimedList timedLists[] = {
    {"As the wort is coming to boil, add the following 'first wort hops'.", keys::FirstWortHops,
     keys::HopIngredients, words::FirstWortHopped},
    {"When the wort is at the boil add the following fermentable ingredients (stirring to avoid "
     "scorching).",
     keys::StartOfBoilFermentables, keys::FermentableIngredients, words::StartOfBoil},
    {"Also add the following during the boil.", keys::BoilOthers, keys::OtherIngredients,
     words::InBoil},
    {"Towards the end of the boil add the following fermentable ingredients (stirring to avoid "
     "scorching).",
     keys::EndOfBoilFermentables, keys::FermentableIngredients, words::EndOfBoil},
    {"At 'turn off' add the following hops.", keys::TurnOffHops, keys::HopIngredients,
     words::AtTurnOff},
    {"Drain the hot wort into your hopback containing.", keys::HopbackHops, keys::HopIngredients,
     words::InHopBack},
    {"In your fermenter place the following hops.", keys::FermentationHops, keys::HopIngredients,
     words::InFermenter},
    {"Also add the following.", keys::FermentationOthers, keys::OtherIngredients,
     words::InFermenter},
    {"Dry hop with the following hops.", keys::DryHops, keys::HopIngredients, words::DryHopped},
};
constexpr std::string_view notInTheBoil[] = {words::InMash,      words::FirstWortHopped,
                                             words::AtTurnOff,   words::InHopBack,
                                             words::InFermenter, words::DryHopped};

constexpr KeyName volumes[] = {keys::PreBoilWortVolume, keys::FinalWortVolume,
                               keys::VolumeToFermenter, keys::VolumeWaterAdded,
                               keys::VolumeAtPitching,  keys::FinalBatchVolume};

struct MashTypeTemplate {
  std::string_view mashType;
  std::string_view name;
};
constexpr MashTypeTemplate templates[] = {
    {words::FullMash, "Full Mash Template-Batch Sparge"},
    {words::Extract, "Extract Template"},
    {words::ExtractWithSteepedGrains, "Steeped Template"},
    {words::ExtractWithMiniMash, "Mini Mash Template"},
};
constexpr std::string_view flySpargeTemplate = "Full Mash Template";

std::string_view templateFor(const PlistDictionary& batch, const PlistDictionary& recipe) {
  const std::string_view mashType = recipe.stringValue(keys::MashType);
  if (mashType == words::FullMash && batch.stringValue(keys::SpargeMethod) == words::FlySparge) {
    return flySpargeTemplate;
  }
  const auto* found = std::ranges::find(templates, mashType, &MashTypeTemplate::mashType);
  return found == std::end(templates) ? "" : found->name;
}

void addGravities(const PlistDictionary& recipe, PlistDictionary& values) {
  using Calculations = ZYMBeerCalculations;
  const double og = recipe.doubleValue(keys::ExpectedOriginalGravity);
  const auto add = [&](KeyName key, KeyName gravity, double brix) {
    values.set(key, sentence("%@ (%@ Brix)", {shownAt<ZYMGravityValueTransformer>(recipe, gravity),
                                              decimals(brix, 1)}));
  };
  add(keys::PreBoilGravity, keys::ExpectedPreBoilGravity,
      Calculations::convertSGtoBrix(recipe.doubleValue(keys::ExpectedPreBoilGravity)));
  add(keys::PreFermentationGravity, keys::ExpectedOriginalGravity,
      Calculations::convertSGtoBrix(og));
  add(keys::FinalGravity, keys::ExpectedFinalGravity,
      Calculations::finalBrixGivenFG_OG(recipe.doubleValue(keys::ExpectedFinalGravity), og));
}

std::string costOf(const PlistDictionary& batch) {
  constexpr float hundredths = 100;
  const float cost = batch.floatValue(keys::Cost) / hundredths;
  if (!isShowable(cost)) return noFigure;
  NSNumberFormatter formatter(NSLocale::currentLocale());
  formatter.setNumberStyle(NSNumberFormatter::Style::Currency);
  return formatter.stringFromNumber(cost);
}

// Within a sentence. A translation is so already, and may have capitals in it.
std::string conditioningOf(const PlistDictionary& recipe) {
  const std::string_view word = recipe.stringValue(keys::Conditioning);
  const std::string text = translated(word, words::conditionings, Form::Markup);
  return text == pageText(word, Form::Markup) ? lowercaseString(text) : text;
}

void addPlainValues(const PlistDictionary& recipe, PlistDictionary& values) {
  for (const KeyName key : volumes) {
    values.set(key, shownAt<ZYMVolumeValueTransformer>(recipe, key));
  }
  values.set(keys::CarbonationVolumes,
             ZYMHTML::trimToOneDecimalPlace(recipe.find(keys::CarbonationVolumes)));
  values.set(keys::BoilTime, whole(recipe.doubleValue(keys::BoilDuration)));
  values.set(keys::FermentationTemperature,
             shownAt<ZYMTemperatureValueTransformer>(recipe, keys::FermentationTemperature));
  values.set(keys::Conditioning, conditioningOf(recipe));
  values.set(keys::Formula, nameOfFormula(keys::HopFormula, words::hopFormulas));
}

void addWater(const PlistDictionary& recipe, PlistDictionary& values) {
  const std::string* uuid = recipe.string(keys::TargetWaterProfileUsedUUID);
  const auto water = uuid ? ZYMWaters::sharedInstance().itemWithUUID(*uuid) : std::nullopt;
  const bool isChosen = water && water->stringValue(keys::Name) != words::NoWaterProfileChosen;
  values.set(keys::WaterTreatment,
             isChosen ? "<p>" +
                            sentence("Adjust water profile to match that of %@.",
                                     {pageTextAt(*water, keys::Name, Form::Markup)}) +
                            "</p>\n"
                      : "");
  constexpr double hardlyAny = 1e-06;
  std::string text;
  for (const Salt& salt : salts) {
    if (!(recipe.doubleValue(salt.weight) > hardlyAny)) continue;
    text += "<li>" +
            sentence(salt.text, {shownAt<ZYMSaltWeightValueTransformer>(recipe, salt.weight)}) +
            "</li>\n";
  }
  values.set(keys::SaltAdditions,
             text.empty() ? ""
                          : AdditionList::startWithTitle(sentence("Add the following salts.")) +
                                text + "</ul>\n");
}

void addMashAdditions(const PlistDictionary& recipe, PlistDictionary& values) {
  ZYMHTML::processAdditionFromRecipe_forWhen_arrayKey_intoKey_inDictionary_withTitle(
      recipe, words::InMashSteeped, keys::FermentableIngredients, keys::MashFermentables, values,
      std::nullopt);
  AdditionList others(
      AdditionList::startWithTitle(sentence("Also add the following during the mash")));
  const auto isInMash = [](const PlistDictionary& addition) {
    return addition.stringValue(keys::When) == words::InMash;
  };
  others.add(recipe.array(keys::OtherIngredients), weighedAdditions, isInMash);
  others.add(recipe.array(keys::HopIngredients), hopAdditions, isInMash);
  values.set(keys::MashOthers, others.textUnlessEmpty());
}

void addMashPH(const PlistDictionary& recipe, PlistDictionary& values) {
  const std::string_view acid = recipe.stringValue(keys::Acid);
  const std::string pH = decimals(recipe.doubleValue(keys::MashpH), 1);
  values.set(keys::MashPH,
             "<p>" +
                 (acid == words::Unadjusted
                      ? sentence("Mash pH should be %@.", {pH})
                      : sentence("Mash pH should be %@ (adjust if necessary with %@).",
                                 {pH, pageText(lowercaseString(acid), Form::Markup)})) +
                 "</p>\n");
}

std::string whenInBrackets(const PlistDictionary& hop) {
  return " (" + translated(hop.stringValue(keys::When), words::hopWhen, Form::Markup) + ")";
}

std::string usageNote(const PlistDictionary& yeast) {
  const std::string note = pageTextAt(yeast, keys::UsageNote, Form::Markup);
  return note.empty() ? "" : " - " + note;
}

void addBoilAndFermenter(const PlistDictionary& recipe, PlistDictionary& values) {
  for (const TimedList& list : timedLists) {
    const std::string title = sentence(list.title);
    if (list.additions.text() == keys::HopIngredients.text()) {
      ZYMHTML::processHopAdditionFromRecipe_forWhen_intoKey_inDictionary_withTitle(
          recipe, list.when, list.key, values, title);
    } else {
      ZYMHTML::processAdditionFromRecipe_forWhen_arrayKey_intoKey_inDictionary_withTitle(
          recipe, list.when, list.additions, list.key, values, title);
    }
  }
  AdditionList hops(
      AdditionList::startWithTitle(sentence("Add the following hops at the times given.")));
  hops.add(
      recipe.array(keys::HopIngredients), hopAdditions,
      [](const PlistDictionary& hop) {
        return words::positionOf(hop.stringValue(keys::When), notInTheBoil) == NSNotFound;
      },
      whenInBrackets);
  values.set(keys::BoilHops, hops.textUnlessEmpty());

  AdditionList yeasts("\n<ul>\n");
  yeasts.add(
      recipe.array(keys::YeastIngredients), yeastAdditions,
      [](const PlistDictionary& /*yeast*/) { return true; }, usageNote);
  values.set(keys::Yeasts, yeasts.text());
}

void addTitles(const PlistDictionary& batch, const PlistDictionary& recipe,
               PlistDictionary& values) {
  values.set(keys::BatchTitle, pageTextAt(batch, keys::BatchTitle, Form::Markup));
  values.set(keys::RecipeTitle, pageTextAt(recipe, keys::RecipeTitle, Form::Markup));
}

}  // namespace

std::string ZYMHTML::renderToHTMLBatchInstructions(const PlistDictionary& batch) {
  PlistDictionary values;
  insertHTMLHeader(values);
  const PlistDictionary* brewed = batch.dictionary(keys::ModifiedRecipe);
  PlistDictionary recipe = brewed ? *brewed : PlistDictionary();
  ZYMBeerCalculations::recalculateBeerRecipe(recipe);
  ZYMRecipes::sortIngredientsInRecipe(recipe);

  addTitles(batch, recipe, values);
  addGravities(recipe, values);
  values.set(keys::Cost, costOf(batch));
  addPlainValues(recipe, values);
  addWater(recipe, values);
  addMashAdditions(recipe, values);
  addMashPH(recipe, values);
  addBoilAndFermenter(recipe, values);
  values.set(keys::CarbonationText, carbonationText(recipe));

  Mash mash(batch, recipe);
  values.set(keys::TotalGrain, shown<ZYMWeightValueTransformer>(mash.grain()));
  mash.addStrike(values);
  mash.addSteps(values);
  mash.addSparge(values);
  mash.addTotalWater(values);
  addInstructionLabels(values);
  return pageOf(templateFor(batch, recipe), values);
}

}  // namespace zym
