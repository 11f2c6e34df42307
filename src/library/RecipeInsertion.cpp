#include "zymcore/library/RecipeInsertion.h"

#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/ZYMGroupEntity.h"
#include "zymcore/store/ZYMRecipeEntity.h"

namespace zym {

ZYMRecipeEntity& insertRecipe(PlistDictionary& recipe) {
  ZYMRecipeEntity& object =
      ZYMRecipeEntity::insertInContext(*ZYMCoreDataModel::sharedInstance().mainObjectContext());
  object.updateWithDictionaryRepresentation(recipe);
  return object;
}

void joinGroup(ZYMRecipeEntity& recipe, std::string_view groupUUID) {
  ZYMGroupEntity* group =
      groupUUID.empty() ? nullptr : ZYMGroupEntity::onlyObjectWithUUID(nullptr, groupUUID);
  if (!group) return;
  group->addRecipesObject(recipe);
  group->setDateLastModified(NSDate::date());
}

}  // namespace zym
