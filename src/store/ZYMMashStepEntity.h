#pragma once

#include "zymcore/store/ZYMEntityFetch.h"
#include "zymcore/store/ZYMRecordEntity.h"

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
