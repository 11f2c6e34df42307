#include "zymcore/store/entities/ZYMInventoryEntity.h"

#include <cmath>

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/store/entities/EntityKeys.h"

namespace zym {

void ZYMInventoryEntity::addBatchesObject(NSManagedObject& batch) {
  addObject_forKey(batch, relationships::batches);
}

void ZYMInventoryEntity::removeBatchesObject(NSManagedObject& batch) {
  removeObject_forKey(batch, relationships::batches);
}

void ZYMInventoryEntity::addBatches(const std::vector<NSManagedObject*>& batches) {
  for (NSManagedObject* batch : batches) addBatchesObject(*batch);
}

void ZYMInventoryEntity::removeBatches(const std::vector<NSManagedObject*>& batches) {
  for (NSManagedObject* batch : batches) removeBatchesObject(*batch);
}

void ZYMInventoryEntity::completeRecord(PlistDictionary& record) {
  double inStock = 0;
  for (const PlistDictionary& lot : record.rows(keys::Batches)) {
    inStock += lot.floatValue(keys::AmountInStock);
  }
  if (record.stringValue(keys::IngredientType) == words::Yeast) {
    inStock = std::round(static_cast<float>(inStock));
  }
  record.setNumber(keys::AmountInStock, inStock);
  setValue_forKey("0.0", attributes::amountOnOrder);
}

}  // namespace zym
