#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// An equipment profile. Its record always names waters, so there must be one in the library.
class ZYMProfileEntity final : public ZYMRecordEntity, public ZYMEntityFinders<ZYMProfileEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMProfileEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
