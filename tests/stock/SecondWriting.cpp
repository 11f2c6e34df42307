#include "tests/stock/SecondWriting.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace zym::second {
namespace {

bool has(const std::string& form, const std::string& word) {
  std::string lower;
  for (const char c : form) lower += static_cast<char>(std::tolower(c));
  return lower.find(word) != std::string::npos;
}

// In the order in which they are planned.
std::vector<std::vector<Addition>*> all(Brew& brew) {
  return {&brew.fermentables, &brew.hops, &brew.others, &brew.yeasts};
}

void tellForm(Brew& brew, Addition& hop, bool pellets, const Item& item, const char* before,
              const char* between, const char* after) {
  const bool bagged = has(hop.form, "bagged");
  hop.form = std::string(bagged ? "Bagged " : "Loose ") + (pellets ? "Pellet Hops" : "Whole Hops");
  brew.advisories.emplace_back("Hop Form Changed", before + item.name + between + hop.form + after);
}

void allotHop(Brew& brew, std::size_t at, std::vector<Addition>& list, const Item& item) {
  Addition& hop = list[at];
  const bool wantsPellets = has(hop.form, "pellet");
  double pelletAmount = 0, pelletMass = 0, wholeAmount = 0, wholeMass = 0, amount = 0, mass = 0;
  for (const Lot& lot : item.lots) {
    const double n = number(lot.stock);
    const double m = n * number(lot.alpha);
    (has(lot.form, "pellet") ? pelletAmount : wholeAmount) += n;
    (has(lot.form, "pellet") ? pelletMass : wholeMass) += m;
    amount += n;
    mass += m;
  }
  const double preferredAmount = wantsPellets ? pelletAmount : wholeAmount;
  const double otherAmount = wantsPellets ? wholeAmount : pelletAmount;
  const double preferredMass = wantsPellets ? pelletMass : wholeMass;
  const double otherMass = wantsPellets ? wholeMass : pelletMass;
  std::vector<Lot>& lots = *hop.batches;
  double fromPellets = 0, fromWhole = 0;
  std::string chosen = wantsPellets ? "pellet" : "whole";
  const std::string other = wantsPellets ? "whole" : "pellet";

  if (number(hop.ibu) > number(brew.expectedIBU) / 5.0) {
    double required = number(hop.alpha) * number(hop.amount);
    if (required > mass) {
      hop.batches.reset();
      return;
    }
    if (!(preferredMass >= required)) {
      double factor = 0;
      if (has(hop.form, "bagged")) {
        factor = wantsPellets ? brew.adjustments.baggedPellet / brew.adjustments.bagged
                              : brew.adjustments.bagged / brew.adjustments.baggedPellet;
      } else {
        factor = wantsPellets ? brew.adjustments.pellet / 1.0 : 1.0 / brew.adjustments.pellet;
      }
      chosen = required * factor > otherMass ? "" : other;
      if (chosen == other) required = required * factor;
    }
    double left = required, total = 0;
    for (std::size_t i = lots.size(); i > 0 && left > 0; --i) {
      Lot& lot = lots[i - 1];
      if (!has(lot.form, chosen)) continue;
      const double alpha = number(lot.alpha), stock = number(lot.stock);
      double taken = stock;
      if (stock * alpha > left) {
        taken = left / alpha;
        left = 0;
      } else {
        left -= stock * alpha;
      }
      lot.amount = text(taken);
      total += taken;
      (has(lot.form, "pellet") ? fromPellets : fromWhole) += taken;
    }
    hop.amount = text(total);
    hop.alpha = text(total == 0 ? 0 : required / total);
    const bool pellets = chosen == "" ? fromPellets > fromWhole : chosen == "pellet";
    if (pellets != wantsPellets) {
      tellForm(brew, hop, pellets, item, "The hop form for an addition of ",
               " hops has changed as there was insufficient of the preferred form in stock. It has "
               "been changed to ",
               "");
    }
    brew.recalculate(brew);
    return;
  }

  const double wanted = number(hop.amount);
  if (wanted > amount) {
    hop.batches.reset();
    return;
  }
  if (!(preferredAmount >= wanted)) chosen = wanted > otherAmount ? "" : other;
  double left = wanted, takenMass = 0;
  for (std::size_t i = lots.size(); i > 0; --i) {
    Lot& lot = lots[i - 1];
    if (!has(lot.form, chosen)) continue;
    const double taken = number(lot.stock) < left ? number(lot.stock) : left;
    lot.amount = text(taken);
    (has(lot.form, "pellet") ? fromPellets : fromWhole) += taken;
    takenMass += taken * number(lot.alpha);
    left -= taken;
  }
  if (wanted > 0.01) {
    hop.alpha = text(takenMass / wanted);
    brew.recalculate(brew);
  }
  const bool pellets = chosen == "" ? fromPellets > fromWhole : chosen == "pellet";
  if (pellets != wantsPellets) {
    tellForm(brew, hop, pellets, item, "The form of ", " hops has changed to ",
             " as there was insufficient of the preferred form in stock.");
  }
}

void allot(Brew& brew, std::size_t at, std::vector<Addition>& list, const Item& item) {
  Addition& addition = list[at];
  addition.batches.reset();
  const bool counted = item.type == "Fermentable" || item.type == "Other" || item.type == "Yeast";
  if (counted && number(addition.amount) > item.total + 0.5) return;
  addition.batches = item.lots;
  for (Lot& lot : *addition.batches) lot.amount = "0.0";
  if (item.type == "Hop") return allotHop(brew, at, list, item);
  if (!counted) return;

  double remaining = number(addition.amount);
  if (item.type == "Yeast" && addition.amountType == "Slurry") remaining = 0;
  for (auto lot = addition.batches->rbegin(); lot != addition.batches->rend(); ++lot) {
    if (remaining <= 0) break;
    const double stock = number(lot->stock);
    if (stock > remaining) {
      lot->amount = text(remaining);
      remaining = 0;
    } else {
      lot->amount = text(stock);
      remaining -= stock;
    }
  }
  if (item.type != "Fermentable") return;
  double extract = 0, color = 0;
  for (const Lot& lot : *addition.batches) {
    remaining += number(lot.amount);
    extract += number(lot.extract) * number(lot.amount);
    color += number(lot.color) * number(lot.amount);
  }
  addition.extract = text(remaining > 0 ? extract / remaining : 0);
  addition.color = text(remaining > 0 ? color / remaining : 0);
}

bool redo(Brew& brew, std::size_t at, std::vector<Addition>& list, const Item* item, bool force) {
  Addition& addition = list[at];
  if (!item || item->lots.empty()) {
    const bool had = addition.batches.has_value();
    addition.batches.reset();
    return had;
  }
  if (!force && addition.batches && addition.batches->size() == item->lots.size()) {
    bool same = true;
    for (std::size_t i = 0; i < item->lots.size(); ++i) {
      if ((*addition.batches)[i].uuid != item->lots[i].uuid) same = false;
    }
    bool overdrawn = false;
    for (std::size_t i = 0; same && i < item->lots.size(); ++i) {
      (*addition.batches)[i].stock = item->lots[i].stock;
      if (number(addition.amount) > number(item->lots[i].stock)) overdrawn = true;
    }
    if (same && !overdrawn) return false;
  }
  allot(brew, at, list, *item);
  return true;
}

const Item* in(const Shelf& shelf, const std::string& uuid) {
  const auto found = shelf.find(uuid);
  return found == shelf.end() ? nullptr : &found->second;
}

void lower(Item& item, const std::vector<Lot>& taken, bool toZero) {
  for (std::size_t i = 0; i < taken.size() && i < item.lots.size(); ++i) {
    double left = number(item.lots[i].stock) - number(taken[i].amount);
    if (toZero && left < 0) left = 0;
    item.lots[i].stock = text(left);
  }
}

void validate(Brew& brew, std::vector<Addition>& list, const Shelf& working) {
  Shelf copy = working;
  for (std::size_t at = 0; at < list.size(); ++at) {
    Addition& addition = list[at];
    if (addition.deducted) continue;
    const Item* item = in(copy, addition.uuid);
    if (addition.batches) {
      const std::size_t lots = item ? item->lots.size() : 0;
      bool same = addition.batches->size() == lots;
      for (std::size_t i = 0; same && i < lots; ++i) {
        same = (*addition.batches)[i].uuid == item->lots[i].uuid;
      }
      for (std::size_t i = 0; same && i < lots; ++i) {
        (*addition.batches)[i].cost = item->lots[i].cost;
      }
      if (!same) addition.batches.reset();
    }
    if (addition.batches) {
      if (item) lower(copy[addition.uuid], *addition.batches, true);
    } else {
      redo(brew, at, list, item, true);
    }
  }
}

/// Answers the shelf that is left, of what the brew knows.
Shelf pass(Brew& brew, const Shelf& shelf) {
  Shelf working;
  brew.available.clear();
  for (std::vector<Addition>* list : all(brew)) {
    for (const Addition& addition : *list) {
      if (addition.deducted || working.count(addition.uuid)) continue;
      if (const Item* item = in(shelf, addition.uuid)) working[addition.uuid] = *item;
    }
    validate(brew, *list, working);
    std::vector<bool> states;
    for (const Addition& addition : *list) {
      if (addition.deducted) continue;
      if (list == &brew.yeasts && addition.amountType != "Commercial Pack") {
        states.push_back(true);
      } else if (!working.count(addition.uuid)) {
        states.push_back(false);
      } else {
        Item& item = working[addition.uuid];
        item.total -= number(addition.amount);
        if (addition.batches) lower(item, *addition.batches, true);
        states.push_back(addition.batches && item.total >= -0.5);
      }
    }
    brew.available.push_back(states);
  }
  return working;
}

}  // namespace

double number(const std::string& text) {
  const char* at = text.c_str();
  while (*at == ' ') ++at;
  const char* digits = at + (*at == '-' || *at == '+');
  return std::isdigit(static_cast<unsigned char>(*digits)) || *digits == '.'
             ? std::strtod(at, nullptr)
             : 0;
}

std::string text(double number) {
  char buffer[400];
  std::snprintf(buffer, sizeof buffer, "%f", number);
  return std::isnan(number) ? "nan" : buffer;
}

void complete(Item& item) {
  std::stable_sort(item.lots.begin(), item.lots.end(),
                   [](const Lot& a, const Lot& b) { return a.expires > b.expires; });
  double sum = 0;
  for (const Lot& lot : item.lots) sum += static_cast<float>(number(lot.stock));
  if (item.type == "Yeast") sum = std::roundf(static_cast<float>(sum));
  item.total = number(text(sum));
}

void plan(Brew& brew, const Shelf& shelf) {
  brew.advisories.clear();
  pass(brew, shelf);
  double cost = 0;
  for (const std::vector<Addition>* list : all(brew)) {
    for (const Addition& addition : *list) {
      if (!addition.batches) continue;
      for (const Lot& lot : *addition.batches) {
        const auto amount = static_cast<float>(number(lot.amount));
        const auto each = static_cast<float>(number(lot.cost));
        cost += amount * each;
      }
    }
  }
  brew.cost = text(cost);
}

void adjust(Brew& brew, const Shelf& shelf, bool force) {
  Shelf working = shelf;
  for (std::vector<Addition>* list : {&brew.fermentables, &brew.hops, &brew.others}) {
    for (std::size_t at = 0; at < list->size(); ++at) {
      Addition& addition = (*list)[at];
      if (addition.deducted) continue;
      redo(brew, at, *list, in(working, addition.uuid), force);
      if (!addition.batches || !working.count(addition.uuid)) continue;
      Item& item = working[addition.uuid];
      item.total = number(text(item.total - number(addition.amount)));
      lower(item, *addition.batches, false);
    }
  }
}

void take(Brew& brew, Shelf& shelf, const std::map<std::string, double>& onOrder) {
  for (auto& [uuid, item] : pass(brew, shelf)) {
    Item left = item;
    const auto coming = onOrder.find(uuid);
    const double total = left.total < 0 ? 0 : left.total;
    if (total >= 0.001 || (coming != onOrder.end() && coming->second >= 0.001)) {
      std::erase_if(left.lots, [](const Lot& lot) { return number(lot.stock) < 0.001; });
    }
    complete(left);
    shelf[uuid] = left;
  }
  for (std::vector<Addition>* list : all(brew)) {
    for (Addition& addition : *list) addition.deducted = true;
  }
}

}  // namespace zym::second
