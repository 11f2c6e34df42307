#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What a batch takes from the stock, written a second time over plain structs and by other means,
/// for comparison with the library. All quantities are text, as documents have them.
namespace zym::second {

struct Lot {
  std::string uuid, stock, cost, alpha, extract, color, form;
  double expires = 0;
  std::string amount = "";  // what an addition takes, where it is one of an addition
};

struct Item {
  std::string type, name;
  double total = 0;
  std::vector<Lot> lots;  // the last expires first
};
using Shelf = std::map<std::string, Item>;

struct Addition {
  std::string uuid, amount, alpha, extract, color, form, amountType, ibu;
  bool deducted = false;
  std::optional<std::vector<Lot>> batches;
};

struct Adjustments {
  double pellet, bagged, baggedPellet;
};

struct Brew {
  std::vector<Addition> fermentables, hops, others, yeasts;
  std::string expectedIBU, cost;
  /// Works out "ibu" of the hops and "expectedIBU" anew.
  std::function<void(Brew&)> recalculate;
  Adjustments adjustments{};

  std::vector<std::pair<std::string, std::string>> advisories;
  std::vector<std::vector<bool>> available;
};

[[nodiscard]] double number(const std::string& text);
[[nodiscard]] std::string text(double number);
/// A record of stock as the store completes it: lots by expiry, the total of the lots.
void complete(Item& item);

void plan(Brew& brew, const Shelf& shelf);
void adjust(Brew& brew, const Shelf& shelf, bool force);
/// Takes everything out of the shelf; `onOrder` says what is on order of an ingredient.
void take(Brew& brew, Shelf& shelf, const std::map<std::string, double>& onOrder);

}  // namespace zym::second
