#include "zymcore/documents/Vocabularies.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/ZYMHTML.h"
#include "zymcore/reports/internal/PageFigures.h"
#include "zymcore/reports/internal/PageTexts.h"
#include "zymcore/reports/internal/Template.h"
#include "zymcore/transformers/ZYMHopWeightValueTransformer.h"
#include "zymcore/transformers/ZYMWeightValueTransformer.h"

namespace zym {
namespace {

using namespace pages;

struct Label {
  std::string_view text;
  KeyName key;
};
constexpr Label labels[] = {
    {"Ready to Go", KeyName("readyToGo")},
    {"You have all the ingredients you need to brew these beers.", KeyName("haveAll")},
    {"One Ingredient Needed", KeyName("oneNeeded")},
    {"You're short of one ingredient each of these beers requires.", KeyName("shortOfOne")},
    {"Two Ingredients Needed", KeyName("twoNeeded")},
    {"You're short of two ingredients each of these beers requires.", KeyName("shortOfTwo")},
    {"Three Ingredients Needed", KeyName("threeNeeded")},
    {"You're short of three ingredients each of these beers requires.", KeyName("shortOfThree")},
};

std::string amountOf(const PlistDictionary& row) {
  const std::string_view type = row.stringValue(keys::IngredientType);
  if (type == words::Yeast) return packs(row.find(keys::Amount));
  if (type == words::Hop) return shownAt<ZYMHopWeightValueTransformer>(row, keys::Amount);
  return shownAt<ZYMWeightValueTransformer>(row, keys::Amount);
}

}  // namespace

std::string ZYMHTML::parseSuggestABeerEntry(const PlistArray* entries) {
  if (!entries || entries->empty()) {
    return "<ul><li>" + Localized_String("No Recipes") + "</li></ul>\n";
  }
  const std::string required = Localized_String("You require %@ of %@");
  std::string list = "<ul>\n";
  for (const PlistDictionary& entry : PlistRows(entries)) {
    list.append("<li>").append(pageTextAt(entry, keys::RecipeTitle, Form::Markup));
    const PlistArray* rows = entry.array(keys::Ingredient);
    if (rows && !rows->empty()) {
      list += "\n<ul>\n";
      for (const PlistDictionary& row : PlistRows(rows)) {
        list.append("<li>")
            .append(stringWithFormat(
                required, {amountOf(row), pageTextAt(row, keys::Ingredient, Form::Markup)}))
            .append("</li>\n");
      }
      list += "</ul>\n";
    }
    list += "</li>\n";
  }
  return list + "</ul>\n";
}

PlistDictionary ZYMHTML::suggestABeerLocalization() {
  PlistDictionary values;
  for (const Label& label : labels) {
    values.set(label.key, Localized_String(label.text));
  }
  return values;
}

std::string ZYMHTML::renderToHTMLSuggestABeer(const PlistDictionary& groups) {
  PlistDictionary values = suggestABeerLocalization();
  insertHTMLHeader(values);
  for (const KeyName key : {keys::brewToday, keys::needOne, keys::needTwo, keys::needThree}) {
    values.set(key, parseSuggestABeerEntry(groups.array(key)));
  }
  return pageOf("SuggestABeer Template", values);
}

}  // namespace zym
