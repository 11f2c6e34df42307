#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A line of an order.
class ZYMOrderItemEntity final : public ZYMRecordEntity,
                                 public ZYMEntityFinders<ZYMOrderItemEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMOrderItemEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
