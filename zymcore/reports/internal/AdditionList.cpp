#include "zymcore/reports/internal/AdditionList.h"

#include "zymcore/platform/text/NSString.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/internal/PageFigures.h"
#include "zymcore/reports/internal/PageTexts.h"
#include "zymcore/reports/internal/Sentences.h"
#include "zymcore/transformers/ZYMHopWeightValueTransformer.h"
#include "zymcore/transformers/ZYMPercentValueTransformer.h"
#include "zymcore/transformers/ZYMWeightValueTransformer.h"

namespace zym::pages {
namespace {

constexpr double hardlyAny = 0.01;

template <class Transformer>
std::string amountOf(const PlistDictionary& record) {
  return shownAt<Transformer>(record, keys::Amount);
}
std::string packsOf(const PlistDictionary& lot) {
  return packs(lot.find(keys::Amount));
}

std::string nameOf(const PlistDictionary& lot) {
  return "&quot;" + pageText(lowercaseString(lot.stringValue(keys::BatchName)), Form::Markup) +
         "&quot;";
}
std::string lotText(const PlistDictionary& lot, const std::string& amount) {
  return sentence("%@ of %@ added to inventory %@",
                  {amount, nameOf(lot), dayAt(lot, keys::DeliveredOn)});
}
std::string hopLotText(const PlistDictionary& lot, const std::string& amount) {
  return sentence("%@ of %@ (alpha %@) added to inventory %@",
                  {amount, nameOf(lot), shownAt<ZYMPercentValueTransformer>(lot, keys::Alpha),
                   dayAt(lot, keys::DeliveredOn)});
}

}  // namespace

const AdditionKind weighedAdditions{keys::Ingredient, amountOf<ZYMWeightValueTransformer>, lotText,
                                    amountOf<ZYMWeightValueTransformer>};
const AdditionKind hopAdditions{keys::Variety, amountOf<ZYMHopWeightValueTransformer>, hopLotText,
                                amountOf<ZYMHopWeightValueTransformer>};
const AdditionKind yeastAdditions{keys::Name, yeastAmount, lotText, packsOf};

std::string AdditionList::startWithTitle(std::optional<std::string_view> title) {
  return (title ? "<p>" + std::string(*title) + "</p>\n" : "") + "<ul>\n";
}

void AdditionList::addRow(const PlistDictionary& addition, const AdditionKind& kind,
                          const std::string& remark, bool isLast) {
  isEmpty_ = false;
  text_.append("<li>")
      .append(sentence("%@ of %@",
                       {kind.amount(addition), pageTextAt(addition, kind.name, Form::Markup)}))
      .append(remark)
      .append("</li>\n");
  if (!addition.array(keys::Batches)) return;
  for (const PlistDictionary& lot : addition.rows(keys::Batches)) {
    if (!(lot.doubleValue(keys::Amount) > hardlyAny)) continue;
    text_.append("&nbsp;&nbsp;&nbsp;&nbsp;").append(kind.lot(lot, kind.lotAmount(lot)));
    text_ += "<br>\n";
  }
  if (!isLast) text_ += "&nbsp;<br>";
}

}  // namespace zym::pages
