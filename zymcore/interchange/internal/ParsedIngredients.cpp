#include "zymcore/interchange/internal/ParsedIngredients.h"

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
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMOtherIngredients.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NumberText.h"

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
  const std::string* origin = ingredient.string(parsedKeys::ORIGIN);
  return origin ? std::string(meaningOf(*origin, originPrefixes, *origin + " ")) : "";
}

/// What the file says of an ingredient, and the text to look for.
struct Wanted {
  const PlistDictionary& ingredient;
  std::string text;
};

/// What is alike in an ingredient of a file and its like in the library, under their keys.
struct Figure {
  KeyName inFile;
  KeyName inLibrary;
};

std::optional<double> figureAt(const PlistDictionary& ingredient, KeyName key) {
  return ingredient.contains(key) ? std::optional(ingredient.doubleValue(key)) : std::nullopt;
}

[[noreturn]] void nothingToStandFor(std::string_view kind) {
  throw NSException(NSRangeException, "the library has no record of the kind " + std::string(kind) +
                                          " that could stand for another");
}

/// Hands over each ingredient with a copy of the record with the name nearest to its text.
template <class Take>
void forNearestRecords(ZYMCachingModel& library, std::string_view kind,
                       const std::optional<Figure>& figure, const std::vector<Wanted>& wanted,
                       std::vector<ImportMatch>& matches, Take take) {
  std::vector<std::string> texts;
  for (const Wanted& one : wanted) texts.push_back(one.text);
  std::vector<PlistDictionary> records;
  try {
    records = library.ingredientsWithNamesMostSimilarToStrings(texts);
  } catch (const NSException& exception) {
    if (exception.name() != NSRangeException) throw;
    nothingToStandFor(kind);
  }
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    ImportMatch match{kind, std::string(wanted[i].ingredient.stringValue(parsedKeys::NAME)),
                      wanted[i].text,
                      std::string(records[i].stringValue(library.nameKeyInRecords()))};
    if (figure) {
      match.figureInFile = figureAt(wanted[i].ingredient, figure->inFile);
      match.figureMatched = figureAt(records[i], figure->inLibrary);
    }
    addMatch(matches, std::move(match));
    take(wanted[i].ingredient, std::move(records[i]));
  }
}

template <class TextOf>
std::vector<Wanted> wantedOf(const PlistDictionary& parsed, KeyName key, TextOf textOf) {
  std::vector<Wanted> wanted;
  for (const PlistDictionary& ingredient : parsed.rows(key)) {
    wanted.push_back({ingredient, textOf(ingredient)});
  }
  return wanted;
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
  if (const std::string* name = fermentable.string(parsedKeys::NAME)) {
    text += nameHere(*name, fermentable.stringValue(parsedKeys::ORIGIN));
  }
  for (const std::string_view kind : {"Extract", "Sugar"}) {
    if (containsSubstring(fermentable.stringValue(parsedKeys::TYPE), kind)) {
      text = std::string(kind) + " - " + text;
    }
  }
  return text;
}

// From the last one down to the second: of equally near times the later one.
std::size_t positionInBoil(std::int64_t time, std::int64_t boil) {
  time = std::min(std::max<std::int64_t>(time, 0), boil);
  std::size_t position = 0;
  std::int64_t least = 300;
  for (std::size_t i = std::size(words::hopWhen) - 1; i >= 1; --i) {
    const std::string_view set = words::hopMinutes[i];
    const std::int64_t minutes = set.empty() ? boil : integerValue(set);
    const std::int64_t difference = std::abs(time - minutes);
    if (difference >= least) continue;
    position = i;
    least = difference;
  }
  return position;
}

std::size_t positionOfHop(const PlistDictionary& hop, std::int64_t boil) {
  const std::string_view use = hop.stringValue(parsedKeys::USE);
  if (containsSubstring(use, "Boil"))
    return positionInBoil(hop.integerValue(parsedKeys::TIME), boil);
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

void addMatch(std::vector<ImportMatch>& matches, ImportMatch match) {
  const double similarity = similarityWithString(match.textLookedUp, match.nameMatched);
  match.similarity = std::isnan(similarity) ? 0 : similarity;
  matches.push_back(std::move(match));
}

void takeFermentables(const PlistDictionary& parsed, PlistDictionary& recipe,
                      std::vector<ImportMatch>& matches) {
  static constexpr Copied values[] = {{parsedKeys::AMOUNT, keys::Amount},
                                      {parsedKeys::YIELD, keys::Extract},
                                      {parsedKeys::COLOR, keys::Color},
                                      {parsedKeys::MOISTURE, keys::Moisture}};
  forNearestRecords(
      ZYMFermentables::sharedInstance(), words::Fermentable, Figure{parsedKeys::COLOR, keys::Color},
      wantedOf(parsed, parsedKeys::FERMENTABLES, fermentableText), matches,
      [&](const PlistDictionary& fermentable, PlistDictionary record) {
        const std::string_view type = fermentable.stringValue(parsedKeys::TYPE);
        const bool isGrain = containsSubstring(type, "Grain") || containsSubstring(type, "Adjunct");
        record.set(keys::IsGrain, isGrain ? "1" : "0");
        record.set(keys::MustBeMashed, isGrain ? "1" : "0");
        record.set(keys::When, isGrain ? words::InMashSteeped : words::StartOfBoil);
        record.set(keys::Moisture, "4.0");
        copy(values, fermentable, record);
        append(std::move(record), recipe, keys::FermentableIngredients);
      });
}

void takeHops(const PlistDictionary& parsed, PlistDictionary& recipe,
              std::vector<ImportMatch>& matches) {
  static constexpr Copied values[] = {{parsedKeys::AMOUNT, keys::Amount},
                                      {parsedKeys::ALPHA, keys::Alpha}};
  static constexpr std::int64_t longestBoil = 1'000'000;
  const std::int64_t boil =
      std::clamp(recipe.integerValue(keys::BoilDuration), -longestBoil, longestBoil);
  const auto textOf = [](const PlistDictionary& hop) {
    return originPrefix(hop) + std::string(hop.stringValue(parsedKeys::NAME));
  };
  forNearestRecords(
      ZYMHops::sharedInstance(), words::Hop, Figure{parsedKeys::ALPHA, keys::Alpha},
      wantedOf(parsed, parsedKeys::HOPS, textOf), matches,
      [&](const PlistDictionary& hop, PlistDictionary record) {
        const bool isPellets = containsSubstring(hop.stringValue(parsedKeys::FORM), "Pellet");
        record.set(keys::Form, isPellets ? words::LoosePelletHops : words::LooseWholeHops);
        const std::size_t position = positionOfHop(hop, boil);
        record.set(keys::When, words::hopWhen[position]);
        if (const std::string_view set = words::hopMinutes[position]; !set.empty()) {
          record.set(keys::Minutes, set);
        } else {
          record.setOrRemove(keys::Minutes, recipe.find(keys::BoilDuration));
        }
        copy(values, hop, record);
        append(std::move(record), recipe, keys::HopIngredients);
      });
}

void takeOthers(const PlistDictionary& parsed, PlistDictionary& recipe,
                std::vector<ImportMatch>& matches) {
  static constexpr Copied values[] = {{parsedKeys::AMOUNT, keys::Amount}};
  const auto textOf = [](const PlistDictionary& other) {
    return std::string(other.stringValue(parsedKeys::NAME));
  };
  forNearestRecords(ZYMOtherIngredients::sharedInstance(), words::Other, std::nullopt,
                    wantedOf(parsed, parsedKeys::MISCS, textOf), matches,
                    [&](const PlistDictionary& other, PlistDictionary record) {
                      record.set(keys::When, meaningOf(other.stringValue(parsedKeys::USE),
                                                       otherUses, words::InBoil));
                      copy(values, other, record);
                      append(std::move(record), recipe, keys::OtherIngredients);
                    });
}

void takeYeasts(const PlistDictionary& parsed, PlistDictionary& recipe,
                std::vector<ImportMatch>& matches) {
  static constexpr Copied filters[] = {{parsedKeys::YEAST_FORM, keys::YeastType},
                                       {parsedKeys::YEAST_TYPE, keys::BeerType}};
  static constexpr Copied values[] = {
      {keys::Name, keys::Name}, {keys::Attenuation, keys::Attenuation}, {keys::UUID, keys::UUID}};
  if (!parsed.contains(keys::YeastIngredients)) return;
  // The recipe's attenuation is the lowest of its yeasts', so of one yeast it is its own.
  const PlistArray* yeastsInFile = parsed.array(keys::YeastIngredients);
  const std::optional<double> attenuation = yeastsInFile && yeastsInFile->size() == 1
                                                ? figureAt(parsed, keys::Attenuation)
                                                : std::nullopt;
  PlistArray yeasts;
  for (const PlistDictionary& yeast : parsed.rows(keys::YeastIngredients)) {
    const std::string name(yeast.stringValue(parsedKeys::YEAST_NAME));
    PlistDictionary filter;
    copy(filters, yeast, filter);
    PlistDictionary record{
        {keys::Amount, "1"}, {keys::YeastAmountType, words::CommercialPack}, {keys::UsageNote, ""}};
    try {
      ZYMYeasts& library = ZYMYeasts::sharedInstance();
      const PlistDictionary nearest =
          library.ingredientWithNameMostSimilarToString_matchingKeysAndValues(
              name, filter.empty() ? nullptr : &filter);
      addMatch(matches, {words::Yeast, name, name, std::string(nearest.stringValue(keys::Name)),
                         attenuation, figureAt(nearest, keys::Attenuation)});
      copy(values, nearest, record);
    } catch (const NSException& exception) {
      if (exception.name() != NSRangeException) throw;
      continue;
    }
    yeasts.append(std::move(record));
  }
  recipe.set(keys::YeastIngredients, std::move(yeasts));
}

}  // namespace zym
