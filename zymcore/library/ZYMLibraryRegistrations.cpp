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

namespace zym {
namespace {

template <class Library>
ZYMCachingModel& sharedInstanceOf() {
  return Library::sharedInstance();
}

constexpr ZYMLibraryRegistry::Library libraries[] = {
    {"ZYMFermentableEntity", words::Fermentable, sharedInstanceOf<ZYMFermentables>},
    {"ZYMHopEntity", words::Hop, sharedInstanceOf<ZYMHops>},
    {"ZYMOtherIngredientEntity", words::Other, sharedInstanceOf<ZYMOtherIngredients>},
    {"ZYMYeastEntity", words::Yeast, sharedInstanceOf<ZYMYeasts>},
    {"ZYMMashScheduleEntity", "", sharedInstanceOf<ZYMMashSchedules>},
    {"ZYMProfileEntity", "", sharedInstanceOf<ZYMProfiles>},
    {"ZYMWaterEntity", "", sharedInstanceOf<ZYMWaters>},
    {"ZYMSupplierEntity", "", sharedInstanceOf<ZYMSuppliers>},
};

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
