#pragma once

#include "zymcore/store/entities/ZYMEntityFetch.h"
#include "zymcore/store/entities/ZYMRecordEntity.h"

namespace zym {

/// A hop variety of the library.
class ZYMHopEntity final : public ZYMRecordEntity, public ZYMEntityFinders<ZYMHopEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMHopEntity";
  using ZYMRecordEntity::ZYMRecordEntity;

 protected:
  [[nodiscard]] const RecordForm& form() const override;
};

}  // namespace zym
