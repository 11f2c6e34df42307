#include <algorithm>
#include <iterator>

#include "zymcore/documents/Vocabularies.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/ZYMHTML.h"
#include "zymcore/reports/internal/PageFigures.h"
#include "zymcore/reports/internal/PageTexts.h"
#include "zymcore/reports/internal/Sentences.h"
#include "zymcore/reports/internal/Template.h"
#include "zymcore/transformers/ZYMDateValueTransformer.h"
#include "zymcore/transformers/ZYMHopWeightValueTransformer.h"
#include "zymcore/transformers/ZYMPercentValueTransformer.h"
#include "zymcore/transformers/ZYMWeightValueTransformer.h"

namespace zym {
namespace {

using namespace pages;

constexpr auto weightInStock = shownAt<ZYMWeightValueTransformer>;
constexpr auto hopWeightInStock = shownAt<ZYMHopWeightValueTransformer>;
std::string packsInStock(const PlistDictionary& record, KeyName key) {
  return packs(record.find(key));
}

using Amount = std::string (*)(const PlistDictionary& record, KeyName key);

std::string itemText(const PlistDictionary& item, Amount amount) {
  return stringWithFormat(
      Localized_String("%@ of %@"),
      {amount(item, keys::AmountInStock), pageTextAt(item, keys::Ingredient, Form::Markup)});
}
std::string lotText(const PlistDictionary& lot, Amount amount) {
  return stringWithFormat(
      Localized_String("%@ of \"%@\" added %@"),
      {amount(lot, keys::AmountInStock), pageTextAt(lot, keys::BatchName, Form::Markup),
       dayAt(lot, keys::DeliveredOn)});
}

std::string hopForm(const PlistDictionary& lot) {
  const std::int64_t found = words::positionOf(lot.stringValue(keys::Form), words::stockForms);
  return Localized_String(words::stockForms[found == NSNotFound ? 0 : found]);
}
std::string hopLotText(const PlistDictionary& lot, Amount amount) {
  return stringWithFormat(
      Localized_String("%@ of \"%@\" (%@, %@) added %@"),
      {amount(lot, keys::AmountInStock), pageTextAt(lot, keys::BatchName, Form::Markup),
       hopForm(lot), shownAt<ZYMPercentValueTransformer>(lot, keys::Alpha),
       dayAt(lot, keys::DeliveredOn)});
}

struct StockKind {
  std::string_view type;
  std::string_view heading;
  Amount amount;
  std::string (*lotText)(const PlistDictionary& lot, Amount amount);
};
constexpr StockKind fermentables{
    words::Fermentable, translatable("Inventory - Fermentables as of %@"), weightInStock, lotText};
constexpr StockKind hops{words::Hop, translatable("Inventory - Hops as of %@"), hopWeightInStock,
                         hopLotText};
constexpr StockKind others{words::Other, translatable("Inventory - Other Ingredients as of %@"),
                           weightInStock, lotText};
constexpr StockKind yeasts{words::Yeast, translatable("Inventory - Yeasts as of %@"), packsInStock,
                           lotText};
constexpr StockKind kinds[] = {fermentables, hops, others, yeasts};

void process(const StockKind& kind, const PlistArray& items, PlistDictionary& values) {
  const PlistValue today = NSDate::date();
  values.set(keys::InventoryHeading,
             stringWithFormat(Localized_String(kind.heading),
                              {ZYMDateValueTransformer::convertForDisplay(&today)}));
  values.set(keys::Stock,
             ZYMHTML::inventoryItems_itemRenderer_batchRenderer(
                 items, [&](const PlistDictionary& item) { return itemText(item, kind.amount); },
                 [&](const PlistDictionary& lot) { return kind.lotText(lot, kind.amount); }));
}

}  // namespace

std::string ZYMHTML::inventoryItems_itemRenderer_batchRenderer(const PlistArray& items,
                                                               const Renderer& itemRenderer,
                                                               const Renderer& batchRenderer) {
  std::string list = "<ul>\n";
  for (const PlistDictionary& item : PlistRows(&items)) {
    list.append("<li>").append(itemRenderer(item)).append("<br>");
    for (const PlistDictionary& lot : item.rows(keys::Batches)) {
      list.append("&nbsp;&nbsp;&nbsp;&nbsp;").append(batchRenderer(lot)).append("<br>");
    }
    list += "</li>&nbsp;<br>\n";
  }
  return list + "</ul>\n";
}

void ZYMHTML::processFermentableInventoryItems_intoTemplateValues(const PlistArray& items,
                                                                  PlistDictionary& values) {
  process(fermentables, items, values);
}

void ZYMHTML::processHopInventoryItems_intoTemplateValues(const PlistArray& items,
                                                          PlistDictionary& values) {
  process(hops, items, values);
}

void ZYMHTML::processOtherIngredientInventoryItems_intoTemplateValues(const PlistArray& items,
                                                                      PlistDictionary& values) {
  process(others, items, values);
}

void ZYMHTML::processYeastInventoryItems_intoTemplateValues(const PlistArray& items,
                                                            PlistDictionary& values) {
  process(yeasts, items, values);
}

std::string ZYMHTML::renderToHTMLInventoryItems_ofIngredientType(const PlistArray& items,
                                                                 std::string_view type) {
  PlistDictionary values = suggestABeerLocalization();
  insertHTMLHeader(values);
  const auto* kind = std::ranges::find(kinds, type, &StockKind::type);
  if (kind != std::end(kinds)) process(*kind, items, values);
  values.set(keys::IntroText, Localized_String("You currently have the following:"));
  return pageOf("Inventory Template", values);
}

}  // namespace zym
