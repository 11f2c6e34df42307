#include "zymcore/library/ZYMHops.h"

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/store/entities/ZYMHopEntity.h"

namespace zym {
namespace {

constexpr ZYMFlatLibrary::Default defaults[] = {
    {keys::Variety, "New Hop", true},
    {keys::Alpha, "0.000000"},
    {keys::Description, ""},
};

}  // namespace

ZYMHops& ZYMHops::sharedInstance() {
  static auto* instance = new ZYMHops();
  return *instance;
}

ZYMHops::ZYMHops() : ZYMFlatLibrary(ZYMHopEntity::entityName, keys::Variety, defaults) {}

}  // namespace zym
