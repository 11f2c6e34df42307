#include "zymcore/store/internal/EntityClasses.h"

#include "zymcore/store/entities/ZYMFermentableEntity.h"
#include "zymcore/store/entities/ZYMGroupEntity.h"
#include "zymcore/store/entities/ZYMHopEntity.h"
#include "zymcore/store/entities/ZYMImageEntity.h"
#include "zymcore/store/entities/ZYMInventoryBatchEntity.h"
#include "zymcore/store/entities/ZYMInventoryEntity.h"
#include "zymcore/store/entities/ZYMMashScheduleEntity.h"
#include "zymcore/store/entities/ZYMMashStepEntity.h"
#include "zymcore/store/entities/ZYMOrderEntity.h"
#include "zymcore/store/entities/ZYMOrderItemEntity.h"
#include "zymcore/store/entities/ZYMOtherIngredientEntity.h"
#include "zymcore/store/entities/ZYMProfileEntity.h"
#include "zymcore/store/entities/ZYMRecipeBatchEntity.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"
#include "zymcore/store/entities/ZYMStyleCategoryEntity.h"
#include "zymcore/store/entities/ZYMStyleEntity.h"
#include "zymcore/store/entities/ZYMSupplierEntity.h"
#include "zymcore/store/entities/ZYMWaterEntity.h"
#include "zymcore/store/entities/ZYMYeastEntity.h"

namespace zym {
namespace {

template <class... Classes>
void setClasses(NSManagedObjectModel& model) {
  (model.setManagedObjectClass<Classes>(Classes::entityName), ...);
}

}  // namespace

void setEntityClasses(NSManagedObjectModel& model) {
  setClasses<ZYMFermentableEntity, ZYMGroupEntity, ZYMHopEntity, ZYMImageEntity,
             ZYMInventoryBatchEntity, ZYMInventoryEntity, ZYMMashScheduleEntity, ZYMMashStepEntity,
             ZYMOrderEntity, ZYMOrderItemEntity, ZYMOtherIngredientEntity, ZYMProfileEntity,
             ZYMRecipeBatchEntity, ZYMRecipeEntity, ZYMStyleCategoryEntity, ZYMStyleEntity,
             ZYMSupplierEntity, ZYMWaterEntity, ZYMYeastEntity>(model);
}
}  // namespace zym
