#include "zymcore/store/entities/ZYMMashScheduleEntity.h"

#include "zymcore/store/entities/EntityKeys.h"

namespace zym {

void ZYMMashScheduleEntity::addStepsObject(NSManagedObject& step) {
  addObject_forKey(step, relationships::steps);
}

}  // namespace zym
