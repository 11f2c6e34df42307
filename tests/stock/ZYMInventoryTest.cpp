
#include "tests/stock/Shelf.h"
#include "zymcore/stock/ZYMInventory.h"
#include "zymcore/store/ZYMLibraryRegistry.h"
#include "zymcore/store/entities/ZYMInventoryBatchEntity.h"

namespace zym {
namespace {

class Inventory : public testing::WithShelf {
 protected:
  /// All stored lots by their index.
  static std::vector<std::string> storedOrder() {
    std::map<std::int64_t, std::string> lots;
    const auto found = *ZYMInventoryBatchEntity::findAllObjects();
    for (const auto* lot : found) {
      lots[lot->valueForKey(attributes::index)->integerValue()] = *lot->uuid();
    }
    std::vector<std::string> order;
    for (const auto& [index, uuid] : lots) order.push_back(uuid);
    return order;
  }
};

TEST_F(Inventory, AnItemStandsForAnIngredient) {
  EXPECT_EQ(reasonOf([] { inventory().createItem(); }),
            "DO NOT USE createItem for ZYMInventory use createItemForIngredient: instead!");
  EXPECT_THROW((void)inventory().firstIngredient(), NSException);
  EXPECT_FALSE(inventory().duplicateItemWithUUID("hop"));

  endTurn();
  const PlistDictionary malt = inventory().createItemForIngredient({"as given", "malt", 0});
  EXPECT_EQ(undoName(), "Add Item");
  EXPECT_EQ(shown(malt, {keys::UUID, keys::IngredientType, keys::Ingredient, keys::Version}),
            "malt Fermentable Pale Malt 5");
  EXPECT_TRUE(malt.array(keys::Batches)->empty());
  EXPECT_EQ(item("malt").stringValue(keys::AmountInStock), "0.000000");

  const PlistDictionary nobodys =
      inventory().createItemForIngredient_ofType({"Secret", std::nullopt, 0}, "Hop");
  EXPECT_EQ(nobodys.stringValue(keys::UUID).size(), 36U);
  EXPECT_EQ(nobodys.stringValue(keys::Ingredient), "Secret");
}

TEST_F(Inventory, OtherIngredientsAreLookedUpByTheNameOfTheirAdditions) {
  ZYMCachingModel& others = *ZYMLibraryRegistry::sharedInstance().libraryOfIngredientType("Other");
  others.addItemsFromArray(
      {PlistDictionary{{keys::UUID, "moss"}, {keys::Ingredient, "Irish Moss"}}});
  const auto nameOf = [](const char* type) {
    return std::string(inventory()
                           .createItemForIngredientWithoutUndo_ofType({"as given", "moss", 0}, type)
                           .stringValue(keys::Ingredient));
  };
  EXPECT_EQ(nameOf("OtherIngredients"), "Irish Moss");
  EXPECT_EQ(nameOf("Other"), "as given");
}

TEST_F(Inventory, ANewLotHasTheQualitiesOfTheLibrary) {
  EXPECT_FALSE(inventory().addBatchToItemWithUUID("malt"));
  for (const auto& [uuid, type, qualities] : {std::tuple("malt", "Fermentable", "80.000000 - -"),
                                              {"other malt", "Fermentable", "0.0 - -"},
                                              {"hop", "Hop", "- 4.500000 Whole"},
                                              {"other hop", "Hop", "- 0.0 Whole"},
                                              {"yeast", "Yeast", "- - -"}}) {
    stock(uuid, type, {});
    const PlistDictionary lot = *inventory().addBatchToItemWithUUID(uuid);
    EXPECT_EQ(shown(lot, {keys::Extract, keys::Alpha, keys::Form}), qualities) << uuid;
    EXPECT_EQ(shown(lot, {keys::BatchName, keys::AmountInStock}), "New Batch 0.0");
    EXPECT_EQ(lot.stringValue(keys::IngredientType), type);
    EXPECT_NEAR(lot.date(keys::ExpiresOn)->timeIntervalSinceReferenceDate() -
                    lot.date(keys::DeliveredOn)->timeIntervalSinceReferenceDate(),
                31536000, 10);
  }
}

TEST_F(Inventory, NewLotsComeFirst) {
  stock("hop", "Hop", {lot("a", "1", 3), lot("b", "1", 2)});
  endTurn();
  const NSDate before = *item("hop").date(keys::DateLastModified);
  const std::string added{inventory().addBatchToItemWithUUID("hop")->stringValue(keys::UUID)};
  EXPECT_EQ(undoName(), "Add Batch");
  EXPECT_GT(*item("hop").date(keys::DateLastModified), before);
  EXPECT_THAT(storedOrder(), ElementsAre(added, "a", "b"));
  EXPECT_THAT(texts(inventory().allBatchesForItemWithUUID("hop"), keys::UUID),
              ElementsAre(added, "a", "b"));
  EXPECT_FALSE(inventory().allBatchesForItemWithUUID("malt"));
}

// As two devices may make it.
TEST_F(Inventory, ALotWithTheUUIDOfAnothersStaysWithItsItem) {
  stock("hop", "Hop", {lot("a", "1", 3)});
  stock("malt", "Fermentable", {lot("b", "2", 2)});
  ZYMInventoryBatchEntity::onlyObjectWithUUID(nullptr, "b")
      ->setValue_forKey(PlistValue("a"), attributes::uuid);
  PlistArray more = *item("malt").array(keys::Batches);
  more.edit(0).editDictionary()->set(keys::AmountInStock, "5");
  inventory().updateBatches_inItemWithUUID(more, "malt");
  EXPECT_EQ(item("hop").stringValue(keys::AmountInStock), "1.000000");
  EXPECT_EQ(item("malt").stringValue(keys::AmountInStock), "5.000000");
}

TEST_F(Inventory, LotsAreReplacedWhereTheyDiffer) {
  stock("hop", "Hop", {lot("a", "1", 3), lot("b", "2", 2)});
  const PlistArray same = *item("hop").array(keys::Batches);
  endTurn();
  const bool couldUndo = undoManager().canUndo();
  inventory().updateBatches_inItemWithUUID(same, "hop");
  EXPECT_EQ(undoManager().canUndo(), couldUndo);
  inventory().updateBatches_inItemWithUUID({}, "unknown");

  // In another order they do differ, and are written as they come.
  const PlistArray reversed{*same.find(1), *same.find(0)};
  testing::Posts posts{CoreDataModelDidSaveNotification};
  inventory().updateBatches_inItemWithUUID(reversed, "hop");
  EXPECT_EQ(posts.names.size(), 1U);
  EXPECT_EQ(undoName(), "Edit Batch");
  EXPECT_THAT(storedOrder(), ElementsAre("b", "a"));
  inventory().updateBatches_inItemWithUUID({*same.find(1), lot("c", "5", 1)}, "hop");
  EXPECT_THAT(texts(item("hop").array(keys::Batches), keys::UUID), ElementsAre("b", "c"));
  PlistDictionary changed = item("hop");
  changed.set(keys::AmountInStock, "77");
  inventory().updateItem(changed);
  EXPECT_EQ(changed.stringValue(keys::AmountInStock), "7.000000") << "that of the lots";
  EXPECT_EQ(ZYMInventoryBatchEntity::findAllObjects()->size(), 2U);
}

TEST_F(Inventory, TheSweepRemovesWhatIsEmpty) {
  stock("full", "Hop", {lot("a", "1.234", 3), lot("b", "0.009", 2)});
  stock("empty", "Hop", {lot("c", "0.0099", 1)});
  stock("kept", "Hop", {lot("d", "0.01", 1)});
  stock("bare", "Hop", {});
  stock("ordered", "Hop", {});
  ZYMInventoryEntity& ordered = *ZYMInventoryEntity::onlyObjectWithUUID(nullptr, "ordered");
  ordered.setValue_forKey("5.0", attributes::amountOnOrder);
  endTurn();
  testing::Posts posts{CoreDataModelDidSaveNotification};
  inventory().removeItemsWithNoBatches();
  EXPECT_EQ(posts.names.size(), 1U);
  EXPECT_THAT(texts(item("full").array(keys::Batches), keys::UUID), ElementsAre("a"));
  EXPECT_EQ(item("full").stringValue(keys::AmountInStock), "1.23");
  EXPECT_EQ(item("kept").stringValue(keys::AmountInStock), "0.01");
  EXPECT_FALSE(inventory().itemWithUUID("empty") || inventory().itemWithUUID("bare"));
  EXPECT_TRUE(inventory().itemWithUUID("ordered")) << "something is said to be on order";
  stock("ordered", "Hop", {});
  EXPECT_EQ(*ordered.stringForKey(attributes::amountOnOrder), "0.0") << "but that isn't kept";
  // Totals written with other decimals alone are no reason to save.
  inventory().removeItemsWithNoBatches();
  stock("full", "Hop", {lot("a", "2", 3)});
  posts.names.clear();
  inventory().removeItemsWithNoBatches();
  EXPECT_EQ(item("full").stringValue(keys::AmountInStock), "2.00");
  EXPECT_TRUE(posts.names.empty());
}

TEST_F(Inventory, IsListedByType) {
  stock("hop", "Hop", {lot("a", "1", 1), lot("b", "1", 2)});
  stock("malt", "Fermentable", {});
  stock("stray", "Hop", {});
  const auto rows = inventory().summariesforAllItemsOfIngredientType("Hop");
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0], (ZYMSummary{"", "hop", 2}));
  const PlistArray hops = inventory().allItemsOfIngredientType("Hop");
  EXPECT_THAT(texts(hops, keys::UUID), ElementsAre("hop", "stray"));
  EXPECT_THAT(texts(hops, keys::Ingredient), ElementsAre("Fuggle", ""));
  EXPECT_EQ(*hops.find(0)->dictionary(), item("hop"));
  EXPECT_EQ(inventory().allItemsOfIngredientType("OtherIngredients").size(), 0U);
}

TEST_F(Inventory, AnOrderComesIn) {
  stock("hop", "Hop", {lot("old", "1.1", 1)});
  const PlistDictionary hop{{keys::IngredientUUID, "hop"},
                            {keys::IngredientType, "Hop"},
                            {keys::Amount, "2.2"},
                            {keys::Cost, "0.05"},
                            {keys::Alpha, "6"},
                            {keys::Form, "Pellets"},
                            {keys::Status, "Delivered"}};
  const PlistDictionary malt{{keys::IngredientUUID, "malt"},
                             {keys::IngredientType, "Fermentable"},
                             {keys::Amount, "5000"},
                             {keys::Extract, "79"},
                             {keys::Color, "4"},
                             {keys::Alpha, "1"}};
  testing::Posts posts{CoreDataModelDidSaveNotification};
  inventory().addOrderToInventory(
      PlistDictionary{{keys::Name, "May"}, {keys::OrderItems, PlistArray{hop, malt, malt}}});
  EXPECT_EQ(posts.names.size(), 1U);

  EXPECT_EQ(item("hop").stringValue(keys::AmountInStock), "3.300000");
  EXPECT_EQ(shown(*item("hop").rows(keys::Batches).begin(),
                  {keys::BatchName, keys::AmountInStock, keys::Cost, keys::Alpha, keys::Form}),
            "New Batch: May 2.2 0.05 6 Pellets");
  const PlistDictionary malts = item("malt");
  EXPECT_EQ(shown(malts, {keys::Ingredient, keys::AmountInStock}), "Pale Malt 10000.000000");
  ASSERT_EQ(malts.array(keys::Batches)->size(), 2U);
  EXPECT_EQ(shown(*malts.rows(keys::Batches).begin(), {keys::Extract, keys::Cost, keys::Alpha}),
            "79 0.0 -");
  EXPECT_FALSE(inventory().addOrderItem_orderName_toItemWithUUID(hop, "May", "unknown"));
}

}  // namespace
}  // namespace zym
