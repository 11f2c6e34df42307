#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// An ingredient in stock, with its lots. Its uuid is that of the ingredient in its library, and
/// its record has the name that the library gives it now. The amount in stock is always the sum of
/// the lots, whole packs for yeast.
class ZYMInventoryEntity final : public ZYMRecordEntity,
                                 public ZYMEntityFinders<ZYMInventoryEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMInventoryEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

  void addBatchesObject(NSManagedObject& batch);
  void removeBatchesObject(NSManagedObject& batch);
  void addBatches(const std::vector<NSManagedObject*>& batches);
  void removeBatches(const std::vector<NSManagedObject*>& batches);

 protected:
  [[nodiscard]] const RecordForm& form() const override;
  void completeRecord(PlistDictionary& record) override;
};

}  // namespace zym
