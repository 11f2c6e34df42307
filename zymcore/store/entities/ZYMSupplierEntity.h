#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A supplier of ingredients.
class ZYMSupplierEntity final : public ZYMRecordEntity, public ZYMEntityFinders<ZYMSupplierEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMSupplierEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
