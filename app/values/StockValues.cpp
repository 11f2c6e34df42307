#include "app/values/StockValues.h"

#include <algorithm>
#include <vector>

#include "app/sheets/Figures.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/Names.h"
#include "app/values/ValueForms.h"
#include "zymcore/calculations/ZYMUnitConverter.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/text/NSLocale.h"
#include "zymcore/platform/text/NSNumberFormatter.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym::host {
namespace {

constexpr std::int64_t metric = 2;

struct PriceUnit {
  std::string_view name;
  double amount;  // of it, as documents count
};
constexpr PriceUnit priceUnits[] = {
    {"kg", ZYMUnitConverter::grammesInKilogramme},
    {"g", 1},
    {"lb", ZYMUnitConverter::grammesInPound},
    {"oz", ZYMUnitConverter::grammesInOunce},
    {"pack", 1},
};

bool isMetric(KeyName preference) {
  return NSUserDefaults::standardUserDefaults().integerForKey(preference) == metric;
}
std::string_view perWeight() {
  return isMetric(keys::Units) ? "kg" : "lb";
}
std::string_view perHopWeight() {
  return isMetric(keys::HopUnits) ? "kg" : "oz";
}
std::string_view perPack() {
  return "pack";
}

std::string packsAt(const PlistDictionary& record, KeyName key) {
  return yeastAmount({{keys::Amount, record.doubleValue(key)}});
}

// clang-format off
constexpr StockKind kinds[] = {
    {words::Fermentable, "fermentable", keys::FermentableIngredients, take::weight,    weightAt,    perWeight,    500},
    {words::Hop,         "hop",         keys::HopIngredients,         take::hopWeight, hopWeightAt, perHopWeight, 50},
    {words::Other,       "other",       keys::OtherIngredients,       take::weight,    weightAt,    perWeight,    5},
    {words::Yeast,       "yeast",       keys::YeastIngredients,       take::minutes,   packsAt,     perPack,      1},
};
// clang-format on

const PriceUnit* unitNamed(std::string_view name) {
  const auto found = std::ranges::find(priceUnits, name, &PriceUnit::name);
  return found == std::end(priceUnits) ? nullptr : found;
}

bool fits(const PriceUnit& unit, const StockKind& kind) {
  return (unit.name == "pack") == (kind.type == words::Yeast);
}

struct LotValue {
  PlistValue (*toStorage)(const std::string& typed);  // null for what goes by the kind
  std::string_view name;
  KeyName key;
};
constexpr LotValue lotValues[] = {
    {take::text, "name", keys::BatchName},
    {nullptr, "amount", keys::AmountInStock},
    {nullptr, "cost", keys::Cost},
    {take::day, "delivered", keys::DeliveredOn},
    {take::day, "expires", keys::ExpiresOn},
    {take::percent, "alpha", keys::Alpha},
    {take::percent, "extract", keys::Extract},
    {take::maltColor, "color", keys::Color},
    {take::word<words::stockForms>, "form", keys::Form},
};

PlistValue valueTyped(const LotValue& value, const StockKind& kind, const std::string& typed) {
  if (value.toStorage) return value.toStorage(typed);
  return value.name == "cost" ? priceTyped(kind, typed) : amountTyped(kind, typed);
}

}  // namespace

std::span<const StockKind> stockKinds() {
  return kinds;
}

const StockKind& stockKindOf(const PlistDictionary& record) {
  const auto found =
      std::ranges::find(kinds, record.stringValue(keys::IngredientType), &StockKind::type);
  return found == std::end(kinds) ? kinds[0] : *found;
}

Ingredient ingredientNamed(const std::string& name) {
  std::vector<Ingredient> all;
  for (const StockKind& kind : kinds) {
    for (const ZYMSummary& row : libraryKindNamed(kind.library).library().rowsOfAllItems()) {
      all.push_back({&kind, row.name, row.uuid.value_or("")});
    }
  }
  std::vector<Named> candidates;
  for (const Ingredient& each : all) candidates.push_back({each.name, each.uuid});
  return all[positionMeant(name, candidates, label("ingredient"))];
}

std::string nameOfIngredient(const StockKind& kind, std::string_view uuid) {
  const LibraryKind& library = libraryKindNamed(kind.library);
  const auto record = library.library().itemWithUUID(uuid);
  return record ? std::string(record->stringValue(library.nameKey())) : label("Unknown ingredient");
}

std::string amountShown(const PlistDictionary& record, KeyName key) {
  return stockKindOf(record).showAmount(record, key);
}

PlistValue amountTyped(const StockKind& kind, const std::string& typed) {
  PlistValue amount = kind.takeAmount(typed);
  if (amount.doubleValue() < 0) {
    throw UsageError(label("'%1': an amount is not negative", {printable(typed)}));
  }
  return amount;
}

std::string money(double sum) {
  NSNumberFormatter formatter(NSLocale::currentLocale());
  formatter.setNumberStyle(NSNumberFormatter::Style::Currency);
  return formatter.stringFromNumber(sum);
}

PlistValue priceTyped(const StockKind& kind, const std::string& typed) {
  const std::size_t slash = typed.find('/');
  const std::string number = delocalizeValue(typed.substr(0, slash));
  std::string name(slash == std::string::npos ? kind.priceUnit() : typed.substr(slash + 1));
  name.erase(0, name.find_first_not_of(' '));
  const PriceUnit* unit = unitNamed(name);
  if (number.empty() || doubleValue(number) < 0 || !unit || !fits(*unit, kind)) {
    throw UsageError(
        kind.type == words::Yeast
            ? label("'%1' is no price here; give one such as 3.20/pack", {printable(typed)})
            : label("'%1' is no price here; give one such as 3.20/kg, by kg, g, lb or oz",
                    {printable(typed)}));
  }
  return stringWithFormatF(doubleValue(number) / unit->amount);
}

std::string priceShown(const StockKind& kind, const PlistDictionary& record) {
  const std::string_view unit = kind.priceUnit();
  return money(record.doubleValue(keys::Cost) * unitNamed(unit)->amount) + "/" + label(unit);
}

void setLotValue(const StockKind& kind, PlistDictionary& lot, const std::string& assignment) {
  const Assignment given = assignmentOf(assignment);
  const auto value = std::ranges::find(lotValues, lowercaseString(given.key), &LotValue::name);
  if (value == std::end(lotValues)) {
    std::vector<std::string_view> names;
    for (const LotValue& each : lotValues) names.push_back(each.name);
    refuseKey("lot", given.key, names);
  }
  lot.set(value->key, valueTyped(*value, kind, given.text));
}

std::string lotKeys() {
  std::string names;
  for (const LotValue& value : lotValues) {
    names.append(names.empty() ? "" : ", ").append(value.name);
  }
  return names;
}

}  // namespace zym::host
