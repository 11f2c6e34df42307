#include "zymcore/interchange/ParsedIngredients.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <span>
#include <utility>

#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/interchange/ParsedRecipeKeys.h"
#include "zymcore/interchange/ZYMFileImportOperation.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMOtherIngredients.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/platform/NSException.h"

namespace zym {
namespace {

/// What a text that contains a word means.
struct Meaning {
  std::string_view word;
  std::string_view meaning;
};

constexpr Meaning originPrefixes[] = {
    {"America", "US "}, {"U.S.", "US "}, {"Britain", "UK "}, {"England", "UK "}, {"British", "UK "},
};
constexpr Meaning hopUses[] = {
    {"Dry Hop", words::DryHopped},
    {"First Wort", words::FirstWortHopped},
    {"Aroma", words::AtTurnOff},
    {"Mash", words::InMash},
};
constexpr Meaning otherUses[] = {
    {"Mash", words::InMash},
    {"Primary", words::InFermenter},
    {"Secondary", words::InFermenter},
    {"Bottling", words::InDispenseVessel},
};

// The last one that is contained counts.
std::string_view meaningOf(std::string_view text, std::span<const Meaning> meanings,
                           std::string_view otherwise) {
  for (const Meaning& m : meanings) {
    if (containsSubstring(text, m.word)) otherwise = m.meaning;
  }
  return otherwise;
}

/// What the library calls something else.
struct OtherName {
  std::string_view name;
  std::string_view here;
  /// Only of things from there.
  std::string_view origin = {};
};
constexpr OtherName otherNames[] = {
    {"crystal", "Caramel", "America"},
    {"maris otter", "Pale Malt"},
    {"corn sugar", "Corn Sugar/Dextrose"},
};

std::string replacingIgnoringCase(std::string_view text, std::string_view what,
                                  std::string_view with) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  std::string result;
  while (true) {
    const auto found = std::search(text.begin(), text.end(), what.begin(), what.end(),
                                   [&](char a, char b) { return lower(a) == lower(b); });
    result.append(text.begin(), found);
    if (found == text.end()) return result;
    result += with;
    text = text.substr(static_cast<std::size_t>(found - text.begin()) + what.size());
  }
}

std::string nameHere(const std::string& name, std::string_view origin) {
  const auto* other = std::ranges::find_if(otherNames, [&](const OtherName& known) {
    return (known.origin.empty() || containsSubstring(origin, known.origin)) &&
           containsSubstring(name, known.name);
  });
  return other == std::end(otherNames) ? name
                                       : replacingIgnoringCase(name, other->name, other->here);
}

std::string originPrefix(const PlistDictionary& ingredient) {
  const std::string* origin = ingredient.string(keys::ORIGIN);
  return origin ? std::string(meaningOf(*origin, originPrefixes, *origin + " ")) : "";
}

/// The record with the name nearest to the text.
PlistDictionary nearestRecord(ZYMCachingModel& library, std::string_view kind,
                              std::string_view nameInFile, const std::string& text,
                              const PlistDictionary* filter, std::vector<ImportMatch>& matches) {
  try {
    PlistDictionary record =
        library.ingredientWithNameMostSimilarToString_matchingKeysAndValues(text, filter);
    addMatch(matches, kind, std::string(nameInFile), text,
             record.stringValue(library.nameKeyInRecords()));
    return record;
  } catch (const NSException& exception) {
    if (exception.name() != NSRangeException) throw;
    throw NSException(NSRangeException,
                      "no " + std::string(kind) + " of the library can stand for \"" + text + "\"");
  }
}

struct Copied {
  KeyName from;
  KeyName to;
};

void copy(std::span<const Copied> values, const PlistDictionary& from, PlistDictionary& to) {
  for (const Copied& value : values) {
    if (const PlistValue* found = from.find(value.from)) to.set(value.to, *found);
  }
}

void append(PlistDictionary record, PlistDictionary& recipe, KeyName key) {
  if (PlistArray* additions = recipe.editArray(key)) {
    additions->append(std::move(record));
  } else {
    recipe.set(key, PlistArray{std::move(record)});
  }
}

std::string fermentableText(const PlistDictionary& fermentable) {
  std::string text = originPrefix(fermentable);
  if (const std::string* name = fermentable.string(keys::NAME)) {
    text += nameHere(*name, fermentable.stringValue(keys::ORIGIN));
  }
  for (const std::string_view kind : {"Extract", "Sugar"}) {
    if (containsSubstring(fermentable.stringValue(keys::TYPE), kind)) {
      text = std::string(kind) + " - " + text;
    }
  }
  return text;
}

// A hop's minutes at each time of addition from the fourth; the first three are in for the boil.
constexpr std::int64_t hopMinutes[] = {90, 80, 70, 60, 55, 50, 45, 40, 35, 30,
                                       25, 20, 15, 10, 5,  1,  0,  0,  0,  0};
constexpr std::size_t timesForTheBoil = std::size(words::hopWhen) - std::size(hopMinutes);

// From the last one down to the second: of equally near times the later one.
std::size_t positionInBoil(std::int64_t time, std::int64_t boil) {
  time = std::min(std::max<std::int64_t>(time, 0), boil);
  std::size_t position = 0;
  std::int64_t least = 300;
  for (std::size_t i = std::size(words::hopWhen) - 1; i >= 1; --i) {
    const std::int64_t minutes = i < timesForTheBoil ? boil : hopMinutes[i - timesForTheBoil];
    const std::int64_t difference = std::abs(time - minutes);
    if (difference >= least) continue;
    position = i;
    least = difference;
  }
  return position;
}

std::size_t positionOfHop(const PlistDictionary& hop, std::int64_t boil) {
  const std::string_view use = hop.stringValue(keys::USE);
  if (containsSubstring(use, "Boil")) return positionInBoil(hop.integerValue(keys::TIME), boil);
  const std::string_view when = nearestWord(meaningOf(use, hopUses, ""), words::hopWhen);
  return static_cast<std::size_t>(words::positionOf(when, words::hopWhen));
}

}  // namespace

std::string_view nearestWord(std::string_view text, words::Vocabulary vocabulary) {
  PlistArray array;
  for (const std::string_view word : vocabulary) array.append(word);
  const std::int64_t index =
      ZYMFileImportOperation::indexOfMostSimilarObjectToString_inArray_forKey(text, &array,
                                                                              std::nullopt);
  return vocabulary[static_cast<std::size_t>(index)];
}

void addMatch(std::vector<ImportMatch>& matches, std::string_view kind, std::string nameInFile,
              std::string textLookedUp, std::string_view nameMatched) {
  const double similarity = similarityWithString(textLookedUp, nameMatched);
  matches.push_back({kind, std::move(nameInFile), std::move(textLookedUp), std::string(nameMatched),
                     std::isnan(similarity) ? 0 : similarity});
}

void takeFermentables(const PlistDictionary& parsed, PlistDictionary& recipe,
                      std::vector<ImportMatch>& matches) {
  static constexpr Copied values[] = {{keys::AMOUNT, keys::Amount},
                                      {keys::YIELD, keys::Extract},
                                      {keys::COLOR, keys::Color},
                                      {keys::MOISTURE, keys::Moisture}};
  for (const PlistDictionary& fermentable : parsed.rows(keys::FERMENTABLES)) {
    PlistDictionary record = nearestRecord(ZYMFermentables::sharedInstance(), words::Fermentable,
                                           fermentable.stringValue(keys::NAME),
                                           fermentableText(fermentable), nullptr, matches);
    const std::string_view type = fermentable.stringValue(keys::TYPE);
    const bool isGrain = containsSubstring(type, "Grain") || containsSubstring(type, "Adjunct");
    record.set(keys::IsGrain, isGrain ? "1" : "0");
    record.set(keys::MustBeMashed, isGrain ? "1" : "0");
    record.set(keys::When, isGrain ? words::InMashSteeped : words::StartOfBoil);
    record.set(keys::Moisture, "4.0");
    copy(values, fermentable, record);
    append(std::move(record), recipe, keys::FermentableIngredients);
  }
}

void takeHops(const PlistDictionary& parsed, PlistDictionary& recipe,
              std::vector<ImportMatch>& matches) {
  static constexpr Copied values[] = {{keys::AMOUNT, keys::Amount}, {keys::ALPHA, keys::Alpha}};
  static constexpr std::int64_t longestBoil = 1'000'000;
  const std::int64_t boil =
      std::clamp(recipe.integerValue(keys::BoilDuration), -longestBoil, longestBoil);
  for (const PlistDictionary& hop : parsed.rows(keys::HOPS)) {
    const std::string_view name = hop.stringValue(keys::NAME);
    PlistDictionary record = nearestRecord(ZYMHops::sharedInstance(), words::Hop, name,
                                           originPrefix(hop) + std::string(name), nullptr, matches);
    const bool isPellets = containsSubstring(hop.stringValue(keys::FORM), "Pellet");
    record.set(keys::Form, isPellets ? words::LoosePelletHops : words::LooseWholeHops);
    const std::size_t position = positionOfHop(hop, boil);
    record.set(keys::When, words::hopWhen[position]);
    if (position >= timesForTheBoil) {
      record.set(keys::Minutes, std::to_string(hopMinutes[position - timesForTheBoil]));
    } else {
      record.setOrRemove(keys::Minutes, recipe.find(keys::BoilDuration));
    }
    copy(values, hop, record);
    append(std::move(record), recipe, keys::HopIngredients);
  }
}

void takeOthers(const PlistDictionary& parsed, PlistDictionary& recipe,
                std::vector<ImportMatch>& matches) {
  static constexpr Copied values[] = {{keys::AMOUNT, keys::Amount}};
  for (const PlistDictionary& other : parsed.rows(keys::MISCS)) {
    const std::string name(other.stringValue(keys::NAME));
    PlistDictionary record = nearestRecord(ZYMOtherIngredients::sharedInstance(), words::Other,
                                           name, name, nullptr, matches);
    record.set(keys::When, meaningOf(other.stringValue(keys::USE), otherUses, words::InBoil));
    copy(values, other, record);
    append(std::move(record), recipe, keys::OtherIngredients);
  }
}

void takeYeasts(const PlistDictionary& parsed, PlistDictionary& recipe,
                std::vector<ImportMatch>& matches) {
  static constexpr Copied filters[] = {{keys::YEAST_FORM, keys::YeastType},
                                       {keys::YEAST_TYPE, keys::BeerType}};
  static constexpr Copied values[] = {
      {keys::Name, keys::Name}, {keys::Attenuation, keys::Attenuation}, {keys::UUID, keys::UUID}};
  if (!parsed.contains(keys::YeastIngredients)) return;
  PlistArray yeasts;
  for (const PlistDictionary& yeast : parsed.rows(keys::YeastIngredients)) {
    const std::string name(yeast.stringValue(keys::YEAST_NAME));
    PlistDictionary filter;
    copy(filters, yeast, filter);
    PlistDictionary record{
        {keys::Amount, "1"}, {keys::YeastAmountType, words::CommercialPack}, {keys::UsageNote, ""}};
    try {
      copy(values,
           nearestRecord(ZYMYeasts::sharedInstance(), words::Yeast, name, name,
                         filter.empty() ? nullptr : &filter, matches),
           record);
    } catch (const NSException& exception) {
      if (exception.name() != NSRangeException) throw;
      continue;
    }
    yeasts.append(std::move(record));
  }
  recipe.set(keys::YeastIngredients, std::move(yeasts));
}

}  // namespace zym
