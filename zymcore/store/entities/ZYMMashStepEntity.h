#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A step of a mash schedule.
class ZYMMashStepEntity final : public ZYMRecordEntity, public ZYMEntityFinders<ZYMMashStepEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMMashStepEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
