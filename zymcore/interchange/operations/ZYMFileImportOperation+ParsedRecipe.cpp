#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/interchange/ParsedRecipeKeys.h"
#include "zymcore/interchange/internal/ParsedIngredients.h"
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/store/ZYMCachingModel.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"

namespace zym {
namespace {

// Of equally near words the first is taken, so the orders matter; they aren't those of brewing.
constexpr std::string_view carbonations[] = {words::PrimedWithSugar,   words::PrimedWithHoney,
                                             words::PrimedWithDME,     words::ForceCarbonated,
                                             words::KrausenedWithWort, words::Nothing};

constexpr auto lageringsFirst = [] {
  std::array<std::string_view, std::size(words::conditionings)> result;
  const auto* firstLagering = std::ranges::find_if(
      words::conditionings, [](std::string_view word) { return word.starts_with("Lagered"); });
  std::rotate_copy(std::begin(words::conditionings), firstLagering, std::end(words::conditionings),
                   result.begin());
  return result;
}();

// A name is compared with every one of a library, letter by letter. No recipe has a tenth of this.
constexpr std::size_t mostToMatch = 200'000;
constexpr std::size_t shareOfAName = 100;

std::size_t lengthToMatch(const PlistDictionary& record) {
  std::size_t length = shareOfAName;
  for (const KeyName key :
       {parsedKeys::NAME, parsedKeys::ORIGIN, parsedKeys::YEAST_NAME, parsedKeys::STYLENAME,
        parsedKeys::TYPE, parsedKeys::PRIMING_SUGAR_NAME}) {
    length += record.stringValue(key).size();
  }
  return length;
}

void refuseEndlessMatching(const PlistDictionary& parsed) {
  std::size_t length = lengthToMatch(parsed);
  for (const KeyName key :
       {parsedKeys::FERMENTABLES, parsedKeys::HOPS, parsedKeys::MISCS, keys::YeastIngredients}) {
    for (const PlistDictionary& record : parsed.rows(key)) length += lengthToMatch(record);
  }
  if (length > mostToMatch) {
    throw NSException(NSInvalidArgumentException, "more names than any recipe has");
  }
}

std::string mashTypeText(const PlistDictionary& parsed) {
  std::string text(parsed.stringValue(parsedKeys::TYPE));
  if (containsSubstring(text, "Partial Mash")) text = "Mini-Mash";
  if (containsSubstring(text, "All Grain")) text = "Full Mash";
  return text;
}

// A file that says it isn't force carbonated counts as if it were.
std::string_view carbonationText(const PlistDictionary& parsed) {
  if (parsed.contains(parsedKeys::FORCED_CARBONATION)) return words::ForceCarbonated;
  const std::string* sugar = parsed.string(parsedKeys::PRIMING_SUGAR_NAME);
  return sugar ? std::string_view(*sugar) : words::Nothing;
}

std::string conditioningText(const PlistDictionary& parsed) {
  if (!parsed.contains(parsedKeys::AGE)) return "Matured for 4 weeks";
  const std::int64_t weeks = integerValue(std::round(parsed.doubleValue(parsedKeys::AGE) / 7.0));
  const std::string period =
      weeks <= 14
          ? std::to_string(weeks) + " weeks"
          : std::to_string(integerValue(std::round(static_cast<double>(weeks) / 4.1))) + " months";
  const bool isCold =
      parsed.contains(parsedKeys::AGE_TEMP) && parsed.doubleValue(parsedKeys::AGE_TEMP) < 8.0;
  return (isCold ? "Lagered for " : "Matured for ") + period;
}

void matchStyle(const PlistDictionary& parsed, PlistDictionary& recipe,
                std::vector<ImportMatch>& matches) {
  const std::string text(parsed.stringValue(parsedKeys::STYLENAME));
  if (text == parsedKeys::noStyle) {
    recipe.setOrRemove(keys::StyleUUID, ZYMStyles::noChosenStyle().find(keys::UUID));
    return;
  }
  const std::optional<PlistDictionary> style =
      ZYMStyles::sharedInstance().styleWithNameMostSimilarToString_inGuidelines(
          text, ZYMStyles::userPreferredStyleGuidelines());
  if (!style) return;
  recipe.setOrRemove(keys::StyleUUID, style->find(keys::UUID));
  addMatch(matches, {"Style", text, text, std::string(style->stringValue(keys::Name))});
}

std::string noteOf(const PlistDictionary& step) {
  const auto localized = [](std::string_view text) { return Localized_String(text); };
  const auto field = [&](std::string_view title, std::string_view value) {
    return stringWithFormat("%@: %@\t", {localized(title), value});
  };
  return field("Title", step.stringValue(parsedKeys::NAME)) +
         field("Type", step.stringValue(parsedKeys::TYPE)) +
         field("Temp", ZYMTemperatureValueTransformer::convertForDisplay(
                           step.find(parsedKeys::STEP_TEMP))) +
         stringWithFormat("%@: %ld %@\n", {localized("Duration"),
                                           std::to_string(step.integerValue(parsedKeys::STEP_TIME)),
                                           localized("mins")});
}

// A schedule of another program stays as a note to the brewer.
void keepMashAsNotes(const PlistDictionary& parsed, PlistDictionary& recipe) {
  if (const auto none = ZYMMashSchedules::sharedInstance().noChosenSchedule()) {
    recipe.set(keys::MashSchedule, *none);
  }
  if (!parsed.contains(parsedKeys::MASHSTEPS)) return;
  std::string notes(recipe.stringValue(keys::Notes));
  notes += stringWithFormat("\n\n%@:\n\n", {Localized_String("Mash Schedule in imported recipe")});
  for (const PlistDictionary& step : parsed.rows(parsedKeys::MASHSTEPS)) notes += noteOf(step);
  recipe.set(keys::Notes, std::move(notes));
}

}  // namespace

std::int64_t ZYMFileImportOperation::indexOfMostSimilarObjectToString_inArray_forKey(
    std::string_view text, const PlistArray* array, const std::optional<KeyName>& key) {
  if (!array) return -1;
  return ZYMCachingModel::indexOfMostSimilarObjectToString_inArray_forKey(text, array, key);
}

PlistDictionary ZYMFileImportOperation::processParsedRecipe(const PlistDictionary& parsed) {
  refuseEndlessMatching(parsed);
  matches_.clear();
  PlistDictionary recipe = emptyRecipe();
  recipe.remove(keys::Profile);
  const PlistDictionary empty = recipe;
  for (const PlistEntry& entry : empty) {
    if (const PlistValue* value = parsed.find(entry.key)) recipe.set(entry.key, *value);
  }
  matchStyle(parsed, recipe, matches_);
  recipe.set(keys::MashType, nearestWord(mashTypeText(parsed), words::mashTypes));
  recipe.set(keys::Carbonation, nearestWord(carbonationText(parsed), carbonations));
  recipe.set(keys::Conditioning, nearestWord(conditioningText(parsed), lageringsFirst));
  takeFermentables(parsed, recipe, matches_);
  takeHops(parsed, recipe, matches_);
  takeOthers(parsed, recipe, matches_);
  takeYeasts(parsed, recipe, matches_);
  keepMashAsNotes(parsed, recipe);
  return recipe;
}

}  // namespace zym
