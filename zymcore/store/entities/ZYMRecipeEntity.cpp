#include "zymcore/store/entities/ZYMRecipeEntity.h"

#include "zymcore/store/entities/EntityKeys.h"

namespace zym {

void ZYMRecipeEntity::addBatchesObject(NSManagedObject& batch) {
  addObject_forKey(batch, relationships::batches);
}

void ZYMRecipeEntity::removeBatchesObject(NSManagedObject& batch) {
  removeObject_forKey(batch, relationships::batches);
}

void ZYMRecipeEntity::addBatches(const std::vector<NSManagedObject*>& batches) {
  for (NSManagedObject* batch : batches) addBatchesObject(*batch);
}

void ZYMRecipeEntity::removeBatches(const std::vector<NSManagedObject*>& batches) {
  for (NSManagedObject* batch : batches) removeBatchesObject(*batch);
}

}  // namespace zym
