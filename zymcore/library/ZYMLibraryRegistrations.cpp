#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMFermentables.h"
#include "zymcore/library/ZYMHops.h"
#include "zymcore/library/ZYMMashSchedules.h"
#include "zymcore/library/ZYMOtherIngredients.h"
#include "zymcore/library/ZYMProfiles.h"
#include "zymcore/library/ZYMSuppliers.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/store/ZYMLibraryRegistry.h"
#include "zymcore/store/entities/ZYMFermentableEntity.h"
#include "zymcore/store/entities/ZYMHopEntity.h"
#include "zymcore/store/entities/ZYMMashScheduleEntity.h"
#include "zymcore/store/entities/ZYMOtherIngredientEntity.h"
#include "zymcore/store/entities/ZYMProfileEntity.h"
#include "zymcore/store/entities/ZYMSupplierEntity.h"
#include "zymcore/store/entities/ZYMWaterEntity.h"
#include "zymcore/store/entities/ZYMYeastEntity.h"

namespace zym {
namespace {

template <class Library>
ZYMCachingModel& of() {
  return Library::sharedInstance();
}

// clang-format off
constexpr ZYMLibraryRegistry::Library libraries[] = {
    {ZYMFermentableEntity::entityName,     words::Fermentable, "Fermentables",     KeyName{"FermentablesVersion"},     of<ZYMFermentables>},
    {ZYMHopEntity::entityName,             words::Hop,         "Hops",             KeyName{"HopsVersion"},             of<ZYMHops>},
    {ZYMOtherIngredientEntity::entityName, words::Other,       "OtherIngredients", KeyName{"OtherIngredientsVersion"}, of<ZYMOtherIngredients>},
    {ZYMYeastEntity::entityName,           words::Yeast,       "Yeasts",           KeyName{"YeastsVersion"},           of<ZYMYeasts>},
    {ZYMMashScheduleEntity::entityName,    "",                 "Mash Schedules",   KeyName{"MashSchedulesVersion"},    of<ZYMMashSchedules>},
    {ZYMProfileEntity::entityName,         "",                 "Profiles",         KeyName{"ProfilesVersion"},         of<ZYMProfiles>},
    {ZYMWaterEntity::entityName,           "",                 "Waters",           KeyName{"WatersVersion"},           of<ZYMWaters>},
    {ZYMSupplierEntity::entityName,        "",                 "Retailers",        KeyName{"RetailersVersion"},        of<ZYMSuppliers>},
};
// clang-format on

bool registerLibraries() {
  for (const ZYMLibraryRegistry::Library& library : libraries) {
    ZYMLibraryRegistry::sharedInstance().registerLibrary(library);
  }
  return true;
}

}  // namespace
}  // namespace zym

// The libraries register themselves when the process starts. A program that links the static
// library asks for this name, so that the linker takes the registration along.
extern "C" {
extern const bool zym_libraries_are_registered;
const bool zym_libraries_are_registered = zym::registerLibraries();
}
