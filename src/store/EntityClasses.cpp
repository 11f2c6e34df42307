#include "zymcore/store/EntityClasses.h"

#include "zymcore/store/ZYMFermentableEntity.h"
#include "zymcore/store/ZYMGroupEntity.h"
#include "zymcore/store/ZYMHopEntity.h"
#include "zymcore/store/ZYMImageEntity.h"
#include "zymcore/store/ZYMInventoryBatchEntity.h"
#include "zymcore/store/ZYMInventoryEntity.h"
#include "zymcore/store/ZYMMashScheduleEntity.h"
#include "zymcore/store/ZYMMashStepEntity.h"
#include "zymcore/store/ZYMOrderEntity.h"
#include "zymcore/store/ZYMOrderItemEntity.h"
#include "zymcore/store/ZYMOtherIngredientEntity.h"
#include "zymcore/store/ZYMProfileEntity.h"
#include "zymcore/store/ZYMRecipeBatchEntity.h"
#include "zymcore/store/ZYMRecipeEntity.h"
#include "zymcore/store/ZYMStyleCategoryEntity.h"
#include "zymcore/store/ZYMStyleEntity.h"
#include "zymcore/store/ZYMSupplierEntity.h"
#include "zymcore/store/ZYMWaterEntity.h"
#include "zymcore/store/ZYMYeastEntity.h"

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
