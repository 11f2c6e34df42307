#include <unordered_set>

#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/library/recipes/StoredDocuments.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/objects/NSFetchRequest.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/SummaryRows.h"
#include "zymcore/store/entities/ZYMGroupEntity.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

NSFetchRequest allByName(std::string_view entity) {
  NSFetchRequest request = NSFetchRequest::fetchRequestWithEntityName(entity);
  request.setSortDescriptors({NSSortDescriptor(attributes::name, true)});
  return request;
}

void deleteOnly(NSManagedObject* object) {
  if (object) mainContext().deleteObject(*object);
}

}  // namespace

std::vector<ZYMSummary> ZYMRecipes::summariesForAllGroups() const {
  return summariesForFetchRequest(allByName(ZYMGroupEntity::entityName), relationships::recipes,
                                  nullptr);
}

ZYMSummary ZYMRecipes::summaryForLibraryGroup() const {
  const std::optional<std::size_t> recipes = mainContext().countForFetchRequest(
      NSFetchRequest::fetchRequestWithEntityName(ZYMRecipeEntity::entityName));
  return {Localized_String("Library"), "", static_cast<std::int64_t>(recipes.value_or(0))};
}

ZYMSummary ZYMRecipes::createGroup() {
  ZYMUndoGroup undo;
  ZYMGroupEntity& group = ZYMGroupEntity::insertInContext(mainContext());
  PlistDictionary record = group.dictionaryRepresentation().value();
  record.set(keys::GroupName, Localized_String("New Group"));
  record.set(keys::Type, "Normal");
  record.set(keys::KeysOfContents, PlistArray());
  record.set(keys::UUID, uuid());
  record.set(keys::DateLastModified, NSDate::date());
  group.updateWithDictionaryRepresentation(record);
  undo.closeAndSave("Add Group");
  return group.summary();
}

void ZYMRecipes::updateGroup(const ZYMSummary& summary) {
  ZYMGroupEntity* group = ZYMGroupEntity::onlyObjectWithUUID(nullptr, summary.uuid);
  if (!group || group->name() == summary.name) return;
  ZYMUndoGroup undo;
  group->setName(summary.name);
  group->setDateLastModified(NSDate::date());
  undo.closeAndSave("Update Group");
}

void ZYMRecipes::deleteGroupWithUUID(UUID uuid) {
  ZYMGroupEntity* group = ZYMGroupEntity::onlyObjectWithUUID(nullptr, uuid);
  if (!group) return;
  ZYMUndoGroup undo;
  mainContext().deleteObject(*group);
  undo.closeAndSave("Delete Group");
}

std::optional<PlistDictionary> ZYMRecipes::groupForUUID(UUID uuid) const {
  ZYMGroupEntity* group = ZYMGroupEntity::onlyObjectWithUUID(nullptr, uuid);
  return group ? group->dictionaryRepresentation() : std::nullopt;
}

void ZYMRecipes::restoreGroup(PlistDictionary& group) {
  ZYMUndoGroup undo;
  const auto known = ZYMGroupEntity::objectsMatchingKey_andValue_sortedOnKey(
      attributes::uuid, group.stringValue(keys::UUID), std::nullopt);
  ZYMGroupEntity& object =
      known && !known->empty() ? *known->front() : ZYMGroupEntity::insertInContext(mainContext());
  object.updateWithDictionaryRepresentation(group);
  undo.closeAndSave("Restore Group");
}

void ZYMRecipes::removeItems_fromGroupWithUUID(const std::vector<std::string>& uuids, UUID uuid) {
  ZYMUndoGroup undo;
  const bool fromLibrary = uuid == "";
  if (fromLibrary || ZYMGroupEntity::onlyObjectWithUUID(nullptr, uuid)) {
    for (const std::string& item : uuids) {
      ZYMRecipeEntity* recipe = ZYMRecipeEntity::onlyObjectWithUUID(nullptr, item);
      if (fromLibrary) {
        deleteOnly(recipe);
      } else if (recipe) {
        StoredDocuments::leaveGroup(*recipe, uuid);
      }
      deleteOnly(ZYMRecipeBatchEntity::onlyObjectWithUUID(nullptr, item));
    }
  }
  undo.closeAndSave("Delete Recipes and Batches");
}

namespace {

void takeOutOfGroup(ZYMRecipes::UUID uuid, ZYMRecipes::UUID groupUUID,
                    std::string_view actionName) {
  ZYMRecipeEntity* recipe = ZYMRecipeEntity::onlyObjectWithUUID(nullptr, uuid);
  if (!recipe) return;
  ZYMUndoGroup undo;
  StoredDocuments::leaveGroup(*recipe, groupUUID);
  undo.closeAndSave(actionName);
}

}  // namespace

void ZYMRecipes::addRecipeWithUUID_toGroupWithUUID(UUID uuid, UUID groupUUID) {
  if (groupUUID == "") return;
  takeOutOfGroup(uuid, groupUUID, "Add Recipe to Group");
}

void ZYMRecipes::removeRecipeWithUUID_fromGroupWithUUID(UUID uuid, UUID groupUUID) {
  if (groupUUID == "") {
    removeRecipeWithUUID(uuid);
  } else {
    takeOutOfGroup(uuid, groupUUID, "Remove Recipe from Group");
  }
}

void ZYMRecipes::replaceRecipesInGroupWithUUID_withRecipes(UUID groupUUID,
                                                           const std::vector<std::string>& uuids) {
  if (groupUUID == "") return;
  ZYMUndoGroup undo;
  if (ZYMGroupEntity* group = ZYMGroupEntity::onlyObjectWithUUID(nullptr, groupUUID)) {
    std::vector<NSManagedObject*> recipes;
    for (const std::string& uuid : uuids) {
      NSManagedObject* recipe = ZYMRecipeEntity::onlyObjectWithUUID(nullptr, uuid);
      if (recipe) recipes.push_back(recipe);
    }
    group->setObjects_forKey(recipes, relationships::recipes);
    group->setDateLastModified(NSDate::date());
  }
  undo.closeAndSave("Replace Recipes in Group");
}

std::vector<ZYMSummary> ZYMRecipes::summariesForAllRecipes() const {
  return summariesForFetchRequest(allByName(ZYMRecipeEntity::entityName), relationships::batches,
                                  nullptr);
}

std::optional<std::vector<ZYMSummary>> ZYMRecipes::summariesForAllRecipesInGroupWithUUID(
    UUID groupUUID) const {
  if (groupUUID == "") return summariesForAllRecipes();
  const ZYMGroupEntity* group = ZYMGroupEntity::onlyObjectWithUUID(nullptr, groupUUID);
  if (!group) return std::nullopt;
  std::unordered_set<std::int64_t> members;
  for (const NSManagedObject* recipe : group->objectsForKey(relationships::recipes)) {
    members.insert(recipe->objectID().key);
  }
  return summariesForFetchRequest(allByName(ZYMRecipeEntity::entityName), relationships::batches,
                                  [&](std::int64_t key) { return members.contains(key); });
}

std::optional<ZYMSummary> ZYMRecipes::summaryForRecipeWithUUID(UUID uuid) const {
  const ZYMRecipeEntity* recipe = ZYMRecipeEntity::onlyObjectWithUUID(nullptr, uuid);
  if (!recipe) return std::nullopt;
  return summaryOf(*recipe, std::ssize(recipe->objectsForKey(relationships::batches)));
}

}  // namespace zym
