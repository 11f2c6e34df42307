#include "zymcore/interchange/internal/RecipeToExport.h"

#include <algorithm>

#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

PlistDictionary recalculated(PlistDictionary recipe) {
  ZYMBeerCalculations::recalculateBeerRecipe(recipe);
  return recipe;
}

PlistDictionary profileOf(const PlistDictionary& recipe) {
  const PlistDictionary* own = recipe.dictionary(keys::Profile);
  return own ? *own : ZYMProfiles::sharedInstance().defaultProfile();
}

PlistDictionary baseWaterOf(const PlistDictionary& recipe) {
  const std::string* uuid = recipe.string(keys::BaseWaterProfileUsedUUID);
  const auto water = uuid ? ZYMWaters::sharedInstance().itemWithUUID(*uuid) : std::nullopt;
  return water.value_or(PlistDictionary());
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr Ion::Share none{keys::CaSO4, 0};

}  // namespace

// The shares are those of the weights of ions in their salts.
constinit const Ion ions::sulfate{keys::Sulfate,
                                  {{{keys::CaSO4, 0.5576}, {keys::MgSO4, 0.391}, none}}};
constinit const Ion ions::calcium{
    keys::Calcium, {{{keys::CaSO4, 0.2327}, {keys::CaCl2, 0.364}, {keys::CaCO3, 0.4}}}};
constinit const Ion ions::magnesium{keys::Magnesium, {{{keys::MgSO4, 0.097}, none, none}}};
constinit const Ion ions::chloride{keys::Chloride,
                                   {{{keys::CaCl2, 0.636}, {keys::NaCl, 0.603}, none}}};
constinit const Ion ions::sodium{keys::Sodium,
                                 {{{keys::NaHCO3, 0.274}, {keys::NaCl, 0.397}, none}}};
constinit const Ion ions::bicarbonate{keys::Carbonate,
                                      {{{keys::NaHCO3, 0.714}, {keys::CaCO3, 0.6}, none}}};

RecipeToExport::RecipeToExport(const PlistDictionary& document)
    : recipe_(recalculated(document)),
      profile_(profileOf(recipe_)),
      baseWater_(baseWaterOf(recipe_)) {
  if (const PlistDictionary* schedule = recipe_.dictionary(keys::MashSchedule)) {
    for (const PlistDictionary& step : schedule->rows(keys::Steps)) {
      // The sum of hostile numbers wraps rather than overflows.
      mashMinutes_ =
          static_cast<std::int64_t>(static_cast<std::uint64_t>(mashMinutes_) +
                                    static_cast<std::uint64_t>(step.integerValue(keys::Duration)));
    }
  }
  for (const PlistDictionary& fermentable : recipe_.rows(keys::FermentableIngredients)) {
    if (fermentable.stringValue(keys::When) == words::InMashSteeped) {
      mashedGrain_ += fermentable.doubleValue(keys::Amount);
    }
  }
}

double RecipeToExport::concentrationOf(const Ion& ion) const {
  const float inWater = baseWater_.floatValue(ion.inWater);
  const float fromWater = (recipe_.floatValue(keys::VolumeWaterAdded) * inWater +
                           recipe_.floatValue(keys::VolumeToFermenter) *
                               (recipe_.floatValue(keys::PreBoilWortVolume) /
                                recipe_.floatValue(keys::FinalWortVolume)) *
                               inWater) /
                          recipe_.floatValue(keys::VolumeAtPitching);
  double fromSalts = 0;
  for (const Ion::Share& share : ion.shares) {
    if (share.ofItsWeight > 0) fromSalts += recipe_.doubleValue(share.salt) * share.ofItsWeight;
  }
  return fromSalts * 1'000'000.0 + double{fromWater};
}

StyleToExport::StyleToExport(const PlistDictionary& recipe, std::int64_t guidelines) {
  const std::string* uuid = recipe.string(keys::StyleUUID);
  const auto known = uuid
                         ? ZYMStyles::sharedInstance().styleWithUUID_inGuidelines(*uuid, guidelines)
                         : std::nullopt;
  record = known ? *known : ZYMStyles::noChosenStyle();

  const std::string_view fullName = record.stringValue(keys::Name);
  const std::size_t dash = fullName.find('-');
  if (dash == std::string_view::npos) {
    name = fullName;
  } else {
    category = fullName.substr(0, dash);
    const std::string_view rest = fullName.substr(dash + 1);
    name = rest.substr(0, rest.find('-'));
  }
  categoryNumber = record.stringValue(keys::Category);
  if (std::ranges::any_of(categoryNumber, isLetter)) {
    letter = categoryNumber.back();
    categoryNumber.pop_back();
  }
}

std::string textOf(const PlistDictionary& record, KeyName key) {
  const PlistValue* value = record.find(key);
  if (!value) return {};
  if (const std::string* text = value->string()) return *text;
  if (!value->isNumber()) return {};
  return value->real() ? shortestNumberText(*value->real()) : std::to_string(value->integerValue());
}

}  // namespace zym
