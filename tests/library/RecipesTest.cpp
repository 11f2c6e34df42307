#include "tests/support/Differences.h"
#include "tests/support/Pictures.h"
#include "tests/support/Store.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/recipes/StoredDocuments.h"
#include "zymcore/library/recipes/ZYMRecipes.h"

namespace zym {
namespace {

class Recipes : public testing::WithStore {
 protected:
  static ZYMRecipes& recipes() { return ZYMRecipes::sharedInstance(); }

  static std::string newRecipe(const std::string& title) {
    PlistDictionary recipe = recipes().createRecipe();
    recipe.set(keys::RecipeTitle, title);
    recipes().updateRecipe(recipe);
    return std::string(recipe.stringValue(keys::UUID));
  }
  static std::string newGroup(const std::vector<std::string>& members) {
    const std::string group = recipes().createGroup().uuid.value();
    recipes().replaceRecipesInGroupWithUUID_withRecipes(group, members);
    backdate(group);
    return group;
  }
  static ZYMGroupEntity& groupObject(const std::string& uuid) {
    return *ZYMGroupEntity::onlyObjectWithUUID(nullptr, uuid);
  }
  static void backdate(const std::string& group) {
    groupObject(group).setDateLastModified(NSDate());
    model().save();
  }
  static bool hasMoved(const std::string& group) {
    return groupObject(group).dateLastModified() != NSDate();
  }
  static std::vector<std::string> members(const std::string& group) {
    return uuidsOf(recipes().summariesForAllRecipesInGroupWithUUID(group).value());
  }
};

TEST_F(Recipes, AnEmptyRecipeIsForTheDefaultProfile) {
  ZYMWaters::sharedInstance().addItemsFromArray({R"({"UUID": "W", "Name": " Aa"})"_json});
  PlistDictionary profile = ZYMProfiles::sharedInstance().defaultProfile();
  profile.set(keys::PostBoilVolume, "12345");
  profile.set(keys::PreferredRecipeType, words::mashTypes[1]);
  profile.set(keys::PreferredMashSchedule, "S");
  ZYMProfiles::sharedInstance().updateItem(profile);

  profile = ZYMProfiles::sharedInstance().defaultProfile();  // as it is stored
  PlistDictionary recipe = recipes().emptyRecipe();
  EXPECT_EQ(recipe.stringValue(keys::UUID).size(), 36U);
  EXPECT_GE(*recipe.date(keys::DateLastModified), *profile.date(keys::DateLastModified));
  PlistDictionary expected = document("new-recipe.json");
  expected.set(keys::Profile, profile);
  for (const KeyName key : {keys::UUID, keys::DateLastModified})
    expected.set(key, *recipe.find(key));
  EXPECT_THAT(testing::differences(recipe, expected), IsEmpty());
  EXPECT_THAT(recipes().summariesForAllRecipes(), IsEmpty());

  set(ZYMPreferredStyleGuidelinesKey, 0);
  ZYMMashSchedules::sharedInstance().addItemsFromArray(
      {R"({"UUID": "S", "ScheduleName": "Single"})"_json});
  recipe = recipes().emptyRecipe();
  EXPECT_EQ(recipe.integerValue(keys::StyleGuidelinesSource), 0);
  EXPECT_EQ(recipe.dictionary(keys::MashSchedule)->stringValue(keys::ScheduleName), "Single");
}

// An empty recipe is only looked at: the waters keep what they have.
TEST_F(Recipes, AnEmptyRecipeChangesNothing) {
  (void)ZYMProfiles::sharedInstance().defaultProfile();
  ZYMWaterEntity& water = ZYMWaterEntity::insertInContext(context());
  water.setUuid("W");
  model().save();
  const PlistDictionary recipe = recipes().emptyRecipe();
  EXPECT_EQ(recipe.stringValue(keys::WaterProfileUsed), "");
  EXPECT_EQ(recipe.stringValue(keys::BaseWaterProfileUsedUUID), "W");
  EXPECT_FALSE(context().hasChanges());
}

TEST_F(Recipes, OnlyCreateRecipeMakesTheRepairs) {
  EXPECT_TRUE(recipes().createRecipe().contains(keys::WortFermentability));
  const PlistDictionary bare = recipes().createRecipeAndAddToGroupWithUUID("");
  EXPECT_FALSE(bare.contains(keys::WortFermentability));
  EXPECT_FALSE(bare.contains(keys::TargetWaterProfileUsedUUID));
  EXPECT_EQ(bare.stringValue(keys::WaterProfileUsed), " No Water Profile Chosen");
}

TEST_F(Recipes, ARepairedDocumentIsAChangeAndAReadOneIsNot) {
  PlistDictionary bare = recipes().createRecipeAndAddToGroupWithUUID("");
  const std::string uuid(bare.stringValue(keys::UUID));
  PlistDictionary read = recipes().recipeForUUID(uuid).value();
  const NSDate before = *read.date(keys::DateLastModified);

  recipes().updateRecipe_preservingDLM(read, true);
  EXPECT_EQ(*read.date(keys::DateLastModified), before);

  testing::Posts posts{CoreDataModelDidSaveNotification};
  PlistDictionary again = recipes().recipeForUUID(uuid).value();
  EXPECT_EQ(again, read);
  recipes().updateRecipe(again);
  EXPECT_THAT(posts.names, IsEmpty());
  again.set(keys::Notes, "new");
  recipes().updateRecipe(again);
  EXPECT_GT(*again.date(keys::DateLastModified), before);
  EXPECT_EQ(posts.names.size(), 1U);

  PlistDictionary unknown{{keys::UUID, "unknown"}, {keys::RecipeTitle, "x"}};
  recipes().updateRecipe(unknown);
  EXPECT_EQ(recipes().summariesForAllRecipes().size(), 1U);
}

TEST_F(Recipes, ACopyHasItsOwnIdentityAndNothingFromStock) {
  const std::string uuid = newRecipe("Ale");
  const std::string group = newGroup({uuid});
  PlistDictionary batch = recipes().addBatchToRecipeWithUUID(uuid).value();
  batch.editDictionary(keys::ModifiedRecipe)
      ->set(keys::HopIngredients, PlistArray{R"({"Variety": "Fuggle", "IngredientDeducted": "1",
                                                 "Batches": [{"Amount": "3"}]})"_json});
  batch.set(keys::AdjustedInventory, "1");
  recipes().updateBatch(batch);

  const auto recipeCopy = recipes().duplicateItemWithUUID_addToGroupWithUUID(uuid, group);
  EXPECT_EQ(recipeCopy->stringValue(keys::RecipeTitle), "Ale-copy");
  EXPECT_EQ(members(group).size(), 2U);
  EXPECT_TRUE(hasMoved(group));

  const auto batchCopy =
      recipes().duplicateItemWithUUID_addToGroupWithUUID(batch.stringValue(keys::UUID), group);
  EXPECT_EQ(batchCopy->stringValue(keys::BatchTitle), "Batch 1 of Ale-copy");
  EXPECT_FALSE(batchCopy->contains(keys::AdjustedInventory));
  EXPECT_EQ(*batchCopy->dictionary(keys::ModifiedRecipe)->array(keys::HopIngredients),
            PlistArray{R"({"Variety": "Fuggle"})"_json});
  EXPECT_EQ(recipes().parentRecipeUUIDForBatchWithUUID(batchCopy->stringValue(keys::UUID)), uuid);
  EXPECT_EQ(recipes().summaryForRecipeWithUUID(uuid)->numberOfChildren, 2);
}

TEST_F(Recipes, ARemovedRecipeLeavesItsGroupsAndComesBackWhole) {
  const std::string uuid = newRecipe("Ale");
  const std::string group = newGroup({uuid});
  const auto batch = recipes().addBatchToRecipeWithUUID(uuid);
  endTurn();

  recipes().removeRecipeWithUUID_fromGroupWithUUID(uuid, "");
  endTurn();
  EXPECT_TRUE(hasMoved(group));
  EXPECT_THAT(members(group), IsEmpty());
  EXPECT_FALSE(recipes().batchWithUUID(batch->stringValue(keys::UUID)));

  undoManager().undo();
  EXPECT_THAT(members(group), ElementsAre(uuid));
  EXPECT_TRUE(recipes().batchWithUUID(batch->stringValue(keys::UUID)));
  EXPECT_FALSE(hasMoved(group));
}

TEST_F(Recipes, AGroupIsMadeRenamedAndRestored) {
  const std::string uuid = newRecipe("Ale");
  const ZYMSummary made = recipes().createGroup();
  EXPECT_EQ(made, (ZYMSummary{"New Group", *made.uuid, 0}));
  PlistDictionary record = recipes().groupForUUID(*made.uuid).value();
  EXPECT_EQ(record.stringValue(keys::Type), "Normal");

  backdate(*made.uuid);
  recipes().updateGroup(made);
  EXPECT_FALSE(hasMoved(*made.uuid));
  recipes().updateGroup({"Ales", *made.uuid, 9});
  EXPECT_TRUE(hasMoved(*made.uuid));
  recipes().replaceRecipesInGroupWithUUID_withRecipes(*made.uuid, {uuid, "unknown"});
  EXPECT_THAT(recipes().summariesForAllGroups(), ElementsAre(ZYMSummary{"Ales", *made.uuid, 1}));
  EXPECT_EQ(recipes().summaryForLibraryGroup(), (ZYMSummary{"Library", "", 1}));

  record = recipes().groupForUUID(*made.uuid).value();
  recipes().deleteGroupWithUUID(*made.uuid);
  EXPECT_FALSE(recipes().summariesForAllRecipesInGroupWithUUID(*made.uuid));
  EXPECT_EQ(recipes().summariesForAllRecipes().size(), 1U);
  recipes().restoreGroup(record);
  EXPECT_THAT(members(*made.uuid), ElementsAre(uuid));
}

// What is called adding takes out; a recipe joins by replacing the members.
TEST_F(Recipes, AddingToAGroupTakesOut) {
  const std::string inside = newRecipe("a");
  const std::string outside = newRecipe("b");
  const std::string group = newGroup({inside});
  recipes().addRecipeWithUUID_toGroupWithUUID(outside, group);
  EXPECT_THAT(members(group), ElementsAre(inside));
  EXPECT_TRUE(hasMoved(group));
  backdate(group);
  recipes().addRecipeWithUUID_toGroupWithUUID(inside, group);
  EXPECT_THAT(members(group), IsEmpty());
  recipes().addRecipeWithUUID_toGroupWithUUID(inside, "");
  EXPECT_EQ(recipes().summariesForAllRecipes().size(), 2U);
}

TEST_F(Recipes, ItemsAreRemovedFromTheLibraryOrFromAGroup) {
  const std::string first = newRecipe("a");
  const std::string second = newRecipe("b");
  const auto batchOf = [](const std::string& uuid) {
    return std::string(recipes().addBatchToRecipeWithUUID(uuid)->stringValue(keys::UUID));
  };
  const std::string batch = batchOf(second);
  const std::string other = batchOf(second);
  const std::string group = newGroup({first, second});

  recipes().removeItems_fromGroupWithUUID({first, batch, other}, "unknown");
  EXPECT_EQ(members(group).size(), 2U);
  recipes().removeItems_fromGroupWithUUID({batch}, group);
  EXPECT_FALSE(recipes().batchWithUUID(batch));
  EXPECT_FALSE(hasMoved(group));
  recipes().removeItems_fromGroupWithUUID({first}, group);
  EXPECT_TRUE(hasMoved(group));
  EXPECT_THAT(members(group), ElementsAre(second));
  EXPECT_TRUE(recipes().recipeForUUID(first));
  recipes().removeItems_fromGroupWithUUID({first, other}, "");
  EXPECT_FALSE(recipes().recipeForUUID(first) || recipes().batchWithUUID(other));
}

// The uuid "" is that of the whole library. A group without a uuid is something else.
TEST_F(Recipes, AGroupWithoutAUUIDIsNotTheLibrary) {
  const std::string uuid = newRecipe("a");
  const auto batch = recipes().addBatchToRecipeWithUUID(uuid);
  PlistDictionary record{{keys::GroupName, "G"}, {keys::KeysOfContents, PlistArray{uuid}}};
  recipes().restoreGroup(record);
  const ZYMSummary row = recipes().summariesForAllGroups().at(0);
  EXPECT_EQ(row, (ZYMSummary{"G", std::nullopt, 1}));
  recipes().removeRecipeWithUUID_fromGroupWithUUID(uuid, row.uuid);
  recipes().removeItems_fromGroupWithUUID({uuid}, row.uuid);
  EXPECT_FALSE(recipes().summariesForAllRecipesInGroupWithUUID(row.uuid));
  EXPECT_TRUE(recipes().recipeForUUID(uuid));
  EXPECT_TRUE(recipes().batchWithUUID(batch->stringValue(keys::UUID)));
}

TEST_F(Recipes, WhatWasInsertedCanBeWithdrawnWithItsFiles) {
  const auto files = [] {
    return std::distance(std::filesystem::directory_iterator(model().imagesFolderPath()), {});
  };
  const NSImage image(testing::picture(2, 2, false, [](int, int) { return testing::Bytes{}; }));
  PlistDictionary recipe{{keys::UUID, "r"}};
  PlistDictionary batch{{keys::UUID, "b"}};
  ZYMDocumentEntity& object = storedRecipes.insert(recipe);
  ZYMDocumentEntity& batchObject = storedBatches.insert(batch);
  batchObject.setObject_forKey(&object, relationships::recipe);
  (void)StoredDocuments::addImage(&object, image, image);
  (void)StoredDocuments::addImage(&batchObject, image, image);
  EXPECT_EQ(files(), 4);
  EXPECT_EQ(documentWithUUID("r"), &object);
  EXPECT_EQ(documentWithUUID("b"), &batchObject);
  StoredDocuments::withdraw(object);
  EXPECT_EQ(files(), 0);
  EXPECT_FALSE(documentWithUUID("r") || documentWithUUID("b"));
  EXPECT_FALSE(documentWithUUID(std::nullopt));
}

TEST_F(Recipes, ADamagedDocumentHarmsNothingElse) {
  const std::string damaged = newRecipe("a");
  const std::string sound = newRecipe("b");
  ZYMRecipeEntity& object = *ZYMRecipeEntity::onlyObjectWithUUID(nullptr, damaged);
  object.setDocument_forKey(NSData("bplist00 and nothing of use"), attributes::data);
  model().save();
  EXPECT_THROW((void)recipes().recipeForUUID(damaged), NSException);
  PlistDictionary document{{keys::UUID, damaged}, {keys::RecipeTitle, "over it"}};
  EXPECT_THROW(recipes().updateRecipe(document), NSException);
  EXPECT_EQ(recipes().summariesForAllRecipes().size(), 2U);
  EXPECT_TRUE(recipes().recipeForUUID(sound));
  EXPECT_EQ(object.documentForKey(attributes::data)->view(), "bplist00 and nothing of use");
}

TEST_F(Recipes, ListsAreInTheOrderOfNamesByCodePoint) {
  const std::string b = newRecipe("Zwickel");
  const std::string a = newRecipe("abbey");
  const std::string c = newRecipe("Ähre");
  const std::string group = newGroup({a, c, b});
  for (const std::string& list : {group, std::string()}) {
    EXPECT_THAT(members(list), ElementsAre(b, a, c));
  }
  const std::string last = newGroup({});
  recipes().updateGroup({"b", group, 0});
  recipes().updateGroup({"a", last, 0});
  EXPECT_THAT(recipes().summariesForAllGroups(),
              ElementsAre(ZYMSummary{"a", last, 0}, ZYMSummary{"b", group, 3}));
}

}  // namespace
}  // namespace zym
