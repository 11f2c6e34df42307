#include "tests/support/Store.h"
#include "zymcore/platform/values/NSNotFound.h"
#include "zymcore/store/ZYMCachingModel.h"
#include "zymcore/store/ZYMLibraryRegistry.h"

namespace zym {
namespace {

class Bare final : public ZYMCachingModel {
 public:
  Bare() : ZYMCachingModel(keys::Variety) {}
};

class Hops final : public ZYMCachingModel {
 public:
  Hops() : ZYMCachingModel(keys::Variety) {}
  [[nodiscard]] std::string_view entityClass() const override { return ZYMHopEntity::entityName; }
  void prepareNewItem(PlistDictionary& item) override { item.set(keys::Alpha, 5); }
};

class CachingModel : public testing::WithStore {
 protected:
  ~CachingModel() override { ZYMLibraryRegistry::sharedInstance().registerOrders({}); }

  void add(std::initializer_list<std::pair<const char*, const char*>> namesAndUUIDs) {
    PlistArray items;
    for (const auto& [name, uuid] : namesAndUUIDs)
      items.append(PlistDictionary{{keys::Variety, name}, {keys::UUID, uuid}});
    hops.addItemsFromArray(items);
  }
  /// A second object of a uuid, which no operation makes.
  void addTwin(const char* uuid) {
    ZYMHopEntity::insertInContext(context()).setUuid(uuid);
    model().save();
  }
  std::vector<std::string> names() { return namesOf(hops.summariesforAllItems()); }
  std::vector<std::string> orderItemsRemoved;
  void watchOrders() {
    ZYMLibraryRegistry::sharedInstance().registerOrders(
        {[this](const std::optional<std::string>& uuid) {
           orderItemsRemoved.push_back(uuid.value_or("none"));
         },
         [this](const std::optional<std::string>& uuid) {
           orderItemsRemoved.push_back("orders of " + uuid.value_or("none"));
         }});
  }
  Hops hops;
};

TEST_F(CachingModel, OverridesAreAMust) {
  Bare bare;
  PlistDictionary item;
  EXPECT_THROW((void)bare.entityClass(), NSException);
  EXPECT_EQ(reasonOf([&] { bare.prepareNewItem(item); }), "prepareNewItem MUST be overridden");
}

TEST_F(CachingModel, CreatesOneUndoStep) {
  (void)context();
  const testing::Posts posts{CoreDataModelDidSaveNotification};
  const PlistDictionary item = hops.createItem();
  EXPECT_EQ(item.stringValue(keys::Alpha), "5.000000");  // as it was corrected for storage
  EXPECT_EQ(hops.itemWithUUID(item.stringValue(keys::UUID))
                ->date(keys::DateLastModified)
                ->timeIntervalSince1970(),
            item.date(keys::DateLastModified)->timeIntervalSince1970());
  EXPECT_EQ(posts.names.size(), 1U);
  EXPECT_EQ(undoManager().undoActionName(), "Add Item");
  undoManager().undo();
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(CachingModel, DuplicatesUnderANewNameAndUUID) {
  add({{"Fuggle", "F"}});
  const PlistDictionary copy = *hops.duplicateItemWithUUID("F");
  EXPECT_EQ(undoManager().undoActionName(), "Duplicate Item");
  PlistDictionary expected = *hops.itemWithUUID("F");
  EXPECT_LT(*expected.date(keys::DateLastModified), *copy.date(keys::DateLastModified));
  EXPECT_NE(copy.stringValue(keys::UUID), "F");
  expected.set(keys::Variety, "Fuggle-copy");
  for (const KeyName key : {keys::UUID, keys::DateLastModified}) expected.set(key, *copy.find(key));
  EXPECT_EQ(copy, expected);
  EXPECT_THAT(names(), ElementsAre("Fuggle", "Fuggle-copy"));
  EXPECT_FALSE(hops.duplicateItemWithUUID("unknown"));
}

TEST_F(CachingModel, AnEqualRecordChangesNothing) {
  add({{"Fuggle", "F"}});
  undoManager().removeAllActions();
  PlistDictionary item = *hops.itemWithUUID("F");
  const PlistDictionary before = item;
  const testing::Posts posts{CoreDataModelDidSaveNotification};
  hops.updateItem(item);
  EXPECT_EQ(item, before);
  EXPECT_FALSE(undoManager().canUndo());
  EXPECT_THAT(posts.names, IsEmpty());

  item.set(keys::Variety, "Goldings");
  item.remove(keys::Description);
  hops.updateItem(item);
  EXPECT_GT(*item.date(keys::DateLastModified), *before.date(keys::DateLastModified));
  EXPECT_EQ(*hops.itemWithUUID("F")->string(keys::Description), "");
  EXPECT_EQ(posts.names.size(), 1U);
  EXPECT_EQ(undoManager().undoActionName(), "Edit Item");
}

TEST_F(CachingModel, WhatIsThereTwiceIsNotThere) {
  add({{"Fuggle", "F"}, {"Goldings", "G"}});
  addTwin("F");
  undoManager().removeAllActions();
  EXPECT_FALSE(hops.itemWithUUID("F"));
  PlistDictionary item{{keys::UUID, "F"}, {keys::Variety, "x"}};
  hops.updateItem(item);
  hops.removeItemWithUUID("F");
  PlistDictionary nameless{{keys::Variety, "x"}};
  hops.updateItem(nameless);
  hops.removeItemWithUUID(std::nullopt);
  EXPECT_FALSE(undoManager().canUndo());
  EXPECT_THAT(names(), ElementsAre("", "Fuggle", "Goldings"));
  // A doubled one keeps none of the others from being added.
  add({{"y", "F"}, {"z", "Z"}});
  EXPECT_THAT(names(), ElementsAre("", "Fuggle", "Goldings", "z"));
}

TEST_F(CachingModel, RemovalClearsOrdersAndComesBackByUndo) {
  add({{"Fuggle", "F"}, {"Goldings", "G"}});
  endTurn();
  watchOrders();
  hops.removeItemWithUUID("F");
  EXPECT_THAT(names(), ElementsAre("Goldings"));
  EXPECT_THAT(orderItemsRemoved, ElementsAre("F"));
  EXPECT_EQ(undoManager().undoActionName(), "Delete Item");
  undoManager().undo();
  EXPECT_THAT(names(), ElementsAre("Fuggle", "Goldings"));
}

TEST_F(CachingModel, RemovalOfASupplierClearsItsOrders) {
  watchOrders();
  ZYMCachingModel& suppliers =
      *ZYMLibraryRegistry::sharedInstance().libraryOfEntity("ZYMSupplierEntity");
  suppliers.addItemsFromArray(
      {PlistDictionary{{keys::UUID, "S"}}, PlistDictionary{{keys::UUID, "T"}}});
  suppliers.removeItemWithUUID("S");
  suppliers.removeItems({PlistValue("T")});  // of several, the orders stay
  EXPECT_THAT(orderItemsRemoved, ElementsAre("orders of S"));
  EXPECT_FALSE(ZYMLibraryRegistry::sharedInstance().libraryOfEntity("ZYMRecipeEntity"));
  EXPECT_FALSE(ZYMLibraryRegistry::sharedInstance().isIngredient("ZYMRecipeEntity"));
}

TEST_F(CachingModel, RemovalOfSeveralAsksOrdersForTheFirstRowOnly) {
  const auto removed = [this](const std::vector<ZYMCachingModel::ItemReference>& items) {
    add({{"Fuggle", "F"}, {"Goldings", "G"}, {"Saaz", "S"}});
    orderItemsRemoved.clear();
    hops.removeItems(items);
    return orderItemsRemoved;
  };
  watchOrders();
  EXPECT_THAT(removed({ZYMSummary{"Fuggle", "F", 0}, PlistValue("G"),
                       PlistValue(PlistDictionary{{keys::UUID, "S"}})}),
              ElementsAre("F", "F", "F"));
  EXPECT_THAT(names(), IsEmpty());
  EXPECT_THAT(removed({PlistValue(PlistDictionary{{keys::UUID, "F"}}), PlistValue("G"),
                       PlistValue(7), PlistValue("unknown")}),
              ElementsAre("none", "none"));
  EXPECT_THAT(names(), ElementsAre("Saaz"));
  undoManager().removeAllActions();
  hops.removeItems({});
  EXPECT_EQ(undoManager().undoActionName(), "Delete Items");  // a step all the same
}

TEST_F(CachingModel, ListsAreByCodePointAndNamelessOnesGetAName) {
  add({{"saaz", "1"}, {"Zatec", "2"}, {"", "3"}, {"Äbc", "4"}});
  (void)ZYMHopEntity::insertInContext(context());
  EXPECT_THAT(names(), ElementsAre("", "", "Zatec", "saaz", "Äbc"));
  EXPECT_TRUE(context().hasChanges());
  model().save();
  EXPECT_EQ(ZYMHopEntity::objectsMatchingKey_andValue_sortedOnKey(attributes::name, "", {})->size(),
            2U);
}

TEST_F(CachingModel, AnEmptyLibraryMakesItsFirstIngredient) {
  const PlistDictionary first = hops.firstIngredient();
  EXPECT_EQ(first.stringValue(keys::UUID).size(), 36U);
  EXPECT_EQ(*first.string(keys::Variety), "");
  EXPECT_EQ(hops.firstIngredient().stringValue(keys::UUID), first.stringValue(keys::UUID));
}

TEST_F(CachingModel, MostSimilarOfAList) {
  const auto index = [](const char* text, const PlistArray& names) {
    return ZYMCachingModel::indexOfMostSimilarObjectToString_inArray_forKey(text, &names,
                                                                            std::nullopt);
  };
  EXPECT_EQ(index("PALE", {"Pale", "PALE"}), 1);
  EXPECT_EQ(index("pale", {"Pale", "PALE"}), 0);
  EXPECT_EQ(index("PALE", {"PALE", "PALE"}), 0);
  EXPECT_EQ(index("Pale Malt", {"Munich", "Pale Ale Malt", "Wheat"}), 1);
  EXPECT_EQ(index("Pale", {}), -1);
  EXPECT_EQ(index("a", {"b", "c"}), -1);  // no pair of letters, no score
  EXPECT_EQ(index("xyz", {"b", "abc"}), 0);
  EXPECT_EQ(
      ZYMCachingModel::indexOfMostSimilarObjectToString_inArray_forKey("a", nullptr, std::nullopt),
      NSNotFound);
  const PlistArray records{PlistDictionary{{keys::Name, "x"}},
                           PlistDictionary{{keys::Variety, "Saaz"}}, 7};
  EXPECT_EQ(ZYMCachingModel::indexOfMostSimilarObjectToString_inArray_forKey("saaz", &records,
                                                                             keys::Variety),
            1);
}

TEST_F(CachingModel, MostSimilarRecord) {
  EXPECT_EQ(reasonOf([&] {
              (void)hops.ingredientWithNameMostSimilarToString_matchingKeysAndValues("x", nullptr);
            }),
            "index -1 beyond bounds for array of 0");
  add({{"Fuggle", "F"}, {"Goldings", "G"}, {"Styrian Goldings", "S"}});
  const auto uuidOf = [this](const char* text, const PlistDictionary* filter) {
    return std::string(
        hops.ingredientWithNameMostSimilarToString_matchingKeysAndValues(text, filter)
            .stringValue(keys::UUID));
  };
  EXPECT_EQ(uuidOf("East Kent Goldings", nullptr), "G");
  const PlistDictionary styrian{{keys::UUID, "S"}, {keys::Variety, "Styrian Goldings"}};
  EXPECT_EQ(uuidOf("Fuggle", &styrian), "S");
  const PlistDictionary none{{keys::UUID, "X"}};
  EXPECT_EQ(uuidOf("Fuggle", &none), "F");  // a filter that matches nothing is dropped
}

// What is kept of the order of names is made anew by whatever may have changed it.
TEST_F(CachingModel, ListsFollowEveryChange) {
  add({{"Fuggle", "1"}});
  EXPECT_THAT(names(), ElementsAre("Fuggle"));
  endTurn();
  context()
      .insertNewObjectForEntityForName(ZYMHopEntity::entityName)
      ->setValue_forKey("Challenger", attributes::name);
  endTurn();
  EXPECT_THAT(names(), ElementsAre("Challenger", "Fuggle"));
  undoManager().undo();
  EXPECT_THAT(names(), ElementsAre("Fuggle"));
  undoManager().redo();
  EXPECT_THAT(names(), ElementsAre("Challenger", "Fuggle"));
  context().rollback();
  EXPECT_THAT(names(), ElementsAre("Fuggle"));
  NSManagedObjectContext other(NSPrivateQueueConcurrencyType);
  other.setPersistentStoreCoordinator(model().persistentStoreCoordinator());
  other.performBlockAndWait([&] {
    other.insertNewObjectForEntityForName(ZYMHopEntity::entityName)
        ->setValue_forKey("Bramling Cross", attributes::name);
    EXPECT_TRUE(other.save());
  });
  EXPECT_THAT(names(), ElementsAre("Bramling Cross", "Fuggle"));
  EXPECT_EQ(hops.ingredientWithNameMostSimilarToString_matchingKeysAndValues("Bramling", nullptr)
                .stringValue(keys::Variety),
            "Bramling Cross");
}

TEST_F(CachingModel, BulkAddingReplacesWithoutAnUndoStep) {
  add({{"Fuggle", "F"}});
  const NSDate before = *hops.itemWithUUID("F")->date(keys::DateLastModified);
  undoManager().removeAllActions();
  const testing::Posts posts{CoreDataModelDidSaveNotification};
  hops.addItemsFromDictionary(
      {{KeyName("any"),
        PlistDictionary{{keys::UUID, "F"}, {keys::Alpha, "9"}, {keys::DateLastModified, NSDate()}}},
       {KeyName("no"), PlistDictionary{{keys::Variety, "no uuid"}}},
       {KeyName("bad"), "text"}});
  EXPECT_THAT(names(), ElementsAre(""));
  EXPECT_GT(*hops.itemWithUUID("F")->date(keys::DateLastModified), before);
  EXPECT_EQ(posts.names.size(), 1U);
  hops.addItemsFromArray({1, "x"});
  EXPECT_EQ(posts.names.size(), 1U);
}

}  // namespace
}  // namespace zym
