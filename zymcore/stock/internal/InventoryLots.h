#pragma once

#include "zymcore/platform/objects/NSManagedObject.h"
#include "zymcore/platform/values/PlistKey.h"

namespace zym {

/// The number of a text attribute; 0 when it has none.
[[nodiscard]] double amountUnder(const NSManagedObject& object, KeyName attribute);

}  // namespace zym
