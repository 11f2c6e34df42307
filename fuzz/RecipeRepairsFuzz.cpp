#include <cstdlib>
#include <filesystem>

#include "fuzz/TreeFromBytes.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/ZYMWaters.h"
#include "zymcore/library/ZYMYeasts.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/host/NSBundle.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/store/ZYMCoreDataModel.h"

namespace zym {
namespace {

constexpr KeyName documentKeys[] = {
    keys::ModifiedRecipe,
    keys::OriginalRecipe,
    keys::RecipeAtCreation,
    keys::Actuals,
    keys::TastingNotes,
    keys::AdjustedInventory,
    keys::FermentableIngredients,
    keys::HopIngredients,
    keys::OtherIngredients,
    keys::YeastIngredients,
    keys::Profile,
    keys::BoilDuration,
    keys::MashEfficiency,
    keys::ExtractEfficiency,
    keys::SteepTemperature,
    keys::StyleGuidelinesSource,
    keys::Style,
    keys::StyleUUID,
    keys::WaterProfileUsed,
    keys::TargetWaterProfileUsedUUID,
    keys::BaseWaterProfileUsedUUID,
    keys::Yeast,
    keys::YeastAmount,
    keys::IngredientDeducted,
    keys::Batches,
    keys::Description,
    keys::Amount,
    keys::When,
    keys::IsGrain,
    keys::MgSO4,
    keys::MgSO4InGrammes,
    keys::VolumeToFermenter,
    keys::FinalWortVolume,
    keys::VolumeAtPitching,
    keys::Notes,
};
constexpr std::string_view documentWords[] = {words::InMashSteeped,
                                              words::InMash,
                                              words::AllOfBoil,
                                              words::DryHopped,
                                              "90 Min From End",
                                              "1 Min From End",
                                              "Burton",
                                              "US-05",
                                              "Dry Stout",
                                              "",
                                              "0",
                                              "1",
                                              "60",
                                              "20000",
                                              "1e308",
                                              "nan"};

/// A store of this process with a water and two yeasts.
void openStore() {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / "zymcore-repairs-fuzz";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  NSUserDefaults::standardUserDefaults().setPersistentFile("");
  NSBundle::setMainBundle(NSBundle(ZYM_RESOURCES, "org.zymcore.fuzz", "1"));
  ZYMCoreDataModel::sharedInstance().setDataFolder(folder);
  ZYMWaters::sharedInstance().addItemsFromArray(
      {PlistDictionary{{keys::UUID, "burton"}, {keys::Name, "Burton"}}});
  ZYMYeasts::sharedInstance().addItemsFromArray(
      {PlistDictionary{{keys::UUID, "none"}, {keys::Name, " None"}},
       PlistDictionary{{keys::UUID, "us-05"}, {keys::Name, "US-05"}}});
}

void repair(PlistDictionary& document, bool isBatch) {
  for (const KeyName key : keys::additions) {
    if (PlistArray* rows = document.editArray(key)) ZYMRecipes::removeDescriptionsIn(*rows);
  }
  ZYMRecipes::checkSaltWeightsExistInRecipe(document);
  correctForSerialization(document);
  if (isBatch) {
    // The first run may end with the notes of the tasting.
    (void)ZYMRecipes::ensureBatchLatestVersion(document);
    (void)ZYMRecipes::ensureBatchLatestVersion(document);
  } else {
    (void)ZYMRecipes::ensureRecipeLatestVersion(document);
  }
}

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace
}  // namespace zym

// Whatever a document holds, its repairs leave one that they have nothing to add to, and that can
// be sorted, checked and stored.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  static const bool isOpen = (openStore(), true);
  (void)isOpen;
  TreeFromBytes tree({reinterpret_cast<const char*>(data), size}, documentKeys, documentWords);
  const bool isBatch = tree.byte() % 2 == 0;
  PlistDictionary document = tree.dictionary();
  repair(document, isBatch);
  correctForSerialization(document);  // as it would come back from the store
  // As bytes, since a date that is no number differs from itself.
  const auto once = BinaryPropertyList::write(document);
  require(isBatch ? ZYMRecipes::ensureBatchLatestVersion(document)
                  : ZYMRecipes::ensureRecipeLatestVersion(document));
  repair(document, isBatch);
  require(BinaryPropertyList::write(document) == once);

  ZYMRecipes::sortIngredientsInRecipe(document);
  ZYMRecipes::validateIngredientsInRecipe(document);
  for (int calls = 0; ZYMRecipes::removeZeroedIngredientsInRecipe(document); ++calls) {
    require(calls < 3);
  }
  return 0;
}
