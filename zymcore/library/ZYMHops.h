#pragma once

#include "zymcore/library/ZYMFlatLibrary.h"

namespace zym {

/// The hop varieties that the brewer knows.
class ZYMHops final : public ZYMFlatLibrary {
 public:
  [[nodiscard]] static ZYMHops& sharedInstance();

 private:
  ZYMHops();
};

}  // namespace zym
