#pragma once

#include "zymcore/store/entities/ZYMDocumentEntity.h"
#include "zymcore/store/entities/ZYMEntityFetch.h"

namespace zym {

/// A recipe, with its batches, its images and the groups it is in.
class ZYMRecipeEntity final : public ZYMDocumentEntity, public ZYMEntityFinders<ZYMRecipeEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMRecipeEntity";
  using ZYMDocumentEntity::ZYMDocumentEntity;

  void addBatchesObject(NSManagedObject& batch);
  void removeBatchesObject(NSManagedObject& batch);
  void addBatches(const std::vector<NSManagedObject*>& batches);
  void removeBatches(const std::vector<NSManagedObject*>& batches);

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
