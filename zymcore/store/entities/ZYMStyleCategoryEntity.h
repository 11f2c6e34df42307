#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A style of a set of guidelines.
class ZYMStyleCategoryEntity final : public ZYMRecordEntity,
                                     public ZYMEntityFinders<ZYMStyleCategoryEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMStyleCategoryEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
