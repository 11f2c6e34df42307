#include "zymcore/library/ZYMOtherIngredients.h"

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/store/entities/ZYMOtherIngredientEntity.h"

namespace zym {
namespace {

constexpr ZYMFlatLibrary::Default defaults[] = {
    {keys::Ingredient, "New Ingredient", true},
    {keys::Description, ""},
};

}  // namespace

ZYMOtherIngredients& ZYMOtherIngredients::sharedInstance() {
  static auto* instance = new ZYMOtherIngredients();
  return *instance;
}

ZYMOtherIngredients::ZYMOtherIngredients()
    : ZYMFlatLibrary(ZYMOtherIngredientEntity::entityName, keys::Ingredient, defaults) {}

}  // namespace zym
