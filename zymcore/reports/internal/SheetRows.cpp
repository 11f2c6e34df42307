#include "zymcore/reports/internal/SheetRows.h"

#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/ZYMHTML.h"
#include "zymcore/reports/internal/PageFigures.h"
#include "zymcore/reports/internal/Template.h"
#include "zymcore/transformers/ZYMHopWeightValueTransformer.h"
#include "zymcore/transformers/ZYMPercentValueTransformer.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"
#include "zymcore/transformers/ZYMWeightValueTransformer.h"

namespace zym::pages {
namespace {

std::string oneDecimalAt(const PlistDictionary& row, KeyName key) {
  return decimals(row.floatValue(key), 1);
}
std::string percentageAt(const PlistDictionary& row, KeyName key) {
  return ZYMHTML::trimToOneDecimalPlaceAppendingPercent(row.find(key));
}
std::string yeastAmountAt(const PlistDictionary& row, KeyName /*key*/) {
  return yeastAmount(row);
}
std::string minutesAt(const PlistDictionary& row, KeyName /*key*/) {
  return whole(row.doubleValue(keys::Duration));
}

struct Figure {
  KeyName key;
  std::string (*shown)(const PlistDictionary& row, KeyName key);
};
struct Word {
  KeyName key;
  words::Vocabulary vocabulary;
};

constexpr Figure fermentableFigures[] = {
    {keys::Amount, shownAt<ZYMWeightValueTransformer>},
    {keys::MCUForAddition, oneDecimalAt},
    {keys::Percentage, percentageAt},
};
constexpr Figure hopFigures[] = {
    {keys::Amount, shownAt<ZYMHopWeightValueTransformer>},
    {keys::IBUForAddition, oneDecimalAt},
    {keys::Alpha, shownAt<ZYMPercentValueTransformer>},
};
constexpr Figure otherFigures[] = {{keys::Amount, shownAt<ZYMWeightValueTransformer>}};
constexpr Figure yeastFigures[] = {{keys::Amount, yeastAmountAt}};
constexpr Figure stepFigures[] = {
    {keys::Temperature, shownAt<ZYMTemperatureValueTransformer>},
    {keys::StepText, minutesAt},
};

constexpr Word fermentableWords[] = {{keys::When, words::fermentableWhen}};
constexpr Word hopWords[] = {{keys::When, words::hopWhen}, {keys::Form, words::hopForms}};
constexpr Word otherWords[] = {{keys::When, words::otherWhen}};
constexpr Word stepWords[] = {{keys::StepType, words::stepTypes}};

struct TableForm {
  KeyName source;
  KeyName result;
  std::string_view rowTemplate;
  std::span<const Figure> figures;
  std::span<const Word> words;
};
constexpr TableForm tables[] = {
    {keys::FermentableIngredients, keys::FermentableItems, "FermentableItem", fermentableFigures,
     fermentableWords},
    {keys::HopIngredients, keys::HopItems, "HopItem", hopFigures, hopWords},
    {keys::OtherIngredients, keys::OtherItems, "OtherItem", otherFigures, otherWords},
    {keys::YeastIngredients, keys::YeastItems, "YeastItem", yeastFigures, {}},
    {keys::Steps, keys::ScheduleSteps, "ScheduleStep", stepFigures, stepWords},
};

PlistDictionary rowValues(const PlistDictionary& row, const TableForm& table, Form form) {
  PlistDictionary values = row;
  makePageTexts(values, form);
  for (const Figure& figure : table.figures) values.set(figure.key, figure.shown(row, figure.key));
  for (const Word& word : table.words) {
    if (const std::string* text = row.string(word.key)) {
      values.set(word.key, translated(*text, word.vocabulary, form));
    }
  }
  return values;
}

std::string tableOf(const PlistDictionary& recipe, const TableForm& table, Form form) {
  const std::string name =
      std::string(table.rowTemplate).append(form == Form::Plain ? "-Clipboard" : "");
  const std::optional<std::string> row = templateNamed(name);
  std::string text;
  for (const PlistDictionary& addition : recipe.rows(table.source)) {
    const PlistDictionary values = rowValues(addition, table, form);
    text += ZYMHTML::replaceKeysInString_fromDictionary(row, &values);
  }
  return text;
}

}  // namespace

void addSheetTables(const PlistDictionary& recipe, Form form, PlistDictionary& values) {
  static const PlistDictionary none;
  const PlistDictionary* schedule = recipe.dictionary(keys::MashSchedule);
  for (const TableForm& table : tables) {
    const bool isOfSchedule = table.source.text() == keys::Steps.text();
    const PlistDictionary& source = !isOfSchedule ? recipe : schedule ? *schedule : none;
    values.set(table.result, tableOf(source, table, form));
  }
}

std::string translated(std::string_view word, words::Vocabulary vocabulary, Form form) {
  return words::positionOf(word, vocabulary) == NSNotFound ? pageText(word, form)
                                                           : Localized_String(word);
}

}  // namespace zym::pages
