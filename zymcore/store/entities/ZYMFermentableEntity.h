#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A fermentable of the library.
class ZYMFermentableEntity final : public ZYMRecordEntity,
                                   public ZYMEntityFinders<ZYMFermentableEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMFermentableEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
