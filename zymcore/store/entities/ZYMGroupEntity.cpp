#include "zymcore/store/entities/ZYMGroupEntity.h"

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/SummaryRows.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {

std::optional<PlistDictionary> ZYMGroupEntity::dictionaryRepresentation() {
  std::optional<PlistDictionary> record = ZYMRecordEntity::dictionaryRepresentation();
  PlistArray uuids;
  for (const NSManagedObject* recipe : objectsForKey(relationships::recipes)) {
    if (const std::string* uuid = recipe->stringForKey(attributes::uuid)) uuids.append(*uuid);
  }
  record->set(keys::KeysOfContents, std::move(uuids));
  return record;
}

void ZYMGroupEntity::updateWithDictionaryRepresentation_usingContext(
    PlistDictionary& record, NSManagedObjectContext& context) {
  ZYMRecordEntity::updateWithDictionaryRepresentation_usingContext(record, context);
  std::vector<NSManagedObject*> recipes;
  if (const PlistArray* uuids = record.array(keys::KeysOfContents)) {
    for (const PlistValue& uuid : *uuids) {
      if (!uuid.string()) continue;
      NSManagedObject* recipe = ZYMRecipeEntity::onlyObjectWithUUID(&context, *uuid.string());
      if (recipe) recipes.push_back(recipe);
    }
  }
  setObjects_forKey(recipes, relationships::recipes);
}

ZYMSummary ZYMGroupEntity::summary() const {
  return summaryOf(*this, std::ssize(objectsForKey(relationships::recipes)));
}

void ZYMGroupEntity::addRecipesObject(NSManagedObject& recipe) {
  addObject_forKey(recipe, relationships::recipes);
}

void ZYMGroupEntity::removeRecipesObject(NSManagedObject& recipe) {
  removeObject_forKey(recipe, relationships::recipes);
}

void ZYMGroupEntity::addRecipes(const std::vector<NSManagedObject*>& recipes) {
  for (NSManagedObject* recipe : recipes) addRecipesObject(*recipe);
}

void ZYMGroupEntity::removeRecipes(const std::vector<NSManagedObject*>& recipes) {
  for (NSManagedObject* recipe : recipes) removeRecipesObject(*recipe);
}

}  // namespace zym
