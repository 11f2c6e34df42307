#include <cstdlib>

#include "fuzz/FuzzStore.h"
#include "fuzz/TreeFromBytes.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/interchange/operations/ZYMRecipeDataStoreImportOperation.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/store/entities/ZYMRecipeEntity.h"

namespace zym {
namespace {

constexpr KeyName bundleKeys[] = {
    KeyName("Recipes"),     KeyName("Groups"), keys::UUID,         keys::Batches,
    keys::KeysOfContents,   keys::GroupName,   keys::Type,         keys::ModifiedRecipe,
    keys::Profile,          keys::Actuals,     keys::TastingNotes, keys::DateLastModified,
    keys::YeastIngredients, keys::DateBrewed,  keys::BatchTitle,   keys::RecipeTitle};
constexpr std::string_view bundleWords[] = {"", "A", "B", "C", "1", "20000"};

}  // namespace
}  // namespace zym

// Whatever a bundle holds, it comes in to its end, all is saved, and every recipe can be read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  static const bool isOpen = (openFuzzStore("zymcore-bundle-fuzz"), true);
  (void)isOpen;
  TreeFromBytes bytes({reinterpret_cast<const char*>(data), size}, bundleKeys, bundleWords);
  PlistDictionary bundle = bytes.dictionary();
  correctForSerialization(bundle);
  ZYMRecipeDataStoreImportOperation operation(bundle);
  bool isDone = false;
  operation.setCompletionHandler([&] { isDone = true; });
  operation.start();
  if (!isDone || mainContext().hasChanges()) std::abort();
  const auto recipes = ZYMRecipeEntity::findAllObjects();
  for (ZYMRecipeEntity* recipe : *recipes) {
    (void)recipe->dictionaryRepresentation();
    mainContext().deleteObject(*recipe);
  }
  ZYMCoreDataModel::sharedInstance().save();
  return 0;
}
