#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A mash schedule with its steps.
class ZYMMashScheduleEntity final : public ZYMRecordEntity,
                                    public ZYMEntityFinders<ZYMMashScheduleEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMMashScheduleEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

  void addStepsObject(NSManagedObject& step);

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
