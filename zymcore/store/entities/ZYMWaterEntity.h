#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A water of the library.
class ZYMWaterEntity final : public ZYMRecordEntity, public ZYMEntityFinders<ZYMWaterEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMWaterEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
