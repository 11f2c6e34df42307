#include "zymcore/library/ZYMFermentables.h"

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/store/entities/ZYMFermentableEntity.h"

namespace zym {
namespace {

constexpr ZYMFlatLibrary::Default defaults[] = {
    {keys::Ingredient, "New Ingredient", true},
    {keys::Extract, "75.000000"},
    {keys::Moisture, "0.000000"},
    {keys::Color, "0.000000"},
    {keys::IsGrain, "1"},
    {keys::MustBeMashed, "1"},
    {keys::Description, ""},
};

}  // namespace

ZYMFermentables& ZYMFermentables::sharedInstance() {
  static auto* instance = new ZYMFermentables();
  return *instance;
}

ZYMFermentables::ZYMFermentables()
    : ZYMFlatLibrary(ZYMFermentableEntity::entityName, keys::Ingredient, defaults) {}

}  // namespace zym
