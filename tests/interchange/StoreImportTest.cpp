#include "tests/interchange/ExchangeTest.h"
#include "tests/support/Child.h"
#include "zymcore/interchange/operations/ZYMCachingModelDataStoreImportOperation.h"
#include "zymcore/interchange/operations/ZYMRecipeDataStoreImportOperation.h"
#include "zymcore/platform/events/NSOperationQueue.h"
#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMGroupEntity.h"

namespace zym {
namespace {

constexpr KeyName Recipes{"Recipes"};
constexpr KeyName Groups{"Groups"};

PlistDictionary batchNamed(const std::string& uuid) {
  return {{keys::UUID, uuid},
          {keys::BatchTitle, uuid},
          {keys::Actuals, PlistDictionary()},
          {keys::TastingNotes, ""},
          {keys::SpargeMethod, "No Sparge"},
          {keys::ModifiedRecipe, PlistDictionary{{keys::PreBoilWortVolume, "12345.0"}}}};
}

PlistDictionary recipeNamed(const std::string& uuid, std::initializer_list<const char*> batches,
                            const std::string& title) {
  PlistArray list;
  for (const char* batch : batches) list.append(batchNamed(batch));
  PlistDictionary recipe{{keys::UUID, uuid}, {keys::RecipeTitle, title}, {keys::Notes, 1}};
  if (!list.empty()) recipe.set(keys::Batches, list);
  return recipe;
}

PlistDictionary groupOf(const std::string& uuid, std::initializer_list<const char*> recipes) {
  PlistArray contents;
  for (const char* recipe : recipes) contents.append(recipe);
  return {{keys::UUID, uuid},
          {keys::GroupName, uuid + "s"},
          {keys::Type, "0"},
          {keys::KeysOfContents, contents}};
}

class StoreImportTest : public ExchangeTest {
 protected:
  /// The fractions that were told; -1 for the end.
  std::vector<float> unbundle(PlistDictionary bundle) {
    std::vector<float> told;
    recipes().unbundleRecipesFromDictionary_progressHandler_completionHandler(
        bundle, [&](float fraction) { told.push_back(fraction); }, [&] { told.push_back(-1); });
    EXPECT_THAT(told, IsEmpty()) << "later, in the queue";
    const PlistValue* groups = bundle.find(Groups);
    EXPECT_FALSE(groups && groups->isNumber()) << "numbers have become text";
    NSOperationQueue::mainQueue().waitUntilAllOperationsAreFinished();
    return told;
  }
  static std::vector<std::string> titles() {
    std::vector<std::string> result;
    for (const ZYMSummary& row : recipes().summariesForAllRecipes()) {
      result.push_back(row.name + "/" + std::to_string(row.numberOfChildren));
    }
    return result;
  }
};

TEST_F(StoreImportTest, BringsABundleInOnce) {
  const PlistDictionary bundle{
      {Recipes,
       PlistArray{recipeNamed("A", {"a1", "a2"}, "Ale"), "none", recipeNamed("B", {}, "Bock")}},
      {Groups, PlistArray{groupOf("G", {"A", "gone", "G", "B"}), groupOf("H", {"H"}), 7}}};
  const testing::Posts posts{CoreDataModelDidSaveNotification, CoreDataModelReloadNowNotification};
  for (int round = 0; round < 2; ++round) {
    EXPECT_THAT(unbundle(bundle), ElementsAre(0.5F, 1.0F, -1.0F));
    EXPECT_THAT(titles(), ElementsAre("Ale/2", "Bock/0"));
    EXPECT_THAT(*ZYMRecipeBatchEntity::findAllObjects(), SizeIs(2));
    EXPECT_THAT(*ZYMGroupEntity::findAllObjects(), SizeIs(2));
    EXPECT_EQ(recipes().summariesForAllRecipesInGroupWithUUID("G")->size(), 2U);
    EXPECT_EQ(recipes().summariesForAllRecipesInGroupWithUUID("H")->size(), 0U);
    EXPECT_TRUE(recipes().groupForUUID("G")->date(keys::DateLastModified));
    EXPECT_FALSE(undoManager().canUndo());
    EXPECT_FALSE(context().hasChanges());
  }
  EXPECT_THAT(posts.names,
              ElementsAre(CoreDataModelDidSaveNotification, CoreDataModelReloadNowNotification,
                          CoreDataModelDidSaveNotification, CoreDataModelReloadNowNotification));
  const PlistDictionary profile = *recipes().recipeForUUID("A")->dictionary(keys::Profile);
  EXPECT_EQ(profile.stringValue(keys::ProfileName), "Specific to this recipe");
  const PlistDictionary brewed =
      *recipes().batchWithUUID("a1")->dictionary(keys::ModifiedRecipe)->dictionary(keys::Profile);
  EXPECT_EQ(brewed.stringValue(keys::PreferredSpargeMethod), "No Sparge");
  EXPECT_EQ(brewed.stringValue(keys::PreBoilVolume), "12345.0");
  const auto* operation =
      dynamic_cast<ZYMRecipeDataStoreImportOperation*>(recipes().importOp().get());
  EXPECT_TRUE(operation->started() && operation->isFinished() && !operation->isExecuting());
  EXPECT_EQ(operation->percentDone(), 1.0F);
  EXPECT_EQ(recipes().importQueue(), &NSOperationQueue::mainQueue());
}

TEST_F(StoreImportTest, ReplacesTheFirstOfAUUID) {
  (void)unbundle(
      {{Recipes, PlistArray{recipeNamed("A", {"x"}, "Old"), recipeNamed("B", {"y"}, "Other")}}});
  // A dictionary of recipes as well; the batch of another recipe moves, "x" goes with its recipe.
  EXPECT_THAT(
      unbundle({{Recipes, PlistDictionary{{KeyName("k"), recipeNamed("A", {"y"}, "New")}}}}),
      ElementsAre(1.0F, -1.0F));
  EXPECT_THAT(titles(), ElementsAre("New/1", "Other/0"));
  EXPECT_FALSE(recipes().batchWithUUID("x"));
  PlistArray same;
  for (int i = 0; i < 1000; ++i) same.append(recipeNamed("S", {"s", "s"}, std::to_string(i)));
  (void)unbundle({{Recipes, same}});
  EXPECT_THAT(titles(), ElementsAre("999/1", "New/1", "Other/0"));
}

TEST_F(StoreImportTest, PassesOverWhatCannotBeStored) {
  (void)unbundle({{Recipes, PlistArray{recipeNamed("A", {"a"}, "Kept")}}});
  PlistValue deep = "x";
  for (int i = 0; i < 600; ++i) deep = PlistArray{deep};
  PlistDictionary tooDeep = recipeNamed("A", {}, "Lost");
  tooDeep.set(keys::Notes, deep);
  PlistDictionary deepBatch = recipeNamed("A", {"b"}, "Lost");
  deepBatch.editRows(keys::Batches).begin()->set(keys::BatchNotes, deep);
  setNSLogSink([](std::string_view) {});
  ZYMRecipeDataStoreImportOperation operation(
      {{Recipes, PlistArray{tooDeep, deepBatch, recipeNamed("C", {}, "Came")}}});
  operation.setProgressHandler([&](float) {
    EXPECT_TRUE(operation.started() && operation.isExecuting() && !operation.isFinished());
  });
  operation.start();
  setNSLogSink({});
  EXPECT_THAT(titles(), ElementsAre("Came/0", "Kept/1"));
  EXPECT_EQ(operation.percentDone(), 1.0F);
}

TEST_F(StoreImportTest, CompletesWithNothingToDo) {
  for (const PlistDictionary& bundle :
       {PlistDictionary(), PlistDictionary{{Recipes, "x"}, {Groups, 1}}}) {
    EXPECT_THAT(unbundle(bundle), ElementsAre(-1.0F));
  }
  int ends = 0;
  for (const std::string& path :
       {folder / "gone", folder.file("list.plist", "<plist><array/></plist>")}) {
    recipes().unbundleRecipesFrom_progressHandler_completionHandler(path, {}, [&] { ++ends; });
  }
  NSBundle::setMainBundle(NSBundle(folder.path(), "org.zymcore.tests", "1"));
  const PlistDictionary bundle{{Recipes, PlistArray{recipeNamed("A", {}, "Example")}}};
  (void)folder.file("Examples.plist", NSPropertyListSerialization::dataWithPropertyList_format(
                                          bundle, NSPropertyListFormat::XMLFormat_v1_0)
                                          .value());
  recipes().unbundleExamplesWithProgressHandler_completionHandler({}, [&] { ++ends; });
  NSOperationQueue::mainQueue().waitUntilAllOperationsAreFinished();
  EXPECT_EQ(ends, 3);
  EXPECT_THAT(titles(), ElementsAre("Example/0"));
}

// The loop runs between recipes, where others may save and the process may end.
TEST_F(StoreImportTest, IsSavedInWholeRecipesWheneverItEnds) {
  PlistArray many;
  for (int i = 0; i < 500; ++i) {
    const std::string number = std::to_string(i);
    many.append(recipeNamed(number, {("a" + number).c_str(), ("b" + number).c_str()}, number));
  }
  ZYMCoreDataModel::tearDown();
  for (const int limit : {1, 7, 60, 200}) {
    Child child([&](int pipe) {
      reopen();
      ZYMRecipeDataStoreImportOperation operation({{Recipes, many}});
      std::int64_t done = 0;
      operation.setProgressHandler([&](float) {
        if (++done % 3 == 0) ZYMCoreDataModel::sharedInstance().save();
        Child::tell(pipe, done);
      });
      operation.start();
    });
    while (child.hear(60'000).value_or(limit) < limit) {
    }
    child.kill();
    reopen();
    for (const ZYMSummary& row : recipes().summariesForAllRecipes()) {
      EXPECT_EQ(row.numberOfChildren, 2) << row.name;
      EXPECT_TRUE(recipes().recipeForUUID(row.uuid));
    }
    EXPECT_EQ(ZYMRecipeBatchEntity::findAllObjects()->size(),
              2 * ZYMRecipeEntity::findAllObjects()->size());
    EXPECT_GE(ZYMRecipeEntity::findAllObjects()->size() + 3, static_cast<std::size_t>(limit));
    ZYMCoreDataModel::tearDown();
  }
  reopen();
}

TEST_F(StoreImportTest, BringsRecordsIntoALibrary) {
  ZYMHops& hops = ZYMHops::sharedInstance();
  PlistDictionary known = hops.firstIngredient();
  known.set(keys::Alpha, "99");
  known.set(keys::DateLastModified, NSDate::dateWithTimeIntervalSince1970(1));
  const std::size_t before = hops.summariesforAllItems().size();
  const PlistDictionary added{{keys::UUID, "NEW"}, {keys::Variety, "New"}};
  const auto operation = hops.importOperationForDictionary({{KeyName("1"), known},
                                                            {KeyName("2"), added},
                                                            {KeyName("3"), added},
                                                            {KeyName("4"), "none"}});
  const testing::Posts posts{CoreDataModelDidSaveNotification, CoreDataModelReloadNowNotification};
  const auto token = NSNotificationCenter::defaultCenter().addObserverForName_object(
      CoreDataModelDidSaveNotification, nullptr,
      [&](const NSNotification&) { EXPECT_TRUE(operation->isExecuting()); });
  operation->start();
  EXPECT_THAT(posts.names, ElementsAre(CoreDataModelDidSaveNotification));
  EXPECT_EQ(hops.summariesforAllItems().size(), before + 1);
  const PlistDictionary stored = *hops.itemWithUUID(known.stringValue(keys::UUID));
  EXPECT_EQ(stored.doubleValue(keys::Alpha), 99);
  EXPECT_TRUE(*stored.date(keys::DateLastModified) > NSDate::dateWithTimeIntervalSince1970(1e9));
  EXPECT_FALSE(undoManager().canUndo());
  EXPECT_TRUE(operation->started() && operation->isFinished() && !operation->isExecuting());
  EXPECT_EQ(operation->percentDone(), 0);
  EXPECT_EQ(operation->entityClass(), hops.entityClass());
}

}  // namespace
}  // namespace zym
