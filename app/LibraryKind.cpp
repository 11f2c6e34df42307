#include "app/LibraryKind.h"

#include <algorithm>

#include "app/Faults.h"
#include "app/Text.h"
#include "zymcore/calculations/ZYMBeerColorValueTransformer.h"
#include "zymcore/calculations/ZYMGravityValueTransformer.h"
#include "zymcore/calculations/ZYMMaltColorValueTransformer.h"
#include "zymcore/calculations/ZYMPercentValueTransformer.h"
#include "zymcore/calculations/ZYMVolumeValueTransformer.h"
#include "zymcore/calculations/ZYMWaterGrainValueTransformer.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/NSStringExtensions.h"
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
#include "zymcore/platform/NSString.h"

namespace zym::host {
namespace {

using Show = RecordValue::Show;

std::string textToDisplay(const PlistValue* stored) {
  return stored && stored->string() ? *stored->string() : "";
}
std::string textToStorage(const std::string& typed) {
  return typed;
}

template <class Transformer>
std::string toDisplay(const PlistValue* stored) {
  return stored ? Transformer::convertForDisplay(stored) : "";
}

[[noreturn]] void refuse(const std::string& typed, const std::string& instead) {
  throw UsageError("'" + printable(typed) + "' is no value here; give " + instead);
}

void requireNumber(const std::string& typed) {
  if (delocalizeValue(typed).empty()) refuse(typed, "a number");
}

template <class Transformer>
std::string toStorage(const std::string& typed) {
  requireNumber(typed);
  const PlistValue text(typed);
  return Transformer::convertForStorage(&text);
}

std::string numberToDisplay(const PlistValue* stored) {
  return localizedStringWithValue_decimalPlaces(stored, 1);
}
std::string numberToStorage(const std::string& typed) {
  requireNumber(typed);
  return delocalizeValue(typed);
}
std::string milligramsToDisplay(const PlistValue* stored) {
  return numberToDisplay(stored) + " mg/l";
}
std::string minutesToDisplay(const PlistValue* stored) {
  return localizedStringWithValue_decimalPlaces(stored, 0) + " min";
}
std::string grammesToDisplay(const PlistValue* stored) {
  return localizedStringWithValue_decimalPlaces(stored, 0) + " g";
}

std::string flagToDisplay(const PlistValue* stored) {
  return stored && stored->boolValue() ? "yes" : "no";
}
std::string flagToStorage(const std::string& typed) {
  const std::string word = lowercaseString(typed);
  if (word == "yes" || word == "true" || word == "1") return "1";
  if (word == "no" || word == "false" || word == "0") return "0";
  refuse(typed, "yes or no");
}

template <const auto& vocabulary>
std::string wordToStorage(const std::string& typed) {
  std::string choices;
  for (const std::string_view word : vocabulary) {
    if (uppercaseString(word) == uppercaseString(typed)) return std::string(word);
    choices.append(choices.empty() ? "" : ", ").append(word);
  }
  refuse(typed, "one of " + choices);
}

std::string nameIn(ZYMCachingModel& library, const PlistValue* uuid) {
  const auto record = library.itemWithUUID(textToDisplay(uuid));
  return record ? std::string(record->stringValue(library.nameKeyInRecords())) : "";
}
std::string waterToDisplay(const PlistValue* uuid) {
  return nameIn(ZYMWaters::sharedInstance(), uuid);
}
std::string scheduleToDisplay(const PlistValue* uuid) {
  return nameIn(ZYMMashSchedules::sharedInstance(), uuid);
}
std::string uuidOf(const LibraryKind& kind, const std::string& typed) {
  return std::string(recordNamed(kind, typed).stringValue(keys::UUID));
}
std::string waterToStorage(const std::string& typed) {
  return uuidOf(libraryKindNamed("waters"), typed);
}
std::string scheduleToStorage(const std::string& typed) {
  return uuidOf(libraryKindNamed("schedules"), typed);
}

constexpr auto showText = &textToDisplay;
constexpr auto takeText = &textToStorage;
constexpr auto showPercent = &toDisplay<ZYMPercentValueTransformer>;
constexpr auto takePercent = &toStorage<ZYMPercentValueTransformer>;
constexpr auto showVolume = &toDisplay<ZYMVolumeValueTransformer>;
constexpr auto takeVolume = &toStorage<ZYMVolumeValueTransformer>;
constexpr auto showGravity = &toDisplay<ZYMGravityValueTransformer>;
constexpr auto showColor = &toDisplay<ZYMBeerColorValueTransformer>;

// clang-format off
constexpr RecordValue fermentableValues[] = {
    {keys::Extract,      "Yield",          Show::InList,   showPercent, takePercent},
    {keys::Color,        "Colour",         Show::InList,   toDisplay<ZYMMaltColorValueTransformer>, toStorage<ZYMMaltColorValueTransformer>},
    {keys::Moisture,     "Moisture",       Show::InRecord, showPercent, takePercent},
    {keys::IsGrain,      "Grain",          Show::InList,   flagToDisplay, flagToStorage},
    {keys::MustBeMashed, "Must be mashed", Show::InRecord, flagToDisplay, flagToStorage},
    {keys::Description,  "Description",    Show::InRecord, showText, takeText},
};
constexpr RecordValue hopValues[] = {
    {keys::Alpha,       "Alpha",       Show::InList,   showPercent, takePercent},
    {keys::Description, "Description", Show::InRecord, showText, takeText},
};
constexpr RecordValue yeastValues[] = {
    {keys::Attenuation, "Attenuation", Show::InList,   showPercent, takePercent},
    {keys::BeerType,    "Type",        Show::InList,   showText, wordToStorage<words::beerTypes>},
    {keys::YeastType,   "Form",        Show::InList,   showText, wordToStorage<words::yeastTypes>},
    {keys::Description, "Description", Show::InRecord, showText, takeText},
};
constexpr RecordValue otherValues[] = {
    {keys::Description, "Description", Show::InRecord, showText, takeText},
};
constexpr RecordValue waterValues[] = {
    {keys::Calcium,   "Calcium",     Show::InList,   milligramsToDisplay, numberToStorage},
    {keys::Magnesium, "Magnesium",   Show::InList,   milligramsToDisplay, numberToStorage},
    {keys::Sodium,    "Sodium",      Show::InList,   milligramsToDisplay, numberToStorage},
    {keys::Sulfate,   "Sulfate",     Show::InList,   milligramsToDisplay, numberToStorage},
    {keys::Chloride,  "Chloride",    Show::InList,   milligramsToDisplay, numberToStorage},
    {keys::Carbonate, "Bicarbonate", Show::InList,   milligramsToDisplay, numberToStorage},
    {keys::Notes,     "Notes",       Show::InRecord, showText, takeText},
};
constexpr RecordValue supplierValues[] = {
    {keys::Homepage, "Homepage", Show::InList, showText, takeText},
    {keys::Email,    "Email",    Show::InList, showText, takeText},
    {keys::Location, "Location", Show::InList, showText, takeText},
    {keys::Phone,    "Phone",    Show::InList, showText, takeText},
};
constexpr RecordValue profileValues[] = {
    {keys::PreBoilVolume,            "Before the boil",   Show::InList,   showVolume, takeVolume},
    {keys::PostBoilVolume,           "After the boil",    Show::InRecord, showVolume, takeVolume},
    {keys::VolumeToFermenter,        "To the fermenter",  Show::InRecord, showVolume, takeVolume},
    {keys::VolumeWaterAdded,         "Water added",       Show::InRecord, showVolume, takeVolume},
    {keys::VolumeAtPitching,         "At pitching",       Show::InRecord, showVolume, takeVolume},
    {keys::FinishedBatchVolume,      "Finished beer",     Show::InList,   showVolume, takeVolume},
    {keys::PreferredRecipeType,      "Type of recipe",    Show::InList,   showText, wordToStorage<words::mashTypes>},
    {keys::PreferredMashSchedule,    "Mash schedule",     Show::InRecord, scheduleToDisplay, scheduleToStorage},
    {keys::PreferredBaseWaterUUID,   "Base water",        Show::InRecord, waterToDisplay, waterToStorage},
    {keys::PreferredTargetWaterUUID, "Target water",      Show::InRecord, waterToDisplay, waterToStorage},
    {keys::PreferredSpargeMethod,    "Sparge",            Show::InRecord, showText, wordToStorage<words::spargeMethods>},
    {keys::MTThermalMass,            "Heat of mash tun",  Show::InRecord, grammesToDisplay, numberToStorage},
    {keys::WaterGrainRatio,          "Mash thickness",    Show::InRecord, toDisplay<ZYMWaterGrainValueTransformer>, toStorage<ZYMWaterGrainValueTransformer>},
    {keys::ExtractEfficiency,        "Efficiency",        Show::InList,   showPercent, takePercent},
    {keys::BoilDuration,             "Boil",              Show::InList,   minutesToDisplay, numberToStorage},
};
constexpr RecordValue styleValues[] = {
    {keys::Category,          "Category",    Show::InList,   showText, nullptr},
    {keys::Type,              "Type",        Show::InRecord, showText, nullptr},
    {keys::MinOG,             "OG from",     Show::InList,   showGravity, nullptr},
    {keys::MaxOG,             "OG to",       Show::InList,   showGravity, nullptr},
    {keys::MinFG,             "FG from",     Show::InRecord, showGravity, nullptr},
    {keys::MaxFG,             "FG to",       Show::InRecord, showGravity, nullptr},
    {keys::MinIBU,            "IBU from",    Show::InList,   numberToDisplay, nullptr},
    {keys::MaxIBU,            "IBU to",      Show::InList,   numberToDisplay, nullptr},
    {keys::MinColor,          "Colour from", Show::InList,   showColor, nullptr},
    {keys::MaxColor,          "Colour to",   Show::InList,   showColor, nullptr},
    {keys::MinABV,            "ABV from",    Show::InRecord, showPercent, nullptr},
    {keys::MaxABV,            "ABV to",      Show::InRecord, showPercent, nullptr},
    {keys::CarbonationVolumes, "Carbonation", Show::InRecord, numberToDisplay, nullptr},
};

template <class Library>
ZYMCachingModel& library() { return Library::sharedInstance(); }

constexpr LibraryKind kinds[] = {
    {"fermentables", "fermentable", library<ZYMFermentables>,     keys::Ingredient,   fermentableValues},
    {"hops",         "hop",         library<ZYMHops>,             keys::Variety,      hopValues},
    {"yeasts",       "yeast",       library<ZYMYeasts>,           keys::Name,         yeastValues},
    {"others",       "other",       library<ZYMOtherIngredients>, keys::Ingredient,   otherValues},
    {"waters",       "water",       library<ZYMWaters>,           keys::Name,         waterValues},
    {"suppliers",    "supplier",    library<ZYMSuppliers>,        keys::Name,         supplierValues},
    {"schedules",    "schedule",    library<ZYMMashSchedules>,    keys::ScheduleName, {}},
    {"profiles",     "profile",     library<ZYMProfiles>,         keys::ProfileName,  profileValues},
    {"styles",       "style",       nullptr,                      keys::Name,         styleValues},
};
// clang-format on

std::vector<const PlistDictionary*> candidatesFor(const LibraryKind& kind,
                                                  const PlistArray& records,
                                                  const std::string& name) {
  const auto matching = [&](auto&& matches) {
    std::vector<const PlistDictionary*> found;
    for (const PlistDictionary& record : PlistRows(&records)) {
      if (matches(record)) found.push_back(&record);
    }
    return found;
  };
  const auto nameOf = [&](const PlistDictionary& record) {
    return record.stringValue(kind.nameKey);
  };
  const std::string upper = uppercaseString(name);
  auto found = matching([&](const auto& record) { return record.stringValue(keys::UUID) == name; });
  if (found.empty()) found = matching([&](const auto& record) { return nameOf(record) == name; });
  if (found.empty()) {
    found = matching([&](const auto& record) { return uppercaseString(nameOf(record)) == upper; });
  }
  if (found.empty() && !upper.empty()) {
    found = matching(
        [&](const auto& record) { return uppercaseString(nameOf(record)).starts_with(upper); });
  }
  return found;
}

const RecordValue& valueNamed(const LibraryKind& kind, const std::string& key) {
  const std::string upper = uppercaseString(key);
  const auto found = std::ranges::find_if(kind.values, [&](const RecordValue& value) {
    return uppercaseString(value.key.text()) == upper || uppercaseString(value.label) == upper;
  });
  if (found != kind.values.end() && found->toStorage) return *found;
  std::string choices(kind.nameKey.text());
  for (const RecordValue& value : kind.values) choices.append(", ").append(value.key.text());
  throw UsageError("a " + std::string(kind.singular) + " has no '" + printable(key) +
                   "' to set; choose " + choices);
}

}  // namespace

std::span<const LibraryKind> libraryKinds() {
  return kinds;
}

const LibraryKind& libraryKindNamed(std::string_view name) {
  const auto found = std::ranges::find_if(
      kinds, [=](const LibraryKind& kind) { return kind.plural == name || kind.singular == name; });
  if (found == std::end(kinds)) {
    throw UsageError("unknown kind '" + printable(name) + "'; choose " + libraryKindNames());
  }
  return *found;
}

std::string libraryKindNames() {
  std::string names;
  for (const LibraryKind& kind : kinds) names.append(names.empty() ? "" : ", ").append(kind.plural);
  return names;
}

PlistArray recordsOf(const LibraryKind& kind) {
  return kind.library ? kind.library().allItems()
                      : ZYMStyles::sharedInstance().allStylesInGuidelines(
                            ZYMStyles::userPreferredStyleGuidelines());
}

PlistDictionary recordNamed(const LibraryKind& kind, const std::string& name) {
  const PlistArray records = recordsOf(kind);
  const auto found = candidatesFor(kind, records, name);
  if (found.size() == 1) return *found.front();
  if (found.empty()) {
    const std::int64_t nearest = ZYMCachingModel::indexOfMostSimilarObjectToString_inArray_forKey(
        name, &records, kind.nameKey);
    std::string hint;
    if (nearest >= 0) {
      const PlistDictionary& record =
          *records.find(static_cast<std::size_t>(nearest))->dictionary();
      hint = "; the nearest name is '" + printable(record.stringValue(kind.nameKey)) + "'";
    }
    throw InputError("no " + std::string(kind.singular) + " is named '" + printable(name) + "'" +
                     hint);
  }
  std::string candidates;
  for (const PlistDictionary* record : found) {
    candidates += "\n  " + printable(record->stringValue(kind.nameKey)) + "  " +
                  printable(record->stringValue(keys::UUID));
  }
  throw InputError("'" + printable(name) + "' may be any of these:" + candidates);
}

void setValues(const LibraryKind& kind, PlistDictionary& record,
               const std::vector<std::string>& assignments) {
  for (const std::string& assignment : assignments) {
    const std::size_t equals = assignment.find('=');
    if (equals == std::string::npos) {
      throw UsageError("'" + printable(assignment) + "' is not of the form KEY=VALUE");
    }
    const std::string key = assignment.substr(0, equals);
    const std::string text = assignment.substr(equals + 1);
    if (uppercaseString(key) == uppercaseString(kind.nameKey.text()) ||
        uppercaseString(key) == "NAME") {
      record.set(kind.nameKey, text);
      continue;
    }
    const RecordValue& value = valueNamed(kind, key);
    record.set(value.key, value.toStorage(text));
  }
}

}  // namespace zym::host
