// A brew writes the stock down: what it leaves, that it is one change, whole or not at all.

#include <signal.h>
#include <sys/resource.h>

#include <cstdlib>
#include <set>

#include "tests/stock/Shelf.h"
#include "tests/support/Child.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/stock/ZYMAvailabilitiesEngine.h"

namespace zym {
namespace {

constexpr KeyName malts = keys::FermentableIngredients;

class Brewing : public testing::WithShelf {
 protected:
  ~Brewing() override { engine().setBatch({}); }

  static ZYMAvailabilitiesEngine& engine() { return ZYMAvailabilitiesEngine::sharedInstance(); }
  static PlistDictionary addition(std::string_view uuid, std::string_view amount) {
    return {{keys::UUID, uuid}, {keys::Amount, amount}};
  }
  /// A stored batch with those malts; answers its uuid.
  static std::string newBatch(PlistArray additions) {
    ZYMRecipes& recipes = ZYMRecipes::sharedInstance();
    PlistDictionary recipe = recipes.createRecipe();
    recipe.set(malts, std::move(additions));
    recipes.updateRecipe(recipe);
    return std::string(
        recipes.addBatchToRecipeWithUUID(recipe.stringValue(keys::UUID))->stringValue(keys::UUID));
  }
  static void onOrderAre(std::string_view uuid, std::string_view amount) {
    (void)orders().createOrderForSupplierWithUUID_withIngredients(
        "shop",
        {PlistDictionary{
            {keys::UUID, uuid}, {keys::IngredientType, "Fermentable"}, {keys::Amount, amount}}});
  }
  static PlistDictionary storedBatch(const std::string& uuid) {
    return ZYMRecipes::sharedInstance().batchWithUUID(uuid).value_or(PlistDictionary());
  }
  static void open(const std::string& uuid) { engine().setBatch(SharedBatch(storedBatch(uuid))); }
  static void brew(const std::string& uuid) {
    open(uuid);
    engine().adjustInventoryForBatchAndSave();
  }
  static std::vector<std::string> inStock(std::string_view uuid) {
    return texts(item(uuid).array(keys::Batches), keys::AmountInStock);
  }
};

TEST_F(Brewing, WritesTheStockDown) {
  stock("malt", "Fermentable", {lot("late", "5", 2), lot("soon", "3", 1)});
  stock("gone", "Fermentable", {lot("x", "2", 1)});
  stock("coming", "Fermentable", {lot("y", "2", 2), lot("z", "1", 1)});
  stock("short", "Fermentable", {lot("s", "1", 1)});
  onOrderAre("coming", "9");
  const std::string batch =
      newBatch({addition("malt", "4"), addition("gone", "2"), addition("coming", "2.5"),
                addition("short", "7"), addition("none", "1")});
  brew(batch);
  EXPECT_THAT(inStock("malt"), ElementsAre("4.000000")) << "what is empty goes";
  EXPECT_THAT(inStock("gone"), ElementsAre("0.000000")) << "but not the last of it";
  EXPECT_THAT(inStock("coming"), ElementsAre("0.500000"));
  EXPECT_THAT(inStock("short"), ElementsAre("1")) << "of too little nothing is taken";
  EXPECT_EQ(item("malt").stringValue(keys::AmountInStock), "4.000000");

  const PlistDictionary stored = storedBatch(batch);
  EXPECT_EQ(stored.stringValue(keys::AdjustedInventory), "1");
  for (const PlistDictionary& row : stored.dictionary(keys::ModifiedRecipe)->rows(malts)) {
    EXPECT_EQ(row.stringValue(keys::IngredientDeducted), "1");
  }
  for (const std::size_t index : {0U, 4U, 99U}) {
    EXPECT_EQ(engine().availabilityOfIngredientInRecipeAtIndex_ofArrayForKey(index, malts), 3);
  }
}

TEST_F(Brewing, WhatIsOnOrderDecidesWhetherTheLastLotStays) {
  // A lot of less than 0.001 goes, unless nothing else is there and nothing will come.
  for (const auto& [left, onOrder, lots] : {std::tuple("0", "0", "0.000000"),
                                            {"0", "0.0009", "0.000000"},
                                            {"0", "0.001", ""},
                                            {"0.0009", "0", "0.000900"},
                                            {"0.0009", "1", ""},
                                            {"0.001", "1", "0.001000"}}) {
    inventory().removeItemWithUUID("malt");
    stock("malt", "Fermentable", {lot("a", std::to_string(2 + std::stod(left)), 1)});
    orders().removeOrderItemsForIngredientWithUUID("malt");
    onOrderAre("malt", onOrder);
    brew(newBatch({addition("malt", "2")}));
    std::string stocked;
    for (const std::string& each : inStock("malt")) stocked += each;
    EXPECT_EQ(stocked, lots) << left << " left, " << onOrder << " on order";
  }
}

TEST_F(Brewing, IsOneChange) {
  stock("malt", "Fermentable", {lot("a", "5", 1)});
  stock("wheat", "Fermentable", {lot("b", "5", 1)});
  const std::string batch = newBatch({addition("malt", "4"), addition("wheat", "2")});
  const PlistDictionary before = storedBatch(batch);
  endTurn();
  const PlistArray shelf = inventory().allItems();
  testing::Posts posts{CoreDataModelDidSaveNotification, CoreDataModelDidSaveFailedNotification};
  brew(batch);
  EXPECT_THAT(posts.names, ElementsAre(CoreDataModelDidSaveNotification));
  EXPECT_EQ(undoName(), "Update Batch");
  EXPECT_NE(inventory().allItems(), shelf);
  undoManager().undo();
  EXPECT_EQ(inventory().allItems(), shelf);
  EXPECT_EQ(storedBatch(batch), before);
  undoManager().redo();
  EXPECT_THAT(inStock("wheat"), ElementsAre("3.000000"));
}

TEST_F(Brewing, PlanningChangesNothingInTheStore) {
  stock("malt", "Fermentable", {lot("a", "5", 1)});
  const std::string batch = newBatch({addition("malt", "4")});
  const PlistArray shelf = inventory().allItems();
  endTurn();
  testing::Posts posts{CoreDataModelDidSaveNotification};
  open(batch);
  (void)engine().recalculateAvailabilitiesWithAdvisories(nullptr);
  const PlistDictionary planned = *engine().batch();
  (void)engine().recalculateAvailabilitiesWithAdvisories(nullptr);
  EXPECT_EQ(*engine().batch(), planned);
  EXPECT_EQ(inventory().allItems(), shelf);
  EXPECT_FALSE(context().hasChanges());
  EXPECT_THAT(posts.names, IsEmpty());

  // Undone, what was brewed is planned again, and brewing again takes nothing twice.
  engine().adjustInventoryForBatchAndSave();
  EXPECT_THAT(inStock("malt"), ElementsAre("1.000000"));
  engine().adjustInventoryForBatchAndSave();
  EXPECT_THAT(inStock("malt"), ElementsAre("1.000000"));
  endTurn();
  undoManager().undo();
  open(batch);
  (void)engine().recalculateAvailabilitiesWithAdvisories(nullptr);
  EXPECT_EQ(*engine().batch(), planned);
}

TEST_F(Brewing, ALotThatWentMeanwhileIsNotTaken) {
  stock("malt", "Fermentable", {lot("late", "5", 2), lot("soon", "3", 1)});
  const std::string batch = newBatch({addition("malt", "4")});
  open(batch);
  (void)engine().recalculateAvailabilitiesWithAdvisories(nullptr);
  inventory().updateBatches_inItemWithUUID({lot("late", "5", 2)}, "malt");
  engine().adjustInventoryForBatchAndSave();
  EXPECT_THAT(inStock("malt"), ElementsAre("1.000000"));
}

/// Twelve malts of two lots each in a data folder of their own, and a batch that takes of all.
class BrewedElsewhere : public Brewing {
 protected:
  static constexpr int items = 12;

  BrewedElsewhere() { ZYMCoreDataModel::tearDown(); }

  void openStore() const { model().setDataFolder(data_); }
  void fill(int number) {
    data_ = folder / ("data" + std::to_string(number));
    openStore();
    PlistArray additions;
    for (int k = 0; k < items; ++k) {
      stock("m" + std::to_string(k), "Fermentable",
            {lot("a" + std::to_string(k), "5", 2), lot("b" + std::to_string(k), "3", 1)});
      additions.append(addition("m" + std::to_string(k), "4"));
    }
    batch_ = newBatch(std::move(additions));
    ZYMCoreDataModel::tearDown();
  }
  /// In a process that says 1 before it and 2 after it.
  void brewThere(int pipe) const {
    openStore();
    open(batch_);
    (void)engine().recalculateAvailabilitiesWithAdvisories(nullptr);
    Child::tell(pipe, 1);
    engine().adjustInventoryForBatchAndSave();
    Child::tell(pipe, 2);
  }
  /// Whether it was brewed: all of it then, and else nothing.
  bool isBrewed() const {
    openStore();
    const bool isDeducted = storedBatch(batch_).boolValue(keys::AdjustedInventory);
    const std::vector<std::string> left =
        isDeducted ? std::vector<std::string>{"4.000000"} : std::vector<std::string>{"5", "3"};
    for (int k = 0; k < items; ++k) EXPECT_EQ(inStock("m" + std::to_string(k)), left);
    ZYMCoreDataModel::tearDown();
    return isDeducted;
  }

  std::string data_;
  std::string batch_;
};

TEST_F(BrewedElsewhere, KilledAtAnyMomentIsWholeOrNotAtAll) {
  const int kills = std::getenv("ZYM_LONG_TESTS") ? 200 : 15;
  int brewed = 0;
  for (int i = 0; i < kills; ++i) {
    fill(i);
    Child child([&](int pipe) {
      brewThere(pipe);
      ::pause();
    });
    ASSERT_EQ(child.hear(30000), 1);
    // Somewhere from its first step to behind its last.
    (void)child.hear(i % 16);
    child.kill();
    brewed += isBrewed() ? 1 : 0;
  }
  RecordProperty("brewed", brewed);
}

TEST_F(BrewedElsewhere, WithTheDiskFullIsWholeOrNotAtAll) {
  std::set<bool> outcomes;
  for (int pages = 0; pages < 40; pages += 5) {
    fill(pages);
    // No file may grow past the limit, which stands for the end of the disk.
    Child child([&](int pipe) {
      ::signal(SIGXFSZ, SIG_IGN);
      const rlimit limit{static_cast<rlim_t>(pages) * 4096, RLIM_INFINITY};
      openStore();
      (void)inventory().allItems();
      ::setrlimit(RLIMIT_FSIZE, &limit);
      brewThere(pipe);
    });
    EXPECT_EQ(child.join(), 0);
    outcomes.insert(isBrewed());
  }
  EXPECT_EQ(outcomes.size(), 2U) << "some have room and some have not";
}

}  // namespace
}  // namespace zym
