#include "zymcore/library/internal/DocumentUpdate.h"

#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/store/ZYMUndoGroup.h"
#include "zymcore/store/entities/ZYMDocumentEntity.h"
#include "zymcore/store/entities/ZYMEntityFetch.h"

namespace zym {

void DocumentUpdate::apply(PlistDictionary& document, bool preservingDLM) const {
  const std::string* uuid = document.string(keys::UUID);
  NSManagedObject* object =
      uuid ? ZYMEntityFetch::onlyObjectWithUUID(entityName, nullptr, *uuid) : nullptr;
  auto* stored = static_cast<ZYMDocumentEntity*>(object);
  if (!stored || stored->dictionaryRepresentation() == document) return;
  ZYMUndoGroup group;
  if (!preservingDLM) document.set(keys::DateLastModified, NSDate::date());
  stored->updateWithDictionaryRepresentation(document);
  group.closeAndSave(actionName, comment);
}

}  // namespace zym
