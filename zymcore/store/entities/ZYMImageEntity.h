#pragma once

#include "zymcore/store/entities/ZYMEntity.h"
#include "zymcore/store/entities/ZYMEntityFetch.h"

namespace zym {

/// An image of a recipe or of a batch. The picture itself is in files; there is no record.
class ZYMImageEntity final : public ZYMEntity, public ZYMEntityFinders<ZYMImageEntity> {
 public:
  static constexpr std::string_view entityName = "ZYMImageEntity";
  using ZYMEntity::ZYMEntity;
};

}  // namespace zym
