#include "app/values/ValueForms.h"

#include <cmath>
#include <ctime>
#include <optional>
#include <vector>

#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/LibraryKind.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/platform/text/NSDateFormatter.h"
#include "zymcore/platform/text/NSLocale.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/transformers/ZYMBeerColorValueTransformer.h"
#include "zymcore/transformers/ZYMGravityValueTransformer.h"
#include "zymcore/transformers/ZYMHopWeightValueTransformer.h"
#include "zymcore/transformers/ZYMMaltColorValueTransformer.h"
#include "zymcore/transformers/ZYMPercentValueTransformer.h"
#include "zymcore/transformers/ZYMSaltWeightValueTransformer.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"
#include "zymcore/transformers/ZYMVolumeValueTransformer.h"
#include "zymcore/transformers/ZYMWaterGrainValueTransformer.h"
#include "zymcore/transformers/ZYMWeightValueTransformer.h"

namespace zym::host {
namespace {

template <class Transformer>
std::string shown(const PlistValue* stored) {
  return stored ? Transformer::convertForDisplay(stored) : "";
}

[[noreturn]] void refuse(const std::string& typed, const std::string& instead) {
  throw UsageError(label("'%1' is no value here; give %2", {printable(typed), instead}));
}

void requireNumber(const std::string& typed) {
  if (delocalizeValue(typed).empty()) refuse(typed, label("a number"));
}

template <class Transformer>
PlistValue taken(const std::string& typed) {
  requireNumber(typed);
  const PlistValue text(typed);
  return Transformer::convertForStorage(&text);
}

std::string nameIn(ZYMCachingModel& library, const PlistValue* uuid) {
  const auto record = library.itemWithUUID(show::text(uuid));
  return record ? std::string(record->stringValue(library.nameKeyInRecords())) : "";
}

/// The first moment of a day written as 2026-03-01, local time.
std::optional<NSDate> dayOf(const std::string& typed) {
  std::tm day{};
  const char* const end = strptime(typed.c_str(), "%Y-%m-%d", &day);
  if (!end || *end != '\0') return std::nullopt;
  day.tm_isdst = -1;
  const int number = day.tm_mday;
  const std::time_t moment = std::mktime(&day);
  if (day.tm_mday != number) return std::nullopt;  // such as the 31st of April
  return NSDate::dateWithTimeIntervalSince1970(static_cast<double>(moment));
}

std::string uuidNamed(std::string_view kind, const std::string& typed) {
  return std::string(recordNamed(libraryKindNamed(kind), typed).stringValue(keys::UUID));
}

}  // namespace

namespace show {

std::string text(const PlistValue* stored) {
  return stored && stored->string() ? *stored->string() : "";
}
std::string percent(const PlistValue* stored) {
  return shown<ZYMPercentValueTransformer>(stored);
}
std::string volume(const PlistValue* stored) {
  return shown<ZYMVolumeValueTransformer>(stored);
}
std::string gravity(const PlistValue* stored) {
  return shown<ZYMGravityValueTransformer>(stored);
}
std::string beerColor(const PlistValue* stored) {
  return shown<ZYMBeerColorValueTransformer>(stored);
}
std::string maltColor(const PlistValue* stored) {
  return shown<ZYMMaltColorValueTransformer>(stored);
}
std::string temperature(const PlistValue* stored) {
  return shown<ZYMTemperatureValueTransformer>(stored);
}
std::string waterGrain(const PlistValue* stored) {
  return shown<ZYMWaterGrainValueTransformer>(stored);
}
std::string number(const PlistValue* stored) {
  return localizedStringWithValue_decimalPlaces(stored, 1);
}
std::string milligrams(const PlistValue* stored) {
  return number(stored) + " mg/l";
}
std::string minutes(const PlistValue* stored) {
  return localizedStringWithValue_decimalPlaces(stored, 0) + " min";
}
std::string grammes(const PlistValue* stored) {
  return localizedStringWithValue_decimalPlaces(stored, 0) + " g";
}
std::string flag(const PlistValue* stored) {
  return label(stored && stored->boolValue() ? "yes" : "no");
}
std::string water(const PlistValue* stored) {
  return nameIn(ZYMWaters::sharedInstance(), stored);
}
std::string schedule(const PlistValue* stored) {
  return nameIn(ZYMMashSchedules::sharedInstance(), stored);
}

}  // namespace show

namespace take {

PlistValue text(const std::string& typed) {
  return typed;
}
PlistValue percent(const std::string& typed) {
  return taken<ZYMPercentValueTransformer>(typed);
}
PlistValue volume(const std::string& typed) {
  return taken<ZYMVolumeValueTransformer>(typed);
}
PlistValue weight(const std::string& typed) {
  return taken<ZYMWeightValueTransformer>(typed);
}
PlistValue hopWeight(const std::string& typed) {
  return taken<ZYMHopWeightValueTransformer>(typed);
}
PlistValue saltWeight(const std::string& typed) {
  return taken<ZYMSaltWeightValueTransformer>(typed);
}
PlistValue gravity(const std::string& typed) {
  return taken<ZYMGravityValueTransformer>(typed);
}
PlistValue maltColor(const std::string& typed) {
  return taken<ZYMMaltColorValueTransformer>(typed);
}
PlistValue temperature(const std::string& typed) {
  return taken<ZYMTemperatureValueTransformer>(typed);
}
PlistValue waterGrain(const std::string& typed) {
  return taken<ZYMWaterGrainValueTransformer>(typed);
}
PlistValue number(const std::string& typed) {
  requireNumber(typed);
  return delocalizeValue(typed);
}
PlistValue minutes(const std::string& typed) {
  requireNumber(typed);
  const double minutes = std::round(floatValueWithLocalizedValue(typed));
  if (!(minutes >= 0 && minutes < 1e6)) refuse(typed, label("a number of minutes"));
  return std::to_string(static_cast<long>(minutes));
}

PlistValue flag(const std::string& typed) {
  const std::string word = lowercaseString(typed);
  if (word == label("yes") || word == "yes" || word == "true" || word == "1") return "1";
  if (word == label("no") || word == "no" || word == "false" || word == "0") return "0";
  refuse(typed, label("yes or no"));
}

PlistValue day(const std::string& typed) {
  if (const auto day = dayOf(typed)) return *day;
  const auto inLocale = NSDateFormatter(NSLocale::currentLocale()).dateFromString(typed);
  if (inLocale) return *inLocale;
  refuse(typed, label("a day such as 2026-03-01"));
}

PlistValue water(const std::string& typed) {
  return uuidNamed("waters", typed);
}
PlistValue schedule(const std::string& typed) {
  return uuidNamed("schedules", typed);
}

std::string_view wordOf(words::Vocabulary vocabulary, const std::string& typed) {
  const std::string upper = uppercaseString(typed);
  std::vector<std::string_view> found;
  std::string choices;
  for (const std::string_view word : vocabulary) {
    const std::string candidate = uppercaseString(word);
    if (candidate == upper) return word;
    if (!upper.empty() && candidate.starts_with(upper)) found.push_back(word);
    choices.append(choices.empty() ? "" : ", ").append(word);
  }
  if (found.size() == 1) return found.front();
  refuse(typed, label("one of %1", {choices}));
}

}  // namespace take
}  // namespace zym::host
