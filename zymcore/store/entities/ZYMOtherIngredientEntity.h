#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// Any other ingredient of the library.
class ZYMOtherIngredientEntity final : public ZYMRecordEntity,
                                       public ZYMEntityFinders<ZYMOtherIngredientEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMOtherIngredientEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
