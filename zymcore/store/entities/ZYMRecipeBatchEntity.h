#pragma once

#include "zymcore/store/entities/ZYMDocumentEntity.h"
#include "zymcore/store/entities/ZYMEntityFetch.h"

namespace zym {

/// A batch of a recipe, with its images.
class ZYMRecipeBatchEntity final : public ZYMDocumentEntity,
                                   public ZYMEntityFinders<ZYMRecipeBatchEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMRecipeBatchEntity";
  using ZYMDocumentEntity::ZYMDocumentEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
