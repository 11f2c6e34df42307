#pragma once

#include "zymcore/library/ZYMFlatLibrary.h"

namespace zym {

/// All other ingredients that the brewer knows.
class ZYMOtherIngredients final : public ZYMFlatLibrary {
 public:
  [[nodiscard]] static ZYMOtherIngredients& sharedInstance();

 private:
  ZYMOtherIngredients();
};

}  // namespace zym
