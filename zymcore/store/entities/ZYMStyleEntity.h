#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A set of style guidelines. Styles are resources; nothing makes these objects yet.
class ZYMStyleEntity final : public ZYMRecordEntity, public ZYMEntityFinders<ZYMStyleEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMStyleEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
