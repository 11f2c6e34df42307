#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A yeast of the library.
class ZYMYeastEntity final : public ZYMRecordEntity, public ZYMEntityFinders<ZYMYeastEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMYeastEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
