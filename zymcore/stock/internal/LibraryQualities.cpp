#include "zymcore/stock/internal/LibraryQualities.h"

#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/StockKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/values/PlistValue.h"
#include "zymcore/store/ZYMCachingModel.h"
#include "zymcore/store/ZYMLibraryRegistry.h"

namespace zym {
namespace {

struct Quality {
  std::string_view ingredientType;
  KeyName key;
  bool isInLibrary;
};
constexpr Quality qualities[] = {
    {words::Fermentable, keys::Extract, true},
    {words::Fermentable, keys::Color, true},
    {words::Hop, keys::Alpha, true},
    {words::Hop, keys::Form, false},
};

}  // namespace

void copyQualitiesFromLibrary(PlistDictionary& record, std::string_view ingredientType,
                              const std::optional<std::string>& ingredientUUID,
                              std::string_view unknown) {
  std::optional<PlistDictionary> known;
  for (const Quality& quality : qualities) {
    if (quality.ingredientType != ingredientType || !quality.isInLibrary) continue;
    if (!known) {
      ZYMCachingModel* library =
          ZYMLibraryRegistry::sharedInstance().libraryOfIngredientType(ingredientType);
      if (library && ingredientUUID) known = library->itemWithUUID(*ingredientUUID);
      if (!known) known.emplace();
    }
    const PlistValue* value = known->find(quality.key);
    record.set(quality.key, value ? *value : PlistValue(unknown));
  }
}

void copyQualitiesFromOrderItem(PlistDictionary& lot, const PlistDictionary& orderItem) {
  for (const Quality& quality : qualities) {
    if (quality.ingredientType != orderItem.stringValue(keys::IngredientType)) continue;
    lot.setOrRemove(quality.key, orderItem.find(quality.key));
  }
}

}  // namespace zym
