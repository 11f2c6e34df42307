#include "zymcore/interchange/operations/ZYMCachingModelDataStoreImportOperation.h"

#include <map>

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/platform/events/NSUndoManager.h"
#include "zymcore/store/ZYMCachingModel.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {
namespace {

using ObjectsByUUID = std::map<std::string, ZYMRecordEntity*>;

// Once for all: a look-up for each would go through all that was added before it.
ObjectsByUUID firstObjectsByUUID(const std::string& entity) {
  ObjectsByUUID result;
  const auto all = ZYMEntityFetch::findAllObjectsInContext_predicate_sortDescriptor(
      entity, nullptr, std::nullopt, std::nullopt);
  for (NSManagedObject* object : all.value_or(std::vector<NSManagedObject*>())) {
    const std::string* uuid = object->stringForKey(attributes::uuid);
    if (uuid) result.emplace(*uuid, static_cast<ZYMRecordEntity*>(object));
  }
  return result;
}

}  // namespace

void ZYMCachingModelDataStoreImportOperation::main() {
  started_ = true;
  executing_ = true;
  paused_ = false;
  NSManagedObjectContext& context = mainContext();
  ObjectsByUUID known = firstObjectsByUUID(entityClass_);
  for (const PlistEntry& entry : storeToImport_) {
    const PlistDictionary* record = entry.value.dictionary();
    if (!record) continue;
    const std::string* uuid = record->string(keys::UUID);
    const auto found = uuid ? known.find(*uuid) : known.end();
    auto* object =
        found != known.end()
            ? found->second
            : static_cast<ZYMRecordEntity*>(context.insertNewObjectForEntityForName(entityClass_));
    if (uuid) known.emplace(*uuid, object);
    PlistDictionary copy = *record;
    copy.set(keys::DateLastModified, NSDate::date());
    object->updateWithDictionaryRepresentation_usingContext(copy, context);
  }
  ZYMCoreDataModel::sharedInstance().save();
  if (NSUndoManager* undoManager = context.undoManager()) undoManager->removeAllActions();
  executing_ = false;
  finished_ = true;
}

std::shared_ptr<ZYMCachingModelDataStoreImportOperation>
ZYMCachingModel::importOperationForDictionary(const PlistDictionary& records) const {
  return std::make_shared<ZYMCachingModelDataStoreImportOperation>(records, entityClass());
}

}  // namespace zym
