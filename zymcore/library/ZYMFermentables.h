#pragma once

#include "zymcore/library/ZYMFlatLibrary.h"

namespace zym {

/// The fermentables that the brewer knows.
class ZYMFermentables final : public ZYMFlatLibrary {
 public:
  [[nodiscard]] static ZYMFermentables& sharedInstance();

 private:
  ZYMFermentables();
};

}  // namespace zym
