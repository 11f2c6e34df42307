#include "app/values/DocumentValues.h"

#include <algorithm>

#include "app/terminal/Words.h"
#include "app/values/LibraryKind.h"
#include "app/values/RecordValue.h"
#include "app/values/ValueForms.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym::host {
namespace {

/// A value of a document that can be typed. Those that are more than one key have `set`.
struct DocumentValue {
  KeyName key;
  std::string_view label;
  PlistValue (*toStorage)(const std::string& typed);
  void (*set)(PlistDictionary& document, const std::string& typed) = nullptr;
};

PlistDictionary chosen(std::string_view kind, const std::string& typed) {
  return recordNamed(libraryKindNamed(kind), typed);
}

void setStyle(PlistDictionary& recipe, const std::string& typed) {
  const bool isNone = uppercaseString(typed) == "NONE";
  const PlistDictionary style = isNone ? ZYMStyles::noChosenStyle() : chosen("styles", typed);
  recipe.set(keys::StyleUUID, style.stringValue(keys::UUID));
  recipe.set(keys::StyleGuidelinesSource, ZYMStyles::userPreferredStyleGuidelines());
}

void setProfile(PlistDictionary& recipe, const std::string& typed) {
  ZYMProfiles::updateRecipe_withProfile(recipe, chosen("profiles", typed));
}

void setSchedule(PlistDictionary& recipe, const std::string& typed) {
  recipe.set(keys::MashSchedule, chosen("schedules", typed));
}

void setTargetWater(PlistDictionary& recipe, const std::string& typed) {
  const PlistDictionary water = chosen("waters", typed);
  recipe.set(keys::TargetWaterProfileUsedUUID, water.stringValue(keys::UUID));
  recipe.set(keys::WaterProfileUsed, water.stringValue(keys::Name));
}

/// A salt is kept as what was weighed out and as its concentration, which the weight is worked out
/// from in recipes that have none.
template <std::size_t index>
void setSalt(PlistDictionary& recipe, const std::string& typed) {
  const keys::SaltKeys& salt = keys::salts[index];
  ZYMRecipes::checkSaltWeightsExistInRecipe(recipe);
  recipe.set(salt.weight, take::saltWeight(typed));
  const double boiled = recipe.doubleValue(keys::FinalWortVolume);
  const double pitched = recipe.doubleValue(keys::VolumeAtPitching);
  if (!(boiled > 0 && pitched > 0)) return;
  // A few grams in litres of water: six decimals of g/ml would be three digits.
  recipe.set(salt.concentration,
             shortestNumberText(recipe.doubleValue(salt.weight) *
                                recipe.doubleValue(keys::VolumeToFermenter) / boiled / pitched));
}

// clang-format off
constexpr DocumentValue recipeValues[] = {
    {keys::RecipeTitle,             "Name",                take::text},
    {keys::StyleUUID,               "Style",               nullptr, setStyle},
    {keys::Profile,                 "Profile",             nullptr, setProfile},
    {keys::MashType,                "Type",                take::word<words::mashTypes>},
    {keys::MashEfficiency,          "Efficiency",          take::percent},
    {keys::BoilDuration,            "Boil",                take::minutes},
    {keys::PreBoilWortVolume,       "Before the boil",     take::volume},
    {keys::FinalWortVolume,         "After the boil",      take::volume},
    {keys::VolumeToFermenter,       "To the fermenter",    take::volume},
    {keys::VolumeAtPitching,        "At pitching",         take::volume},
    {keys::FinalBatchVolume,        "Finished beer",       take::volume},
    {keys::WortFermentability,      "Fermentability",      take::word<words::wortFermentabilities>},
    {keys::MashSchedule,            "Mash schedule",       nullptr, setSchedule},
    {keys::BaseWaterProfileUsedUUID,   "Base water",       take::water},
    {keys::TargetWaterProfileUsedUUID, "Target water",     nullptr, setTargetWater},
    {keys::MgSO4InGrammes,          "Epsom salt",          nullptr, setSalt<0>},
    {keys::CaCO3InGrammes,          "Chalk",               nullptr, setSalt<1>},
    {keys::CaSO4InGrammes,          "Gypsum",              nullptr, setSalt<2>},
    {keys::NaClInGrammes,           "Table salt",          nullptr, setSalt<3>},
    {keys::CaCl2InGrammes,          "Calcium chloride",    nullptr, setSalt<4>},
    {keys::NaHCO3InGrammes,         "Baking soda",         nullptr, setSalt<5>},
    {keys::MashpH,                  "pH",                  take::number},
    {keys::Acid,                    "Acid",                take::text},
    {keys::FermentationTemperature, "Fermentation",        take::temperature},
    {keys::Carbonation,             "Carbonation",         take::word<words::carbonations>},
    {keys::CarbonationVolumes,      "Volumes of CO2",      take::number},
    {keys::Conditioning,            "Conditioning",        take::word<words::conditionings>},
    {keys::SteepTemperature,        "Steep temperature",   take::temperature},
    {keys::SteepDuration,           "Steep",               take::minutes},
    {keys::Notes,                   "Notes",               take::text},
};
constexpr DocumentValue batchValues[] = {
    {keys::BatchTitle,        "Name",             take::text},
    {keys::DateBrewed,        "Brewed",           take::day},
    {keys::DateRacked,        "Racked",           take::day},
    {keys::DatePackaged,      "Packaged",         take::day},
    {keys::DateReady,         "Ready",            take::day},
    {keys::SpargeMethod,      "Sparge",           take::word<words::spargeMethods>},
    {keys::WaterGrainRatio,   "Mash thickness",   take::waterGrain},
    {keys::MTThermalMass,     "Heat of mash tun", take::number},
    {keys::RoomTemperature,   "Room",             take::temperature},
    {keys::BatchNotes,        "Notes",            take::text},
    {keys::BoilNotes,         "Boil notes",       take::text},
    {keys::FermentationNotes, "Fermentation notes", take::text},
    {keys::PackagingNotes,    "Packaging notes",  take::text},
    {keys::TastingNotes,      "Taste",            take::text},
};
constexpr DocumentValue measurements[] = {
    {keys::PreBoilWortVolume,       "Before the boil",  take::volume},
    {keys::FinalWortVolume,         "After the boil",   take::volume},
    {keys::VolumeToFermenter,       "To the fermenter", take::volume},
    {keys::VolumeAtPitching,        "At pitching",      take::volume},
    {keys::FinalBatchVolume,        "Finished beer",    take::volume},
    {keys::PreBoilHydroReading,     "Pre-boil reading", take::gravity},
    {keys::PreBoilTemp,             "Pre-boil sample",  take::temperature},
    {keys::OGHydroReading,          "OG",               take::gravity},
    {keys::OGTemp,                  "OG sample",        take::temperature},
    {keys::FGHydroReading,          "FG",               take::gravity},
    {keys::FGTemp,                  "FG sample",        take::temperature},
    {keys::HydrometerCalibratedAt,  "Calibrated at",    take::temperature},
    {keys::FermentationTemperature, "Fermentation",     take::temperature},
};
// clang-format on

using Values = std::span<const DocumentValue>;

const DocumentValue* valueNamed(Values values, const std::string& key) {
  const std::string upper = uppercaseString(key);
  const auto found = std::ranges::find_if(values, [&](const DocumentValue& value) {
    return uppercaseString(value.key.text()) == upper || uppercaseString(value.label) == upper ||
           uppercaseString(label(value.label)) == upper;
  });
  return found == values.end() ? nullptr : &*found;
}

void setValue(const DocumentValue& value, PlistDictionary& document, const std::string& typed) {
  if (value.set) {
    value.set(document, typed);
  } else {
    document.set(value.key, value.toStorage(typed));
  }
}

/// Answers whether there is such a value.
bool setNamed(Values values, PlistDictionary* document, const Assignment& given) {
  const DocumentValue* value = document ? valueNamed(values, given.key) : nullptr;
  if (value) setValue(*value, *document, given.text);
  return value != nullptr;
}

[[noreturn]] void refuse(std::string_view what, const std::string& key, Values values) {
  std::vector<std::string_view> choices;
  for (const DocumentValue& value : values) choices.push_back(value.key.text());
  refuseKey(what, key, choices);
}

std::string helpOf(std::string_view heading, Values values) {
  std::string help(heading);
  for (const DocumentValue& value : values) {
    help.append("\n  ").append(value.key.text()).append(", \"").append(value.label).append("\"");
  }
  return help + "\n";
}

}  // namespace

void setDocumentValues(Item::Kind kind, PlistDictionary& document,
                       const std::vector<std::string>& assignments) {
  const bool isRecipe = kind == Item::Kind::Recipe;
  for (const std::string& text : assignments) {
    const Assignment given = assignmentOf(text);
    if (!isRecipe && setNamed(batchValues, &document, given)) continue;
    PlistDictionary* recipe = isRecipe ? &document : document.editDictionary(keys::ModifiedRecipe);
    if (setNamed(recipeValues, recipe, given)) continue;
    refuse(isRecipe ? "recipe" : "batch", given.key,
           isRecipe ? Values(recipeValues) : Values(batchValues));
  }
  PlistDictionary* recipe = isRecipe ? &document : document.editDictionary(keys::ModifiedRecipe);
  if (recipe) ZYMRecipes::validateIngredientsInRecipe(*recipe);
}

void setMeasurements(PlistDictionary& batch, const std::vector<std::string>& assignments) {
  for (const std::string& text : assignments) {
    const Assignment given = assignmentOf(text);
    if (!setNamed(measurements, batch.editDictionary(keys::Actuals), given)) {
      refuse("measured batch", given.key, measurements);
    }
  }
}

std::string recipeValuesHelp() {
  return helpOf("Values of a recipe, by key or by name:", recipeValues);
}
std::string batchValuesHelp() {
  return helpOf("Values of a batch, beside those of its recipe as brewed:", batchValues);
}
std::string measurementsHelp() {
  return helpOf("Measurements, by key or by name:", measurements);
}

}  // namespace zym::host
