#pragma once

#include <span>
#include <string>
#include <string_view>

#include "app/values/LibraryKind.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym::host {

/// How a kind of ingredient stands in stock.
struct StockKind {
  std::string_view type;     // as records of stock have it
  std::string_view library;  // the kind of its library
  KeyName additions;
  PlistValue (*takeAmount)(const std::string& typed);
  std::string (*showAmount)(const PlistDictionary& record, KeyName key);
  std::string_view (*priceUnit)();  // by the user's units
  double little;                    // less is low
};
[[nodiscard]] std::span<const StockKind> stockKinds();
/// Of a type that no kind has, that of fermentables: amounts are weights.
[[nodiscard]] const StockKind& stockKindOf(const PlistDictionary& record);

/// An ingredient of a library that may be in stock.
struct Ingredient {
  const StockKind* kind;
  std::string name;
  std::string uuid;
};
/// The one that the user means, of all four libraries. Throws `InputError`.
[[nodiscard]] Ingredient ingredientNamed(const std::string& name);

/// As its library shows it.
[[nodiscard]] std::string nameOfIngredient(const StockKind& kind, std::string_view uuid);

/// The amount in the record as the user reads it.
[[nodiscard]] std::string amountShown(const PlistDictionary& record, KeyName key);
/// An amount that isn't negative. Throws `UsageError`.
[[nodiscard]] PlistValue amountTyped(const StockKind& kind, const std::string& typed);

/// A sum of money as the user's locale writes it.
[[nodiscard]] std::string money(double sum);
/// "3.20/kg" as the cost of one unit of "Amount": a gram, or a pack of yeast. Without a unit it is
/// that of `priceShown`. Throws `UsageError`.
[[nodiscard]] PlistValue priceTyped(const StockKind& kind, const std::string& typed);
[[nodiscard]] std::string priceShown(const StockKind& kind, const PlistDictionary& record);

/// Sets a value of a lot from KEY=VALUE. Throws `UsageError`.
void setLotValue(const StockKind& kind, PlistDictionary& lot, const std::string& assignment);
/// The keys there are, for the help text.
[[nodiscard]] std::string lotKeys();

}  // namespace zym::host
