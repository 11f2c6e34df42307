// What each change of the store is called in the menu of the host, and that it is one step, saved.

#include "tests/support/Pictures.h"
#include "tests/support/Store.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/recipes/ZYMRecipes.h"

namespace zym {
namespace {

using UndoNames = testing::WithStore;

/// What the changes below begin with.
struct Start {
  ZYMRecipes& recipes = ZYMRecipes::sharedInstance();
  ZYMMashSchedules& schedules = ZYMMashSchedules::sharedInstance();
  PlistDictionary schedule = schedules.createItem();
  ZYMSummary group = recipes.createGroup();
  PlistDictionary recipe = recipes.createRecipeAndAddToGroupWithUUID(group.uuid);
  std::string uuid{recipe.stringValue(keys::UUID)};
  PlistDictionary batch = *recipes.addBatchToRecipeWithUUID(uuid);
  std::string batchUUID{batch.stringValue(keys::UUID)};
  NSImage image{testing::picture(2, 2, false, [](int, int) { return testing::Bytes{}; })};
  std::string imageUUID =
      (recipes.addThumbnailImage_withLargeImage_toItemWithUUID(image, image, uuid),
       recipes.imageUUIDsForItemWithUUID(uuid).front());
};

TEST_F(UndoNames, OfEachChange) {
  struct Change {
    const char* name;
    void (*make)(Start&);
  };
  const Change changes[] = {
      {"Duplicate Item",
       [](Start& s) { s.schedules.duplicateItemWithUUID(s.schedule.stringValue(keys::UUID)); }},
      {"Add Step", [](Start& s) { s.schedules.addNewStepToSchedule(s.schedule); }},
      {"Edit Step",
       [](Start& s) {
         const PlistArray steps{PlistDictionary()};
         s.schedules.updateSteps_inMashScheduleWithUUID(&steps, s.schedule.stringValue(keys::UUID));
       }},
      {"Add Group", [](Start& s) { s.recipes.createGroup(); }},
      {"Update Group", [](Start& s) { s.group.name = "x", s.recipes.updateGroup(s.group); }},
      {"Delete Group", [](Start& s) { s.recipes.deleteGroupWithUUID(s.group.uuid); }},
      {"Restore Group",
       [](Start& s) {
         PlistDictionary g = *s.recipes.groupForUUID(s.group.uuid);
         s.recipes.restoreGroup(g);
       }},
      {"Delete Recipes and Batches",
       [](Start& s) { s.recipes.removeItems_fromGroupWithUUID({s.uuid}, s.group.uuid); }},
      {"Add Recipe to Group",
       [](Start& s) { s.recipes.addRecipeWithUUID_toGroupWithUUID(s.uuid, s.group.uuid); }},
      {"Remove Recipe from Group",
       [](Start& s) { s.recipes.removeRecipeWithUUID_fromGroupWithUUID(s.uuid, s.group.uuid); }},
      {"Replace Recipes in Group",
       [](Start& s) { s.recipes.replaceRecipesInGroupWithUUID_withRecipes(s.group.uuid, {}); }},
      {"Create Recipe", [](Start& s) { s.recipes.createRecipe(); }},
      {"Create Recipe", [](Start& s) { s.recipes.createRecipeAndAddToGroupWithUUID(""); }},
      {"Duplicate Item",
       [](Start& s) { s.recipes.duplicateItemWithUUID_addToGroupWithUUID(s.uuid, ""); }},
      {"Duplicate Item",
       [](Start& s) { s.recipes.duplicateItemWithUUID_addToGroupWithUUID(s.batchUUID, ""); }},
      {"Update Recipe",
       [](Start& s) { s.recipe.set(keys::Notes, "x"), s.recipes.updateRecipe(s.recipe); }},
      {"Remove Recipe", [](Start& s) { s.recipes.removeRecipeWithUUID(s.uuid); }},
      {"Remove Recipe",
       [](Start& s) { s.recipes.removeRecipeWithUUID_fromGroupWithUUID(s.uuid, ""); }},
      {"Add Batch", [](Start& s) { s.recipes.restoreBatch_toRecipeWithUUID(s.batch, s.uuid); }},
      {"Add Batch", [](Start& s) { s.recipes.addBatchToRecipeWithUUID(s.uuid); }},
      {"Update Batch",
       [](Start& s) { s.batch.set(keys::BatchNotes, "x"), s.recipes.updateBatch(s.batch); }},
      {"Delete Batch", [](Start& s) { s.recipes.removeBatchWithUUID(s.batchUUID); }},
      {"Promote Batch",
       [](Start& s) { s.recipes.promoteBatchWithUUID_addToGroupWithUUID(s.batchUUID, ""); }},
      {"Add Image",
       [](Start& s) {
         s.recipes.addThumbnailImage_withLargeImage_toItemWithUUID(s.image, s.image, s.batchUUID);
       }},
      {"Remove Image", [](Start& s) { s.recipes.removeImageAtIndex_fromItemWithUUID(0, s.uuid); }},
      {"Remove Image", [](Start& s) { s.recipes.removeImageWithUUID(s.imageUUID); }},
  };
  for (const Change& change : changes) {
    Start start;
    endTurn();
    undoManager().removeAllActions();
    change.make(start);
    EXPECT_EQ(undoManager().groupingLevel(), 1U) << change.name;  // that of the turn
    endTurn();
    EXPECT_EQ(undoManager().undoActionName(), change.name);
    EXPECT_FALSE(context().hasChanges()) << change.name;
    undoManager().undo();
    EXPECT_FALSE(undoManager().canUndo()) << change.name;
  }
}

TEST_F(UndoNames, WhatFailsOrFindsNothingLeavesNoStep) {
  Start start;
  ZYMRecipeEntity::onlyObjectWithUUID(nullptr, start.uuid)
      ->setDocument_forKey(NSData("damaged"), attributes::data);
  model().save();
  endTurn();
  undoManager().removeAllActions();
  ZYMRecipes& recipes = start.recipes;
  EXPECT_THROW(recipes.duplicateItemWithUUID_addToGroupWithUUID(start.uuid, ""), NSException);
  EXPECT_THROW(recipes.updateRecipe(start.recipe), NSException);
  EXPECT_THROW(recipes.promoteBatchWithUUID_addToGroupWithUUID("unknown", ""), NSException);
  EXPECT_FALSE(recipes.duplicateItemWithUUID_addToGroupWithUUID("unknown", ""));
  recipes.removeRecipeWithUUID("unknown");
  recipes.removeRecipeWithUUID_fromGroupWithUUID("unknown", start.group.uuid);
  recipes.addRecipeWithUUID_toGroupWithUUID(start.uuid, "");
  recipes.replaceRecipesInGroupWithUUID_withRecipes("", {start.uuid});
  recipes.updateGroup(start.group);
  recipes.deleteGroupWithUUID("unknown");
  recipes.removeBatchWithUUID("unknown");
  recipes.restoreBatch_toRecipeWithUUID(start.batch, std::nullopt);
  recipes.removeImageAtIndex_fromItemWithUUID(1, start.uuid);
  recipes.removeImageWithUUID("unknown");
  start.schedules.updateSteps_inMashScheduleWithUUID(nullptr,
                                                     start.schedule.stringValue(keys::UUID));
  EXPECT_FALSE(undoManager().canUndo());
}

}  // namespace
}  // namespace zym
