#include "app/commands/StockCommands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "app/session/Store.h"
#include "app/sheets/Figures.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Listing.h"
#include "app/terminal/Output.h"
#include "app/terminal/Text.h"
#include "app/terminal/Words.h"
#include "app/values/Names.h"
#include "app/values/StockValues.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/stock/ZYMInventory.h"
#include "zymcore/stock/ZYMOrders.h"
#include "zymcore/store/ZYMOneChange.h"

namespace zym::host {
namespace {

constexpr double secondsOfSoon = 30 * 86400.0;

struct Options {
  std::string name;
  std::string amount;
  std::vector<std::string> assignments;
  std::vector<std::string> quality;  // "alpha=5.2", as `--alpha 5.2` gives it
  bool withLots = false;
  bool onlyLow = false;
  bool withTabs = false;
  bool asJSON = false;
  bool isForced = false;
};

ZYMInventory& inventory() {
  return ZYMInventory::sharedInstance();
}

/// The name that the library has, or the one that was stored when it still had it.
std::string nameOf(const PlistDictionary& item, const std::vector<ZYMSummary>& stored) {
  if (const std::string_view name = item.stringValue(keys::Ingredient); !name.empty()) {
    return std::string(name);
  }
  const auto row = std::ranges::find_if(
      stored, [&](const ZYMSummary& each) { return each.uuid == item.stringValue(keys::UUID); });
  return row == stored.end() || row->name.empty() ? label("Unknown ingredient") : row->name;
}

double onOrder(const PlistDictionary& item) {
  return doubleValue(ZYMOrders::sharedInstance().amountOnOrderForIngredientWithUUID(
      std::string(item.stringValue(keys::UUID))));
}

double valueOf(const PlistDictionary& item) {
  double sum = 0;
  for (const PlistDictionary& lot : item.rows(keys::Batches)) {
    sum += lot.doubleValue(keys::AmountInStock) * lot.doubleValue(keys::Cost);
  }
  return sum;
}

std::string expiryOf(const PlistDictionary& lot) {
  const NSDate* date = lot.date(keys::ExpiresOn);
  if (!date) return "";
  const std::string day = dayAt(lot, keys::ExpiresOn);
  if (*date < NSDate::date()) return label("%1, expired", {day});
  return *date < NSDate::dateWithTimeIntervalSinceNow(secondsOfSoon) ? label("%1, soon", {day})
                                                                     : day;
}

std::string ageOf(const PlistDictionary& lot) {
  const NSDate* date = lot.date(keys::DeliveredOn);
  if (!date) return "";
  const double seconds =
      NSDate::date().timeIntervalSinceReferenceDate() - date->timeIntervalSinceReferenceDate();
  return label("%1 days", {std::to_string(integerValue(seconds / 86400))});
}

PlistArray itemsListed(const Options& options) {
  PlistArray items;
  for (const StockKind& kind : stockKinds()) {
    if (!options.name.empty() && &libraryKindNamed(options.name) != &libraryKindNamed(kind.library))
      continue;
    const PlistArray ofKind = inventory().allItemsOfIngredientType(kind.type);
    for (const PlistDictionary& item : PlistRows(&ofKind)) {
      if (!options.onlyLow || item.doubleValue(keys::AmountInStock) < kind.little) {
        items.append(item);
      }
    }
  }
  return items;
}

void list(const Options& options) {
  openStore();
  const PlistArray items = itemsListed(options);
  if (options.asJSON) return printJSON(items);
  using Cells = Table::Cells;
  std::vector<Table::Column> columns{{label("Ingredient"), Cells::Texts},
                                     {label("In stock"), Cells::Quantities},
                                     {label("On order"), Cells::Quantities},
                                     {label("Value"), Cells::Quantities}};
  if (options.withLots) {
    columns = {{label("Ingredient"), Cells::Texts},    {label("Lot"), Cells::Texts},
               {label("In stock"), Cells::Quantities}, {label("Price"), Cells::Quantities},
               {label("Age"), Cells::Quantities},      {label("Expires"), Cells::Texts}};
  }
  Listing listing(std::move(columns));
  const std::vector<ZYMSummary> stored = inventory().rowsOfAllItems();
  for (const PlistDictionary& item : PlistRows(&items)) {
    const StockKind& kind = stockKindOf(item);
    if (!options.withLots) {
      PlistDictionary ordered = item;
      ordered.set(keys::AmountInStock, onOrder(item));
      listing.addRow({nameOf(item, stored), amountShown(item, keys::AmountInStock),
                      amountShown(ordered, keys::AmountInStock), money(valueOf(item))});
    }
    for (const PlistDictionary& lot : item.rows(keys::Batches)) {
      if (!options.withLots) break;
      listing.addRow({nameOf(item, stored), std::string(lot.stringValue(keys::BatchName)),
                      kind.showAmount(lot, keys::AmountInStock), priceShown(kind, lot), ageOf(lot),
                      expiryOf(lot)});
    }
  }
  listing.print(options.withTabs);
}

PlistDictionary itemOf(const Ingredient& ingredient) {
  if (auto item = inventory().itemWithUUID(ingredient.uuid)) return *item;
  return inventory().createItemForIngredient_ofType({ingredient.name, ingredient.uuid, 0},
                                                    ingredient.kind->type);
}

void add(const Options& options) {
  openStore();
  const Ingredient ingredient = ingredientNamed(options.name);
  PlistDictionary values;  // before anything is stored
  values.set(keys::AmountInStock, amountTyped(*ingredient.kind, options.amount));
  for (const std::string& text : options.quality) setLotValue(*ingredient.kind, values, text);

  ZYMOneChange change;
  (void)itemOf(ingredient);
  const auto added = inventory().addBatchToItemWithUUID(ingredient.uuid);
  if (!added) {
    throw InputError(label("'%1' shares its identity", {printable(options.name)}));
  }
  PlistArray lots = *inventory().allBatchesForItemWithUUID(ingredient.uuid);
  for (PlistDictionary& lot : PlistEditableRows(&lots)) {
    if (lot.stringValue(keys::UUID) != added->stringValue(keys::UUID)) continue;
    for (const PlistEntry& entry : values) lot.set(KeyName(entry.key.text()), entry.value);
  }
  inventory().updateBatches_inItemWithUUID(lots, ingredient.uuid);
  change.save();
  if (options.asJSON) printJSON(*inventory().itemWithUUID(ingredient.uuid));
}

void takeOut(const Options& options) {
  openStore();
  const Ingredient ingredient = ingredientNamed(options.name);
  double wanted = amountTyped(*ingredient.kind, options.amount).doubleValue();
  const auto item = inventory().itemWithUUID(ingredient.uuid);
  PlistArray lots = item && item->array(keys::Batches) ? *item->array(keys::Batches) : PlistArray();
  for (std::size_t i = lots.size(); i-- > 0 && wanted > 0;) {
    PlistDictionary* lot = lots.edit(i).editDictionary();
    if (!lot) continue;
    const double given = std::min(wanted, std::max(0.0, lot->doubleValue(keys::AmountInStock)));
    lot->setNumber(keys::AmountInStock, lot->doubleValue(keys::AmountInStock) - given);
    wanted -= given;
  }
  if (wanted > 0.0005) {
    throw InputError(label("there is too little of '%1': %2",
                           {printable(ingredient.name),
                            item ? amountShown(*item, keys::AmountInStock) : label("none")}));
  }
  inventory().updateBatches_inItemWithUUID(lots, ingredient.uuid);
  if (options.asJSON) printJSON(*inventory().itemWithUUID(ingredient.uuid));
}

/// An item, or one of its lots by its place.
struct Place {
  PlistDictionary item;
  std::optional<std::size_t> lot;
};

Place placeNamed(const std::string& name, bool withItems) {
  const std::vector<ZYMSummary> stored = inventory().rowsOfAllItems();
  std::vector<Place> places;
  std::vector<std::pair<std::string, std::string>> names;
  const PlistArray items = inventory().allItems();
  for (const PlistDictionary& item : PlistRows(&items)) {
    if (withItems) {
      places.push_back({item, std::nullopt});
      names.emplace_back(nameOf(item, stored), item.stringValue(keys::UUID));
    }
    std::size_t i = 0;
    for (const PlistDictionary& lot : item.rows(keys::Batches)) {
      places.push_back({item, i++});
      names.emplace_back(lot.stringValue(keys::BatchName), lot.stringValue(keys::UUID));
    }
  }
  std::vector<Named> candidates;
  for (const auto& [text, uuid] : names) candidates.push_back({text, uuid});
  return places[positionMeant(name, candidates, withItems ? label("item or lot") : label("lot"))];
}

void edit(const Options& options) {
  openStore();
  Place place = placeNamed(options.name, false);
  const StockKind& kind = stockKindOf(place.item);
  PlistArray lots = *place.item.array(keys::Batches);
  for (const std::string& assignment : options.assignments) {
    setLotValue(kind, *lots.edit(*place.lot).editDictionary(), assignment);
  }
  inventory().updateBatches_inItemWithUUID(lots, place.item.stringValue(keys::UUID));
  if (options.asJSON) printJSON(*lots.find(*place.lot));
}

void remove(const Options& options) {
  openStore();
  const Place place = placeNamed(options.name, true);
  if (!options.isForced &&
      !isConfirmed(label("Remove '%1' from the stock?", {printable(options.name)}))) {
    return;
  }
  const std::string uuid(place.item.stringValue(keys::UUID));
  PlistArray lots = place.lot ? *place.item.array(keys::Batches) : PlistArray();
  if (place.lot) lots.remove(*place.lot);
  // An item goes with its last lot.
  if (lots.empty()) {
    inventory().removeItemWithUUID(uuid);
  } else {
    inventory().updateBatches_inItemWithUUID(lots, uuid);
  }
}

}  // namespace

void addStockCommands(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const stock = program.add_subcommand("stock", "List what is in stock, and change it.");
  stock->require_subcommand(0, 1)->fallthrough();
  stock->add_option("KIND", options->name, "fermentables, hops, others or yeasts");
  stock->add_flag("--lots", options->withLots, "Every lot, with its price, age and expiry");
  stock->add_flag("--low", options->onlyLow, "Only what there is little of");
  stock->add_flag("--tsv", options->withTabs, "Lines with tabs between the cells, for scripts");
  stock->add_flag("--json", options->asJSON, "Print JSON and nothing else");
  stock->callback([options, stock] {
    if (stock->get_subcommands().empty()) list(*options);
  });
  const auto below = [&](const char* name, const char* description, const char* what,
                         void (*run)(const Options&)) {
    const auto own = std::make_shared<Options>();
    CLI::App* const command = stock->add_subcommand(name, description);
    command->add_option(what, own->name, "A name, a beginning of it that no other has, or a UUID")
        ->required();
    command->add_flag("--json", own->asJSON, "Print JSON and nothing else");
    command->callback([own, run] { run(*own); });
    return std::pair(command, own);
  };

  const auto [adding, ofAdding] = below("add", "Put a new lot into stock.", "INGREDIENT", add);
  adding->add_option("AMOUNT", ofAdding->amount, "Such as '5 kg' or '2 packs'")->required();
  for (const auto& [option, key, type] :
       {std::tuple("--lot", "name", "NAME"), std::tuple("--cost", "cost", "PRICE"),
        std::tuple("--expires", "expires", "DATE"), std::tuple("--alpha", "alpha", "PERCENT"),
        std::tuple("--extract", "extract", "PERCENT"), std::tuple("--color", "color", "COLOR"),
        std::tuple("--form", "form", "FORM")}) {
    adding
        ->add_option_function<std::string>(
            option,
            [own = ofAdding, prefix = std::string(key) + "="](const std::string& text) {
              own->quality.push_back(prefix + text);
            },
            "Of the lot")
        ->type_name(type);
  }
  adding->footer("Example:\n  zym stock add Fuggle '100 g' --cost 32/kg --alpha 5.2 --form pellet");
  const auto [taking, ofTaking] =
      below("take", "Take out of stock what expires first.", "INGREDIENT", takeOut);
  taking->add_option("AMOUNT", ofTaking->amount, "Such as '200 g'")->required();
  const auto [editing, ofEditing] = below("edit", "Change a lot.", "LOT", edit);
  editing->add_option("KEY=VALUE", ofEditing->assignments, "In your units: " + lotKeys())
      ->required();
  const auto [removing, ofRemoving] =
      below("remove", "Remove a lot, or an ingredient with its lots.", "NAME", remove);
  removing->add_flag("--force", ofRemoving->isForced, "Don't ask");
}

}  // namespace zym::host
