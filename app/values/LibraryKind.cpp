#include "app/values/LibraryKind.h"

#include <algorithm>
#include <vector>

#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/Names.h"
#include "app/values/ValueForms.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/ZYMOtherIngredients.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/library/ZYMSuppliers.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/platform/text/NSString.h"

namespace zym::host {
namespace {

using Show = RecordValue::Show;

// clang-format off
constexpr RecordValue fermentableValues[] = {
    {keys::Extract,      "Yield",          Show::InList,   show::percent, take::percent},
    {keys::Color,        "Colour",         Show::InList,   show::maltColor, take::maltColor},
    {keys::Moisture,     "Moisture",       Show::InRecord, show::percent, take::percent},
    {keys::IsGrain,      "Grain",          Show::InList,   show::flag, take::flag},
    {keys::MustBeMashed, "Must be mashed", Show::InRecord, show::flag, take::flag},
    {keys::Description,  "Description",    Show::InRecord, show::text, take::text},
};
constexpr RecordValue hopValues[] = {
    {keys::Alpha,       "Alpha",       Show::InList,   show::percent, take::percent},
    {keys::Description, "Description", Show::InRecord, show::text, take::text},
};
constexpr RecordValue yeastValues[] = {
    {keys::Attenuation, "Attenuation", Show::InList,   show::percent, take::percent},
    {keys::BeerType,    "Type",        Show::InList,   show::text, take::word<words::beerTypes>},
    {keys::YeastType,   "Form",        Show::InList,   show::text, take::word<words::yeastTypes>},
    {keys::Description, "Description", Show::InRecord, show::text, take::text},
};
constexpr RecordValue otherValues[] = {
    {keys::Description, "Description", Show::InRecord, show::text, take::text},
};
constexpr RecordValue waterValues[] = {
    {keys::Calcium, "Ca mg/l", Show::InList, show::number, take::number},
    {keys::Magnesium, "Mg mg/l", Show::InList, show::number, take::number},
    {keys::Sodium, "Na mg/l", Show::InList, show::number, take::number},
    {keys::Sulfate, "SO4 mg/l", Show::InList, show::number, take::number},
    {keys::Chloride, "Cl mg/l", Show::InList, show::number, take::number},
    {keys::Carbonate, "HCO3", Show::InList, show::number, take::number},
    {keys::Notes,     "Notes",       Show::InRecord, show::text, take::text},
};
constexpr RecordValue supplierValues[] = {
    {keys::Homepage, "Homepage", Show::InList, show::text, take::text},
    {keys::Email,    "Email",    Show::InList, show::text, take::text},
    {keys::Location, "Location", Show::InList, show::text, take::text},
    {keys::Phone,    "Phone",    Show::InList, show::text, take::text},
};
constexpr RecordValue profileValues[] = {
    {keys::PreBoilVolume,            "Before the boil",   Show::InList,   show::volume, take::volume},
    {keys::PostBoilVolume,           "After the boil",    Show::InRecord, show::volume, take::volume},
    {keys::VolumeToFermenter,        "To the fermenter",  Show::InRecord, show::volume, take::volume},
    {keys::VolumeWaterAdded,         "Water added",       Show::InRecord, show::volume, take::volume},
    {keys::VolumeAtPitching,         "At pitching",       Show::InRecord, show::volume, take::volume},
    {keys::FinishedBatchVolume,      "Finished beer",     Show::InList,   show::volume, take::volume},
    {keys::PreferredRecipeType,      "Type of recipe",    Show::InRecord,   show::text, take::word<words::mashTypes>},
    {keys::PreferredMashSchedule,    "Mash schedule",     Show::InRecord, show::schedule, take::schedule},
    {keys::PreferredBaseWaterUUID,   "Base water",        Show::InRecord, show::water, take::water},
    {keys::PreferredTargetWaterUUID, "Target water",      Show::InRecord, show::water, take::water},
    {keys::PreferredSpargeMethod,    "Sparge",            Show::InRecord, show::text, take::word<words::spargeMethods>},
    {keys::MTThermalMass,            "Heat of mash tun",  Show::InRecord, show::grammes, take::number},
    {keys::WaterGrainRatio,          "Mash thickness",    Show::InRecord, show::waterGrain, take::waterGrain},
    {keys::ExtractEfficiency,        "Efficiency",        Show::InList,   show::percent, take::percent},
    {keys::BoilDuration,             "Boil",              Show::InRecord, show::minutes, take::minutes},
};
constexpr RecordValue styleValues[] = {
    {keys::Category,          "Category",    Show::InList,   show::text, nullptr},
    {keys::Type,              "Type",        Show::InRecord, show::text, nullptr},
    {keys::MinOG,             "OG from",     Show::InList,   show::gravity, nullptr, keys::MaxOG},
    {keys::MaxOG,             "OG to",       Show::InList,   show::gravity, nullptr, keys::MinOG},
    {keys::MinFG,             "FG from",     Show::InRecord, show::gravity, nullptr, keys::MaxFG},
    {keys::MaxFG,             "FG to",       Show::InRecord, show::gravity, nullptr, keys::MinFG},
    {keys::MinIBU,            "IBU from",    Show::InList,   show::number, nullptr, keys::MaxIBU},
    {keys::MaxIBU,            "IBU to",      Show::InList,   show::number, nullptr, keys::MinIBU},
    {keys::MinColor,          "Colour from", Show::InRecord, show::beerColor, nullptr, keys::MaxColor},
    {keys::MaxColor,          "Colour to",   Show::InRecord, show::beerColor, nullptr, keys::MinColor},
    {keys::MinABV,            "ABV from",    Show::InRecord, show::percent, nullptr, keys::MaxABV},
    {keys::MaxABV,            "ABV to",      Show::InRecord, show::percent, nullptr, keys::MinABV},
    {keys::CarbonationVolumes, "Carbonation", Show::InRecord, show::number, nullptr, keys::CarbonationVolumes},
};

template <class Library>
ZYMCachingModel& library() { return Library::sharedInstance(); }

constexpr LibraryKind kinds[] = {
    {"fermentables", "fermentable", library<ZYMFermentables>, fermentableValues},
    {"hops",         "hop",         library<ZYMHops>, hopValues},
    {"yeasts",       "yeast",       library<ZYMYeasts>, yeastValues, true},
    {"others",       "other",       library<ZYMOtherIngredients>, otherValues},
    {"waters",       "water",       library<ZYMWaters>, waterValues, true},
    {"suppliers",    "supplier",    library<ZYMSuppliers>, supplierValues},
    {"schedules",    "schedule",    library<ZYMMashSchedules>, {}, true},
    {"profiles",     "profile",     library<ZYMProfiles>, profileValues},
    {"styles",       "style",       nullptr, styleValues},
};
// clang-format on

[[noreturn]] void refuseKeyOf(const LibraryKind& kind, const std::string& key) {
  std::vector<std::string_view> choices{kind.nameKey().text()};
  for (const RecordValue& value : kind.values) choices.push_back(value.key.text());
  refuseKey(kind.singular, key, choices);
}

}  // namespace

std::span<const LibraryKind> libraryKinds() {
  return kinds;
}

const LibraryKind& libraryKindNamed(std::string_view name) {
  const auto found = std::ranges::find_if(
      kinds, [=](const LibraryKind& kind) { return kind.plural == name || kind.singular == name; });
  if (found == std::end(kinds)) {
    throw UsageError(label("unknown kind '%1'; choose %2", {printable(name), libraryKindNames()}));
  }
  return *found;
}

std::string libraryKindNames() {
  std::string names;
  for (const LibraryKind& kind : kinds) names.append(names.empty() ? "" : ", ").append(kind.plural);
  return names;
}

namespace {

// The categories of meads and ciders begin with a letter, which counts as number 0.
PlistArray stylesBeersFirst() {
  const PlistArray styles =
      ZYMStyles::sharedInstance().allStylesInGuidelines(ZYMStyles::userPreferredStyleGuidelines());
  PlistArray ordered;
  for (const bool ofBeer : {true, false}) {
    for (const PlistDictionary& style : PlistRows(&styles)) {
      if ((style.stringValue(keys::Type) == "Beer") == ofBeer) ordered.append(style);
    }
  }
  return ordered;
}

}  // namespace

PlistArray recordsOf(const LibraryKind& kind) {
  return kind.library ? kind.library().allItems() : stylesBeersFirst();
}

PlistDictionary recordNamed(const LibraryKind& kind, const std::string& name) {
  if (kind.library && isUUID(name)) {
    if (const auto record = kind.library().itemWithUUID(name)) return *record;
  }
  const PlistArray records = recordsOf(kind);
  std::vector<const PlistDictionary*> found;
  std::vector<Named> candidates;
  for (const PlistDictionary& record : PlistRows(&records)) {
    found.push_back(&record);
    candidates.push_back({record.stringValue(kind.nameKey()), record.stringValue(keys::UUID)});
  }
  return *found[positionMeant(name, candidates, kind.singular)];
}

namespace {

/// The record of no choice, if the kind has one.
std::optional<PlistDictionary> recordOfNoChoice(const LibraryKind& kind) {
  if (!kind.firstIsNone) return std::nullopt;
  const std::vector<ZYMSummary> rows = kind.library().summariesforAllItems();
  return rows.empty() ? std::nullopt : kind.library().itemWithUUID(rows.front().uuid.value_or(""));
}

}  // namespace

void requireChosen(const LibraryKind& kind, const PlistDictionary& record) {
  const auto none = recordOfNoChoice(kind);
  if (!none || none->stringValue(keys::UUID) != record.stringValue(keys::UUID)) return;
  throw InputError(label("'%1' stands for no choice; it keeps its name and is not removed",
                         {printable(none->stringValue(kind.nameKey()))}));
}

void requirePlaceForName(const LibraryKind& kind, const std::string& name) {
  const auto none = recordOfNoChoice(kind);
  if (!none || none->stringValue(kind.nameKey()) < name) return;
  throw InputError(
      label("'%1' would come before '%2', which stands for no choice by being the first; begin the "
            "name with a letter",
            {printable(name), printable(none->stringValue(kind.nameKey()))}));
}

void setValues(const LibraryKind& kind, PlistDictionary& record,
               const std::vector<std::string>& assignments) {
  for (const std::string& text : assignments) {
    const Assignment given = assignmentOf(text);
    const std::string upper = uppercaseString(given.key);
    if (upper == uppercaseString(kind.nameKey().text()) || upper == "NAME") {
      record.set(kind.nameKey(), given.text);
      continue;
    }
    const RecordValue* value = valueNamed(kind.values, given.key);
    if (!value) refuseKeyOf(kind, given.key);
    record.set(value->key, value->toStorage(given.text));
  }
}

}  // namespace zym::host
