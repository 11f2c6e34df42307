#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/ZYMHTML.h"
#include "zymcore/reports/internal/AdditionList.h"

namespace zym {
namespace {

using namespace pages;

std::string listOf(const PlistArray* additions, const AdditionKind& kind, std::string_view when,
                   std::optional<std::string_view> title) {
  AdditionList list(AdditionList::startWithTitle(title));
  list.add(additions, kind, [when](const PlistDictionary& addition) {
    const std::string* time = addition.string(keys::When);
    return time && *time == when;
  });
  return list.textUnlessEmpty();
}

}  // namespace

void ZYMHTML::processAdditionFromRecipe_forWhen_arrayKey_intoKey_inDictionary_withTitle(
    const PlistDictionary& recipe, std::string_view when, KeyName arrayKey, KeyName intoKey,
    PlistDictionary& values, std::optional<std::string_view> title) {
  values.set(intoKey, listOf(recipe.array(arrayKey), weighedAdditions, when, title));
}

void ZYMHTML::processHopAdditionFromRecipe_forWhen_intoKey_inDictionary_withTitle(
    const PlistDictionary& recipe, std::string_view when, KeyName intoKey, PlistDictionary& values,
    std::optional<std::string_view> title) {
  values.set(intoKey, listOf(recipe.array(keys::HopIngredients), hopAdditions, when, title));
}

}  // namespace zym
