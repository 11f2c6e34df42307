#include "zymcore/library/recipes/StoredDocuments.h"

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMGroupEntity.h"
#include "zymcore/store/entities/ZYMImageEntity.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

bool write(const NSImage& image, const std::optional<std::string>& path) {
  const std::optional<NSData> data = ZYMRecipes::dataFromImage(image);
  return data && path && NSFileManager::writeData_toPath(data->view(), *path);
}

void removeFilesOfImages(const NSManagedObject& owner) {
  const ZYMRecipes& recipes = ZYMRecipes::sharedInstance();
  for (const NSManagedObject* object : owner.objectsForKey(relationships::images)) {
    const std::string uuid = static_cast<const ZYMImageEntity*>(object)->uuid().value_or("");
    for (const auto& path :
         {recipes.pathForLargeImageWithUUID(uuid), recipes.pathForThumbnailImageWithUUID(uuid)}) {
      if (path) NSFileManager::removeItemAtPath(*path);
    }
  }
}

ZYMGroupEntity* groupWithUUID(std::optional<std::string_view> uuid) {
  return uuid == "" ? nullptr : ZYMGroupEntity::onlyObjectWithUUID(nullptr, uuid);
}

}  // namespace

const StoredDocuments storedRecipes{ZYMRecipeEntity::entityName, keys::RecipeTitle,
                                    "Update Recipe"};
const StoredDocuments storedBatches{ZYMRecipeBatchEntity::entityName, keys::BatchTitle,
                                    "Update Batch"};

ZYMDocumentEntity* documentWithUUID(std::optional<std::string_view> uuid) {
  ZYMDocumentEntity* recipe = storedRecipes.objectWithUUID(uuid);
  return recipe ? recipe : storedBatches.objectWithUUID(uuid);
}

ZYMDocumentEntity* StoredDocuments::objectWithUUID(std::optional<std::string_view> uuid) const {
  return static_cast<ZYMDocumentEntity*>(
      ZYMEntityFetch::onlyObjectWithUUID(entityName, nullptr, uuid));
}

ZYMDocumentEntity& StoredDocuments::insert(PlistDictionary& document) const {
  auto& object =
      static_cast<ZYMDocumentEntity&>(*mainContext().insertNewObjectForEntityForName(entityName));
  try {
    object.updateWithDictionaryRepresentation(document);
  } catch (...) {
    mainContext().deleteObject(object);
    throw;
  }
  return object;
}

void StoredDocuments::update(PlistDictionary& document, bool preservingDLM) const {
  const std::string* uuid = document.string(keys::UUID);
  ZYMDocumentEntity* object = uuid ? objectWithUUID(*uuid) : nullptr;
  if (!object || object->dictionaryRepresentation() == document) return;
  ZYMUndoGroup group;
  if (!preservingDLM) document.set(keys::DateLastModified, NSDate::date());
  object->updateWithDictionaryRepresentation(document);
  group.closeAndSave(actionName);
}

bool StoredDocuments::addImage(ZYMDocumentEntity* owner, const NSImage& thumbnail,
                               const NSImage& large) {
  ZYMImageEntity& image = ZYMImageEntity::insertInContext(mainContext());
  const std::string uuid = zym::uuid();
  image.setUuid(uuid);
  image.setDateLastModified(NSDate::date());
  const ZYMRecipes& recipes = ZYMRecipes::sharedInstance();
  const bool isLargeWritten = write(large, recipes.pathForLargeImageWithUUID(uuid));
  const bool isThumbnailWritten = write(thumbnail, recipes.pathForThumbnailImageWithUUID(uuid));
  if (owner) {
    owner->addImagesObject(image);
    owner->setDateLastModified(NSDate::date());
  }
  return isLargeWritten && isThumbnailWritten;
}

void StoredDocuments::withdraw(ZYMDocumentEntity& object) {
  removeFilesOfImages(object);
  if (dynamic_cast<ZYMRecipeEntity*>(&object)) {
    for (const NSManagedObject* batch : object.objectsForKey(relationships::batches)) {
      removeFilesOfImages(*batch);
    }
  }
  mainContext().deleteObject(object);
}

void StoredDocuments::joinGroup(ZYMDocumentEntity& recipe,
                                std::optional<std::string_view> groupUUID) {
  ZYMGroupEntity* group = groupWithUUID(groupUUID);
  if (!group) return;
  group->addRecipesObject(recipe);
  group->setDateLastModified(NSDate::date());
}

void StoredDocuments::leaveGroup(ZYMDocumentEntity& recipe,
                                 std::optional<std::string_view> groupUUID) {
  ZYMGroupEntity* group = groupWithUUID(groupUUID);
  if (!group) return;
  group->removeRecipesObject(recipe);
  group->setDateLastModified(NSDate::date());
}

}  // namespace zym
