#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// An order to a supplier, with its lines.
class ZYMOrderEntity final : public ZYMRecordEntity, public ZYMEntityFinders<ZYMOrderEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMOrderEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
