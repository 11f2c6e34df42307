#pragma once

#include "tests/support/Store.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMSuppliers.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/stock/ZYMInventory.h"
#include "zymcore/stock/ZYMOrders.h"

namespace zym::testing {

/// A store with some ingredients, a supplier, and an empty shelf.
class WithShelf : public WithStore {
 protected:
  WithShelf() { fill(); }

  static void fill() {
    ZYMFermentables::sharedInstance().addItemsFromArray(
        {PlistDictionary{{keys::UUID, "malt"},
                         {keys::Ingredient, "Pale Malt"},
                         {keys::Extract, "80"},
                         {keys::Color, "3"}}});
    ZYMHops::sharedInstance().addItemsFromArray(
        {PlistDictionary{{keys::UUID, "hop"}, {keys::Variety, "Fuggle"}, {keys::Alpha, "4.5"}}});
    ZYMYeasts::sharedInstance().addItemsFromArray(
        {PlistDictionary{{keys::UUID, "yeast"}, {keys::Name, "US-05"}}});
    ZYMSuppliers::sharedInstance().addItemsFromArray(
        {PlistDictionary{{keys::UUID, "shop"}, {keys::Name, "The Shop"}}});
  }
  static ZYMInventory& inventory() { return ZYMInventory::sharedInstance(); }
  static ZYMOrders& orders() { return ZYMOrders::sharedInstance(); }

  static PlistDictionary lot(std::string_view uuid, std::string_view amount, double expires) {
    return {{keys::UUID, uuid},
            {keys::AmountInStock, amount},
            {keys::ExpiresOn, NSDate::dateWithTimeIntervalSinceReferenceDate(expires)}};
  }
  /// Stores an item; its lots are given with the one that expires last first.
  static void stock(std::string_view uuid, std::string_view type, PlistArray lots) {
    inventory().addItemsFromArray({PlistDictionary{
        {keys::UUID, uuid}, {keys::IngredientType, type}, {keys::Batches, std::move(lots)}}});
  }
  static PlistDictionary item(std::string_view uuid) {
    return inventory().itemWithUUID(uuid).value_or(PlistDictionary());
  }
};

}  // namespace zym::testing
