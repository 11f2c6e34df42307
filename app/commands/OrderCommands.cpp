#include "app/commands/OrderCommands.h"

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
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/stock/ZYMInventory.h"
#include "zymcore/stock/ZYMOrders.h"
#include "zymcore/store/ZYMOneChange.h"

namespace zym::host {
namespace {

struct Options {
  std::vector<std::string> words;
  bool withTabs = false;
  bool asJSON = false;
  bool isForced = false;
};

ZYMOrders& orders() {
  return ZYMOrders::sharedInstance();
}

std::string nameOfLine(const PlistDictionary& line) {
  return nameOfIngredient(stockKindOf(line), line.stringValue(keys::IngredientUUID));
}

PlistDictionary orderNamed(const std::string& name) {
  const PlistArray all = orders().allOrders();
  std::vector<const PlistDictionary*> found;
  std::vector<Named> candidates;
  for (const PlistDictionary& order : PlistRows(&all)) {
    found.push_back(&order);
    candidates.push_back({order.stringValue(keys::Name), order.stringValue(keys::UUID)});
  }
  return *found[positionMeant(name, candidates, label("order"))];
}

void place(const Options& options) {
  if (options.words.size() < 3 || options.words.size() % 2 == 0) {
    throw UsageError(label("give a supplier, and an amount for each ingredient"));
  }
  openStore();
  const PlistDictionary supplier =
      recordNamed(libraryKindNamed("suppliers"), options.words.front());
  PlistArray wanted;
  for (std::size_t i = 1; i < options.words.size(); i += 2) {
    const Ingredient ingredient = ingredientNamed(options.words[i]);
    wanted.append(
        PlistDictionary{{keys::UUID, ingredient.uuid},
                        {keys::IngredientType, ingredient.kind->type},
                        {keys::Amount, amountTyped(*ingredient.kind, options.words[i + 1])}});
  }
  const PlistDictionary order = placeOrder(supplier, wanted);
  if (options.asJSON) return printJSON(order);
  std::cout << printable(order.stringValue(keys::Name)) << '\n';
}

void list(const Options& options) {
  openStore();
  const PlistArray all = orders().allOrders();
  if (options.asJSON) return printJSON(all);
  Listing listing({{label("Order"), Table::Cells::Texts},
                   {label("Ordered"), Table::Cells::Texts},
                   {label("Lines"), Table::Cells::Quantities},
                   {label("On order"), Table::Cells::Quantities}});
  for (const PlistDictionary& order : PlistRows(&all)) {
    std::size_t lines = 0;
    std::size_t open = 0;
    for (const PlistDictionary& line : order.rows(keys::OrderItems)) {
      ++lines;
      open += line.stringValue(keys::Status) == words::OnOrder ? 1 : 0;
    }
    listing.addRow({std::string(order.stringValue(keys::Name)), dayAt(order, keys::OrderDate),
                    std::to_string(lines), std::to_string(open)});
  }
  listing.print(options.withTabs);
}

/// Those of the lines that the user names, by number from 1 or by ingredient; all without a name.
PlistArray linesMeant(const PlistArray& lines, const std::vector<std::string>& names) {
  PlistArray meant;
  if (names.empty()) meant = lines;
  std::vector<std::pair<std::string, std::string>> known;
  for (const PlistDictionary& line : PlistRows(&lines)) {
    known.emplace_back(nameOfLine(line), std::to_string(known.size() + 1));
  }
  std::vector<Named> candidates;
  for (const auto& [name, number] : known) candidates.push_back({name, number});
  for (const std::string& name : names) {
    meant.append(*lines.find(positionMeant(name, candidates, label("line of the order"))));
  }
  return meant;
}

void deliver(const Options& options) {
  openStore();
  PlistDictionary order = orderNamed(options.words.front());
  const PlistArray lines =
      linesMeant(orders()
                     .orderItemsForOrderWithUUID(std::string(order.stringValue(keys::UUID)))
                     .value_or(PlistArray()),
                 {options.words.begin() + 1, options.words.end()});
  PlistArray arriving;
  for (PlistDictionary line : PlistRows(&lines)) {
    if (line.stringValue(keys::Status) != words::OnOrder) continue;
    line.set(keys::Name, nameOfLine(line));
    arriving.append(line);
  }
  if (arriving.empty()) throw InputError(label("all of that was delivered already"));
  ZYMOneChange change;
  orders().markOrderItemsAsDelivered(arriving);
  order.set(keys::OrderItems, arriving);
  ZYMInventory::sharedInstance().addOrderToInventory(order);
  change.save();
  for (const PlistDictionary& line : PlistRows(&arriving)) {
    std::cout << printable(amountShown(line, keys::Amount) + " " +
                           std::string(line.stringValue(keys::Name)))
              << '\n';
  }
}

void drop(const Options& options) {
  openStore();
  const PlistDictionary order = orderNamed(options.words.front());
  if (!options.isForced &&
      !isConfirmed(label("Drop the order '%1'?", {printable(order.stringValue(keys::Name))}))) {
    return;
  }
  orders().removeOrderWithUUID(std::string(order.stringValue(keys::UUID)));
}

}  // namespace

void showOrder(const std::string& name, bool asJSON) {
  const PlistDictionary order = orderNamed(name);
  if (asJSON) return printJSON(order);
  Sheet sheet = sheetOnOutput();
  sheet.title(titleAt(order, keys::Name));
  Listing lines({{"", Table::Cells::Quantities},
                 {label("Ingredient"), Table::Cells::Texts},
                 {label("Amount"), Table::Cells::Quantities},
                 {label("Price"), Table::Cells::Quantities},
                 {label("State"), Table::Cells::Texts}});
  const auto rows = orders().orderItemsForOrderWithUUID(std::string(order.stringValue(keys::UUID)));
  int number = 0;
  for (const PlistDictionary& line : PlistRows(rows ? &*rows : nullptr)) {
    const bool isOpen = line.stringValue(keys::Status) == words::OnOrder;
    lines.addRow({std::to_string(++number), nameOfLine(line), amountShown(line, keys::Amount),
                  priceShown(stockKindOf(line), line),
                  isOpen ? label("on order") : label("delivered")});
  }
  sheet.section(label("Lines"), lines.table());
  sheet.section(label("Notes"), order.stringValue(keys::Notes));
}

PlistDictionary placeOrder(const PlistDictionary& supplier, const PlistArray& ingredients) {
  ZYMOneChange change;
  auto order = orders().createOrderForSupplierWithUUID_withIngredients(
      std::string(supplier.stringValue(keys::UUID)), ingredients);
  const std::string name(supplier.stringValue(keys::Name));
  if (!order) throw InputError(label("'%1' shares its identity", {printable(name)}));
  // By its supplier and day an order can be told from others.
  order->set(keys::Name, name + ", " + dayAt(*order, keys::OrderDate));
  orders().updateOrder(*order);
  change.save();
  return *order;
}

void addOrderCommands(CLI::App& program) {
  const auto options = std::make_shared<Options>();
  CLI::App* const order = program.add_subcommand("order", "Order ingredients of a supplier.");
  order->require_subcommand(0, 1)->fallthrough();
  order->add_option("SUPPLIER INGREDIENT AMOUNT", options->words,
                    "A supplier, and an amount for each ingredient");
  order->add_flag("--json", options->asJSON, "Print the order as JSON and nothing else");
  order->callback([options, order] {
    if (order->get_subcommands().empty()) place(*options);
  });
  order->footer("Example:\n  zym order 'The Shop' Fuggle '100 g' 'Maris Otter' '5 kg'");
  const auto below = [&](const char* name, const char* description, const char* what,
                         void (*run)(const Options&)) {
    const auto own = std::make_shared<Options>();
    CLI::App* const command = order->add_subcommand(name, description);
    command->add_option(what, own->words, "An order, and what of it; without that, all")
        ->required();
    command->add_flag("--force", own->isForced, "Don't ask");
    command->callback([own, run] { run(*own); });
  };
  below("deliver", "Take what has come into stock.", "ORDER [LINE]", deliver);
  below("drop", "Remove an order.", "ORDER", drop);

  const auto listed = std::make_shared<Options>();
  CLI::App* const all = program.add_subcommand("orders", "List the orders.");
  all->fallthrough();
  all->add_flag("--tsv", listed->withTabs, "Lines with tabs between the cells, for scripts");
  all->add_flag("--json", listed->asJSON, "Print JSON and nothing else");
  all->callback([listed] { list(*listed); });
}

}  // namespace zym::host
