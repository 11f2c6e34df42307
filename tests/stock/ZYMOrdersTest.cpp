
#include "tests/stock/Shelf.h"
#include "zymcore/stock/ZYMOrders.h"
#include "zymcore/store/ZYMLibraryRegistry.h"

namespace zym {
namespace {

class Orders : public testing::WithShelf {
 protected:
  static PlistDictionary wanted(const char* uuid, const char* type, const char* amount) {
    return {{keys::UUID, uuid}, {keys::IngredientType, type}, {keys::Amount, amount}};
  }
  static PlistDictionary order(const PlistArray& ingredients) {
    return *orders().createOrderForSupplierWithUUID_withIngredients("shop", ingredients);
  }
  static std::string uuidOf(const PlistDictionary& record) {
    return std::string(record.stringValue(keys::UUID));
  }
};

TEST_F(Orders, BeginEmpty) {
  endTurn();
  undoManager().removeAllActions();
  EXPECT_FALSE(orders().createOrderForSupplierWithUUID("nobody"));
  EXPECT_FALSE(orders().createOrderForSupplierWithUUID(std::nullopt));
  EXPECT_FALSE(orders().createOrderForSupplierWithUUID_withIngredients("nobody", {}));
  EXPECT_FALSE(undoManager().canUndo());

  const PlistDictionary made = *orders().createOrderForSupplierWithUUID("shop");
  EXPECT_EQ(undoName(), "Add Order");
  EXPECT_EQ(shown(made, {keys::Name, keys::SupplierUUID, keys::Notes}), "New Order shop ");
  EXPECT_EQ(*made.date(keys::OrderDate), *made.date(keys::DateLastModified));
  EXPECT_FALSE(made.contains(keys::OrderItems));
  EXPECT_TRUE(orders().orderWithUUID(uuidOf(made))->array(keys::OrderItems)->empty());

  const PlistDictionary inherited = orders().createItem();
  EXPECT_EQ(shown(inherited, {keys::Name, keys::SupplierUUID, keys::Notes}), "New Order  ");
  EXPECT_TRUE(inherited.date(keys::OrderDate));
}

TEST_F(Orders, AShoppingListHasTheQualitiesOfTheLibrary) {
  endTurn();
  const PlistDictionary made =
      order({wanted("malt", "Fermentable", "5000"), wanted("other malt", "Fermentable", "1"),
             wanted("hop", "Hop", "100.5"), wanted("other hop", "Hop", "1"),
             wanted("yeast", "Yeast", "2"), wanted("salt", "Other", "3")});
  EXPECT_EQ(undoName(), "Create Order");
  std::string lines;
  for (const PlistDictionary& line : made.rows(keys::OrderItems)) {
    lines += shown(line, {keys::IngredientUUID, keys::Amount, keys::Status, keys::Cost,
                          keys::Extract, keys::Color, keys::Alpha, keys::Form}) +
             "\n";
    EXPECT_EQ(line.stringValue(keys::OrderUUID), uuidOf(made));
  }
  EXPECT_EQ(lines, R"(malt 5000.000000 OnOrder 0.0 80.000000 3.000000 - -
other malt 1.000000 OnOrder 0.0 0 0 - -
hop 100.500000 OnOrder 0.0 - - 4.500000 Whole
other hop 1.000000 OnOrder 0.0 - - 0 Whole
yeast 2.000000 OnOrder 0.0 - - - -
salt 3.000000 OnOrder 0.0 - - - -
)");
}

TEST_F(Orders, LinesComeOneByOneAndGo) {
  const std::string uuid = uuidOf(order({wanted("hop", "Hop", "1")}));
  EXPECT_FALSE(
      orders().createOrderItemForOrderWithUUID_ingredientUUID_ingredientType("none", "hop", "Hop"));
  const NSDate before = *orders().orderWithUUID(uuid)->date(keys::DateLastModified);
  endTurn();
  const PlistDictionary line =
      *orders().createOrderItemForOrderWithUUID_ingredientUUID_ingredientType(uuid, "malt",
                                                                              "Fermentable");
  EXPECT_EQ(undoName(), "Add Order Item");
  EXPECT_EQ(line.stringValue(keys::Amount), "0");
  EXPECT_EQ(line.stringValue(keys::Extract), "80.000000");
  EXPECT_GT(*orders().orderWithUUID(uuid)->date(keys::DateLastModified), before);
  EXPECT_THAT(texts(orders().orderItemsForOrderWithUUID(uuid), keys::IngredientUUID),
              UnorderedElementsAre("hop", "malt"));

  orders().removeOrderItemWithUUID("none");
  orders().removeOrderItemsForIngredientWithUUID(std::nullopt);
  orders().removeOrdersForSupplierUUID(std::nullopt);
  orders().removeOrderItemWithUUID(uuidOf(line));
  EXPECT_EQ(undoName(), "Remove Order Item");
  EXPECT_THAT(texts(orders().orderItemsForOrderWithUUID(uuid), keys::IngredientUUID),
              ElementsAre("hop"));
  undoManager().undo();
  EXPECT_EQ(orders().orderItemsForOrderWithUUID(uuid)->size(), 2U);
}

TEST_F(Orders, ALineIsNeverUpdatedByItself) {
  const PlistDictionary made = order({wanted("hop", "Hop", "1")});
  PlistDictionary line = *made.rows(keys::OrderItems).begin();
  line.set(keys::Amount, "99");
  orders().updateOrderItem(line);
  EXPECT_EQ(orders().orderWithUUID(uuidOf(made)), made);
  line.set(keys::UUID, "none");
  EXPECT_THROW(orders().updateOrderItem(line), NSException);
  EXPECT_THROW(orders().updateOrderItem({}), NSException);
}

TEST_F(Orders, WhatIsOnOrderIsSummedInSinglePrecision) {
  EXPECT_EQ(orders().amountOnOrderForIngredientWithUUID("hop"), "0");
  const PlistDictionary one = order({wanted("hop", "Hop", "1.5"), wanted("hop", "Hop", "2")});
  order({wanted("hop", "Hop", "0.5"), wanted("malt", "Fermentable", "0.1")});
  EXPECT_EQ(orders().amountOnOrderForIngredientWithUUID("hop"), "4.000000");
  orders().markOrderItemsAsDelivered(
      {PlistDictionary{{keys::UUID, "none"}},
       *(*orders().orderItemsForOrderWithUUID(uuidOf(one))).find(1)});
  EXPECT_EQ(undoName(), "Mark Orders");
  EXPECT_EQ(orders().amountOnOrderForIngredientWithUUID("hop"), "2.000000");
  EXPECT_THAT(texts(orders().orderItemsForOrderWithUUID(uuidOf(one)), keys::Status),
              ElementsAre("OnOrder", "Delivered"));
  const PlistArray all = *orders().allOrdersForSupplierWithUUID("shop");
  for (const PlistDictionary& each : PlistRows(&all)) {
    orders().markOrderItemsAsDelivered(*each.array(keys::OrderItems));
  }
  // Known, and nothing left of it: another text than for what nobody ordered.
  EXPECT_EQ(orders().amountOnOrderForIngredientWithUUID("hop"), "0.000000");
  order({wanted("hop", "Hop", "0.1"), wanted("hop", "Hop", "16777217")});
  EXPECT_EQ(orders().amountOnOrderForIngredientWithUUID("hop"), "16777216.100000");
  EXPECT_EQ(inventory().allItems().size(), 0U) << "delivering alone brings nothing into stock";
}

TEST_F(Orders, ListsAreFlatAndSorted) {
  PlistDictionary b = order({wanted("x", "Other", "1"), wanted("a", "Other", "1")});
  PlistDictionary a = order({wanted("m", "Other", "1")});
  b.set(keys::Name, "B");
  a.set(keys::Name, "A");
  orders().updateOrder(b);
  orders().updateOrder(a);
  const std::vector<ZYMSummary> rows = orders().summariesForAllOrders();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0], (ZYMSummary{"A", uuidOf(a), 1}));
  EXPECT_EQ(rows[1], (ZYMSummary{"B", uuidOf(b), 2}));
  EXPECT_THAT(texts(orders().allOrders(), keys::Name), ElementsAre("A", "B"));
  EXPECT_THAT(texts(orders().allOrderItemsGroupedByIngredientUUID(), keys::IngredientUUID),
              ElementsAre("a", "m", "x"));
  EXPECT_THAT(texts(orders().allOrderItemsGroupedByOrder(), keys::OrderUUID),
              ElementsAre(uuidOf(b), uuidOf(b), uuidOf(a)));
  EXPECT_FALSE(orders().allOrdersForSupplierWithUUID("nobody"));
  EXPECT_FALSE(orders().orderItemsForOrderWithUUID("none"));
  EXPECT_FALSE(orders().orderItemsForIngredientWithUUID("none"));
  EXPECT_EQ(orders().orderItemsForIngredientWithUUID("m")->size(), 1U);
}

TEST_F(Orders, GoWithWhatTheyAreMadeOf) {
  const std::string uuid =
      uuidOf(order({wanted("hop", "Hop", "1"), wanted("malt", "Fermentable", "1")}));
  endTurn();
  ZYMHops::sharedInstance().removeItemWithUUID("hop");
  endTurn();
  EXPECT_THAT(texts(orders().orderItemsForOrderWithUUID(uuid), keys::IngredientUUID),
              ElementsAre("malt"));
  ZYMSuppliers::sharedInstance().removeSupplierWithUUID("shop");
  endTurn();
  EXPECT_FALSE(orders().orderWithUUID(uuid));
  EXPECT_EQ(orders().allOrderItemsGroupedByOrder().size(), 0U);
  undoManager().undo();
  undoManager().undo();
  EXPECT_EQ(orders().orderItemsForOrderWithUUID(uuid)->size(), 2U);
  orders().removeOrderWithUUID(uuid);
  EXPECT_EQ(orders().allOrderItemsGroupedByOrder().size(), 0U);
}

}  // namespace
}  // namespace zym
