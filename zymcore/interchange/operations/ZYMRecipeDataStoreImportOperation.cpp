#include "zymcore/interchange/operations/ZYMRecipeDataStoreImportOperation.h"

#include <algorithm>
#include <vector>

#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/interchange/internal/SetIfAbsent.h"
#include "zymcore/interchange/operations/ZYMFileImportOperation.h"
#include "zymcore/library/recipes/StoredDocuments.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/events/NSRunLoop.h"
#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSLog.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMGroupEntity.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

constexpr KeyName Recipes{"Recipes"};
constexpr KeyName Groups{"Groups"};
constexpr double secondsForTheLoop = 0.001;

template <class Entity>
std::vector<Entity*> objectsWithUUID(const PlistDictionary& record) {
  const std::string* uuid = record.string(keys::UUID);
  if (!uuid) return {};
  return Entity::objectsMatchingKey_andValue_sortedOnKey(attributes::uuid, *uuid, std::nullopt)
      .value_or(std::vector<Entity*>());
}

template <class Entity>
Entity* firstWithUUID(const PlistDictionary& record) {
  const std::vector<Entity*> found = objectsWithUUID<Entity>(record);
  return found.empty() ? nullptr : found.front();
}

std::vector<PlistDictionary> documentsIn(const PlistValue* collection) {
  std::vector<PlistDictionary> documents;
  const auto add = [&](const PlistValue& value) {
    if (value.dictionary()) documents.push_back(*value.dictionary());
  };
  if (collection && collection->array()) std::ranges::for_each(*collection->array(), add);
  if (collection && collection->dictionary()) {
    for (const PlistEntry& entry : *collection->dictionary()) add(entry.value);
  }
  return documents;
}

PlistArray takeBatches(PlistDictionary& recipe) {
  const PlistArray* found = recipe.array(keys::Batches);
  PlistArray batches = found ? *found : PlistArray();
  recipe.remove(keys::Batches);
  return batches;
}

/// What a recipe and its batches take the place of; it goes when they are there.
class Replaced {
 public:
  explicit Replaced(ZYMRecipeEntity* recipe) : recipe_(recipe) {}

  /// One at most for each batch; those of the recipe that goes away go with it.
  void addBatchLike(const PlistDictionary& batch) {
    for (ZYMRecipeBatchEntity* known : objectsWithUUID<ZYMRecipeBatchEntity>(batch)) {
      const bool goesAlready = std::ranges::find(batches_, known) != batches_.end() ||
                               (recipe_ && known->objectForKey(relationships::recipe) == recipe_);
      if (!goesAlready) return batches_.push_back(known);
    }
  }

  void remove() const {
    for (ZYMRecipeBatchEntity* batch : batches_) mainContext().deleteObject(*batch);
    if (recipe_) mainContext().deleteObject(*recipe_);
  }

 private:
  ZYMRecipeEntity* recipe_;
  std::vector<ZYMRecipeBatchEntity*> batches_;
};

}  // namespace

void ZYMRecipeDataStoreImportOperation::main() {
  if (!NSRunLoop::isMainThread()) {
    NSRunLoop::mainRunLoop().performOnMainThreadAndWait([this] { main(); });
    return;
  }
  started_ = true;
  executing_ = true;
  paused_ = false;
  importRecipes();
  importGroups();
  ZYMCoreDataModel::sharedInstance().save();
  if (NSUndoManager* undoManager = mainContext().undoManager()) undoManager->removeAllActions();
  executing_ = false;
  finished_ = true;
  if (completionHandler_) completionHandler_();
  NSNotificationCenter::defaultCenter().postNotificationName_object(
      CoreDataModelReloadNowNotification, this);
}

void ZYMRecipeDataStoreImportOperation::importRecipes() {
  std::vector<PlistDictionary> recipes = documentsIn(recipeStoreToImport_.find(Recipes));
  std::size_t done = 0;
  for (PlistDictionary& recipe : recipes) {
    try {
      importRecipe(std::move(recipe));
    } catch (const NSException& fault) {
      NSLog("A recipe of a bundle is passed over: " + fault.reason());
    }
    percentDone_ = static_cast<float>(++done) / static_cast<float>(recipes.size());
    if (progressHandler_) progressHandler_(percentDone_);
    // The interface shows it meanwhile.
    NSRunLoop::mainRunLoop().runUntilDate(NSDate::dateWithTimeIntervalSinceNow(secondsForTheLoop));
  }
}

void ZYMRecipeDataStoreImportOperation::importRecipe(PlistDictionary recipe) {
  const PlistArray batches = takeBatches(recipe);
  Replaced replaced(firstWithUUID<ZYMRecipeEntity>(recipe));
  ZYMRecipes::ensureRecipeLatestVersion(recipe);
  ZYMFileImportOperation::checkProfileForRecipeOrBatch_isBatch(recipe, false);
  auto& entity = static_cast<ZYMRecipeEntity&>(storedRecipes.insert(recipe));
  try {
    for (PlistDictionary batch : PlistRows(&batches)) {
      replaced.addBatchLike(batch);
      ZYMRecipes::ensureBatchLatestVersion(batch);
      ZYMFileImportOperation::checkProfileForRecipeOrBatch_isBatch(batch, true);
      entity.addBatchesObject(storedBatches.insert(batch));
    }
  } catch (...) {
    StoredDocuments::withdraw(entity);
    throw;
  }
  replaced.remove();
}

void ZYMRecipeDataStoreImportOperation::importGroups() {
  for (PlistDictionary record : documentsIn(recipeStoreToImport_.find(Groups))) {
    ZYMGroupEntity* replaced = firstWithUUID<ZYMGroupEntity>(record);
    correctForSerialization(record);
    setIfAbsent(record, keys::DateLastModified, NSDate::date());
    ZYMGroupEntity::insertInContext(mainContext()).updateWithDictionaryRepresentation(record);
    if (replaced) mainContext().deleteObject(*replaced);
  }
}

}  // namespace zym
