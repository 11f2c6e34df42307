#pragma once

#include "zymcore/platform/objects/NSManagedObjectModel.h"

namespace zym {

/// Makes every object of the model one of its class here. Throws for a model that lacks an entity.
void setEntityClasses(NSManagedObjectModel& model);

}  // namespace zym
