#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A lot of an ingredient in stock.
class ZYMInventoryBatchEntity final : public ZYMRecordEntity,
                                      public ZYMEntityFinders<ZYMInventoryBatchEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMInventoryBatchEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
