#include <stdlib.h>

#include <ctime>

#include "tests/support/Differences.h"
#include "tests/support/Store.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/recipes/ZYMRecipes.h"

namespace zym {
namespace {

class Batches : public testing::WithStore {
 protected:
  static ZYMRecipes& recipes() { return ZYMRecipes::sharedInstance(); }
  static void addRecipe(const char* uuid, PlistDictionary recipe = {}) {
    recipe.set(keys::UUID, uuid);
    recipe.set(keys::RecipeTitle, uuid);
    ZYMRecipeEntity::insertInContext(context()).updateWithDictionaryRepresentation(recipe);
    model().save();
  }
  static void addBatch(const char* uuid, const char* recipe, std::optional<NSDate> brewed) {
    PlistDictionary batch{{keys::UUID, uuid}, {keys::BatchTitle, uuid}};
    if (brewed) batch.set(keys::DateBrewed, *brewed);
    recipes().restoreBatch_toRecipeWithUUID(batch, recipe);
  }
  static NSDate after(NSDate date, double seconds) {
    return NSDate::dateWithTimeIntervalSinceReferenceDate(date.timeIntervalSinceReferenceDate() +
                                                          seconds);
  }
};

TEST_F(Batches, ANewOneIsMadeOfTheRecipeAndTheDefaultProfile) {
  ZYMProfiles::sharedInstance().addItemsFromArray({R"({
      "UUID": "profile", "WaterGrainRatio": "3.5", "MTThermalMass": "120", "FinalWortVolume": "1",
      "PreferredSpargeMethod": "Fly Sparge",
      "PreferredBaseWaterUUID": "", "PreferredTargetWaterUUID": ""})"_json});
  addRecipe("Bock", R"({"FinalWortVolume": "23000", "FermentationTemperature": 9,
                        "Profile": {"WaterGrainRatio": "2"}})"_json);
  EXPECT_FALSE(recipes().emptyBatchForRecipeWithUUID("unknown"));
  set(keys::HydrometerCalibrationTemp, 15.6);
  PlistDictionary batch = recipes().emptyBatchForRecipeWithUUID("Bock").value();
  const PlistDictionary stored =
      ZYMRecipeEntity::onlyObjectWithUUID(nullptr, "Bock")->dictionaryRepresentation().value();
  EXPECT_EQ(batch.stringValue(keys::UUID).size(), 36U);
  batch.remove(keys::UUID);
  for (const KeyName key : {keys::DateLastModified, keys::DateBrewed, keys::DateRacked,
                            keys::DatePackaged, keys::DateReady}) {
    EXPECT_NEAR(batch.date(key)->timeIntervalSince1970(), NSDate::date().timeIntervalSince1970(),
                60);
    batch.remove(key);
  }
  PlistDictionary expected = document("new-batch.json");
  expected.set(keys::OriginalRecipe, stored);
  expected.set(keys::ModifiedRecipe, stored);
  // The figures are those of a recalculation, which also counts what the recipe costs.
  expected.editDictionary(keys::ModifiedRecipe)->set(keys::Cost, "0.000000");
  EXPECT_THAT(testing::differences(batch, expected), IsEmpty());
  EXPECT_THAT(recipes().allBatchSummariesNewestFirst(), IsEmpty());

  defaults().removeObjectForKey(keys::HydrometerCalibrationTemp);
  batch = recipes().emptyBatchForRecipeWithUUID("Bock").value();
  EXPECT_EQ(batch.dictionary(keys::Actuals)->stringValue(keys::OGTemp), "0.000000");
}

TEST_F(Batches, TitlesCountTheBatchesOfTheMoment) {
  addRecipe("100%@ Bock");
  const auto add = [] { return recipes().addBatchToRecipeWithUUID("100%@ Bock").value(); };
  add();
  const PlistDictionary second = add();
  EXPECT_EQ(add().stringValue(keys::BatchTitle), "Batch 3 of 100%@ Bock");
  endTurn();
  recipes().removeBatchWithUUID(second.stringValue(keys::UUID));
  EXPECT_EQ(add().stringValue(keys::BatchTitle), "Batch 3 of 100%@ Bock");
  EXPECT_FALSE(recipes().addBatchToRecipeWithUUID("unknown"));
}

TEST_F(Batches, AnUnknownRecipeLeavesAnUndoGroupOpen) {
  PlistDictionary batch{{keys::UUID, "batch"}};
  endTurn();
  recipes().restoreBatch_toRecipeWithUUID(batch, "unknown");
  EXPECT_EQ(undoManager().groupingLevel(), 2);  // its own in that of the turn
  EXPECT_FALSE(context().hasChanges());
  endTurn();
  EXPECT_EQ(undoManager().groupingLevel(), 0);
}

TEST_F(Batches, AreRestoredInPlaceOfTheOnlyOneWithTheirUUID) {
  addRecipe("Bock");
  addRecipe("Ale");
  addBatch("a", "Bock", std::nullopt);
  addBatch("a", "Ale", std::nullopt);
  EXPECT_THAT(*recipes().batchSummariesForRecipeWithUUID("Bock"), IsEmpty());
  EXPECT_THAT(*recipes().batchSummariesForRecipeWithUUID("Ale"), ElementsAre(ZYMSummary{"a", "a"}));
  EXPECT_EQ(recipes().parentRecipeUUIDForBatchWithUUID("a"), "Ale");
  ZYMRecipeBatchEntity::insertInContext(context()).setUuid("a");
  addBatch("a", "Bock", std::nullopt);
  EXPECT_THAT(*recipes().batchSummariesForRecipeWithUUID("Ale"), SizeIs(1));
  EXPECT_THAT(*recipes().batchSummariesForRecipeWithUUID("Bock"), SizeIs(1));
  EXPECT_FALSE(recipes().parentRecipeUUIDForBatchWithUUID("a"));
}

PlistValue nested(int levels) {
  PlistValue tree = "";
  for (int i = 0; i < levels; ++i) tree = PlistArray{std::move(tree)};
  return tree;
}

TEST_F(Batches, ADocumentThatCannotBeStoredLeavesNothingBehind) {
  addRecipe("Bock");
  addBatch("a", "Bock", std::nullopt);
  for (const char* uuid : {"a", "new"}) {
    PlistDictionary batch{
        {keys::UUID, uuid}, {keys::BatchTitle, "changed"}, {keys::Notes, nested(600)}};
    EXPECT_THROW(recipes().restoreBatch_toRecipeWithUUID(batch, "Bock"), NSException);
    model().save();
  }
  EXPECT_THAT(*recipes().batchSummariesForRecipeWithUUID("Bock"),
              ElementsAre(ZYMSummary{"a", "a"}));
  EXPECT_THAT(*ZYMRecipeBatchEntity::findAllObjects(), SizeIs(1)) << "of no recipe either";
}

TEST_F(Batches, AreRepairedWhenTheyAreRead) {
  addRecipe("Bock");
  PlistDictionary recipe =
      R"({"HopIngredients": [{"Description": "", "IngredientDeducted": ""}],
          "YeastIngredients": [{"Description": ""}]})"_json;
  recipe.set(keys::Notes, std::string(20000, 'n'));
  PlistDictionary batch = R"({"UUID": "a", "BatchTitle": "", "TastingNotes": ""})"_json;
  for (const KeyName key : {keys::OriginalRecipe, keys::ModifiedRecipe, keys::RecipeAtCreation}) {
    batch.set(key, recipe);
  }
  recipes().restoreBatch_toRecipeWithUUID(batch, "Bock");
  EXPECT_FALSE(recipes().batchWithUUID("a"));
  EXPECT_THAT(recipes().batchSummariesForRecipeWithUUID("Bock"), ::testing::Optional(SizeIs(1)));
  batch.set(keys::Actuals, "");
  recipes().updateBatch(batch);

  const PlistDictionary read = recipes().batchWithUUID("a").value();
  for (const KeyName key : {keys::OriginalRecipe, keys::ModifiedRecipe, keys::RecipeAtCreation}) {
    const PlistDictionary& repaired = *read.dictionary(key);
    EXPECT_EQ(repaired.stringValue(keys::MgSO4InGrammes), "nan");
    EXPECT_FALSE((*repaired.rows(keys::HopIngredients).begin()).contains(keys::Description));
    EXPECT_TRUE((*repaired.rows(keys::YeastIngredients).begin()).contains(keys::Description));
    EXPECT_EQ(repaired.contains(keys::SteepTemperature), key.text() == keys::ModifiedRecipe.text());
  }
  EXPECT_EQ(ZYMRecipeBatchEntity::onlyObjectWithUUID(nullptr, "a")->dictionaryRepresentation(),
            batch);
}

TEST_F(Batches, OnlyAChangeIsStored) {
  addRecipe("Bock");
  const NSDate date = NSDate::dateWithTimeIntervalSinceReferenceDate(0.1);
  PlistDictionary recipe{{keys::BoilDuration, 60}, {keys::IsGrain, true}};
  ZYMRecipes::checkSaltWeightsExistInRecipe(recipe);
  ZYMRecipes::ensureRecipeLatestVersion(recipe);
  PlistDictionary batch = R"({"UUID": "a", "Actuals": {"OG": 1.05}, "TastingNotes": ""})"_json;
  batch.set(keys::DateLastModified, date);
  batch.set(keys::ModifiedRecipe, recipe);
  recipes().restoreBatch_toRecipeWithUUID(batch, "Bock");
  reopen();
  PlistDictionary read = recipes().batchWithUUID("a").value();
  const testing::Posts posts({CoreDataModelDidSaveNotification});
  recipes().updateBatch(read);
  endTurn();
  EXPECT_EQ(*read.date(keys::DateLastModified), date);
  EXPECT_THAT(posts.names, IsEmpty());
  EXPECT_FALSE(undoManager().canUndo());

  read.set(keys::BatchNotes, 1);
  recipes().updateBatch_preservingDLM(read, true);
  EXPECT_EQ(recipes().batchWithUUID("a"), read);
  EXPECT_EQ(*read.date(keys::DateLastModified), date);
  read.set(keys::BatchNotes, "2");
  recipes().updateBatch(read);
  EXPECT_GT(*read.date(keys::DateLastModified), date);
  EXPECT_EQ(recipes().batchWithUUID("a"), read);
  EXPECT_THAT(posts.names, SizeIs(2));
  read.set(keys::UUID, "unknown");
  recipes().updateBatch(read);
  EXPECT_THAT(posts.names, SizeIs(2));
}

TEST_F(Batches, ListsBeginStrictlyLaterThanTheirDate) {
  addRecipe("Bock");
  const NSDate now = NSDate::date();
  const auto daysAgo = [&](int days, double seconds) { return after(now, seconds - days * 86400); };
  struct Span {
    int days;
    std::vector<ZYMSummary> (ZYMRecipes::*list)() const;
  };
  const Span spans[] = {{93, &ZYMRecipes::batchSummariesNewestFirstLast3Months},
                        {186, &ZYMRecipes::batchSummariesNewestFirstLast6Months},
                        {365, &ZYMRecipes::batchSummariesNewestFirstLast12Months},
                        {730, &ZYMRecipes::batchSummariesNewestFirstLast24Months}};
  for (const Span& span : spans) {
    addBatch("in", "Bock", daysAgo(span.days, 60));
    addBatch("out", "Bock", daysAgo(span.days, 0));
    EXPECT_THAT(uuidsOf((recipes().*span.list)()), ElementsAre("in"));
  }
  addBatch("today", "Bock", now);
  addBatch("none", "Bock", std::nullopt);
  addBatch("past", "Bock", NSDate::distantPast());
  EXPECT_THAT(uuidsOf(*recipes().batchSummariesForRecipeWithUUID("Bock")),
              ElementsAre("none", "past", "out", "in", "today"));
  EXPECT_THAT(uuidsOf(recipes().allBatchSummariesNewestFirst()), ElementsAre("today", "in", "out"));
  const NSDate out = daysAgo(730, 0);
  EXPECT_THAT(uuidsOf(recipes().batchSummariesNewestFirstSinceDate(out)),
              ElementsAre("today", "in"));
  const PlistArray batches = recipes().batchesNewestFirstSinceDate(out);
  ASSERT_EQ(batches.size(), 2);
  EXPECT_EQ(*batches.find(0)->dictionary(),
            ZYMRecipeBatchEntity::onlyObjectWithUUID(nullptr, "today")->dictionaryRepresentation());
  EXPECT_FALSE(recipes().batchSummariesForRecipeWithUUID("unknown"));
}

TEST_F(Batches, TheYearBeginsByTheClockOfThePlace) {
  addRecipe("Bock");
  for (const char* zone : {"Pacific/Kiritimati", "Pacific/Pago_Pago"}) {
    setenv("TZ", zone, 1);
    tzset();
    const std::time_t now = std::time(nullptr);
    std::tm start{};
    start.tm_mday = 1;
    start.tm_isdst = -1;
    start.tm_year = std::localtime(&now)->tm_year;
    const auto date = NSDate::dateWithTimeIntervalSince1970(static_cast<double>(mktime(&start)));
    addBatch("in", "Bock", after(date, 1));
    addBatch("out", "Bock", date);
    EXPECT_THAT(uuidsOf(recipes().batchSummariesNewestFirstSinceYearStart()), ElementsAre("in"));
  }
  unsetenv("TZ");
  tzset();
}

TEST_F(Batches, PromotionMakesARecipeAndMovesTheBatchUnderIt) {
  addRecipe("Bock", R"({"HopIngredients":
                        [{"Amount": "1", "IngredientDeducted": "1", "Batches": []}]})"_json);
  const std::string groupUUID = recipes().createGroup().uuid.value();
  PlistDictionary batch = recipes().addBatchToRecipeWithUUID("Bock").value();
  const std::string uuid(batch.stringValue(keys::UUID));
  batch.editDictionary(keys::ModifiedRecipe)->set(keys::Notes, "as brewed");
  batch.editDictionary(keys::OriginalRecipe)->set(keys::Notes, "as planned");
  recipes().updateBatch(batch);
  endTurn();

  const PlistDictionary recipe = recipes().promoteBatchWithUUID_addToGroupWithUUID(uuid, groupUUID);
  endTurn();
  EXPECT_EQ(recipe.stringValue(keys::RecipeTitle), "Promoted from Batch 1 of Bock");
  EXPECT_EQ(recipe.stringValue(keys::Notes), "as brewed");
  EXPECT_EQ(*recipe.array(keys::HopIngredients), PlistArray{R"({"Amount": "1"})"_json});
  const std::string recipeUUID(recipe.stringValue(keys::UUID));
  EXPECT_EQ(ZYMRecipeEntity::onlyObjectWithUUID(nullptr, recipeUUID)->dictionaryRepresentation(),
            recipe);
  EXPECT_THAT(*recipes().batchSummariesForRecipeWithUUID("Bock"), IsEmpty());
  const auto moved = recipes().batchSummariesForRecipeWithUUID(recipeUUID)->at(0).uuid;
  EXPECT_NE(moved, uuid);
  const PlistDictionary stored = recipes().batchWithUUID(*moved).value();
  EXPECT_GT(*stored.date(keys::DateLastModified), *batch.date(keys::DateLastModified));
  EXPECT_EQ(stored.dictionary(keys::ModifiedRecipe)->rows(keys::HopIngredients).begin()->size(), 3);
  const PlistDictionary group = recipes().groupForUUID(groupUUID).value();
  EXPECT_EQ(*group.array(keys::KeysOfContents), (PlistArray{recipeUUID}));
  EXPECT_GE(*group.date(keys::DateLastModified), *recipe.date(keys::DateLastModified));

  EXPECT_EQ(reasonOf([&] { recipes().promoteBatchWithUUID_addToGroupWithUUID(uuid, ""); }),
            "there is no batch " + uuid);
  EXPECT_EQ(undoManager().groupingLevel(), 0);
  undoManager().undo();
  EXPECT_EQ(recipes().parentRecipeUUIDForBatchWithUUID(uuid), "Bock");
}

}  // namespace
}  // namespace zym
