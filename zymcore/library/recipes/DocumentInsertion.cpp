#include "zymcore/library/recipes/DocumentInsertion.h"

#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/ZYMDocumentEntity.h"
#include "zymcore/store/entities/ZYMGroupEntity.h"

namespace zym {

ZYMDocumentEntity& insertDocument(std::string_view entityName, PlistDictionary& document) {
  NSManagedObjectContext& context = *ZYMCoreDataModel::sharedInstance().mainObjectContext();
  auto& object =
      static_cast<ZYMDocumentEntity&>(*context.insertNewObjectForEntityForName(entityName));
  try {
    object.updateWithDictionaryRepresentation(document);
  } catch (...) {
    context.deleteObject(object);
    throw;
  }
  return object;
}

void joinGroup(ZYMDocumentEntity& recipe, std::string_view groupUUID) {
  ZYMGroupEntity* group =
      groupUUID.empty() ? nullptr : ZYMGroupEntity::onlyObjectWithUUID(nullptr, groupUUID);
  if (!group) return;
  group->addRecipesObject(recipe);
  group->setDateLastModified(NSDate::date());
}

}  // namespace zym
