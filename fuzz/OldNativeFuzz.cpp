#include <cstdlib>

#include "fuzz/FuzzStore.h"
#include "fuzz/TreeFromBytes.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/interchange/beerxml/ZYMBeerXML.h"
#include "zymcore/interchange/native/ZYMWortmeisterWMRFile.h"
#include "zymcore/interchange/rec/RecLayout.h"
#include "zymcore/interchange/rec/ZYMRecFile.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"

namespace zym {
namespace {

constexpr KeyName documentKeys[] = {keys::Attenuation,
                                    keys::Notes,
                                    keys::CaCl2,
                                    keys::Batches,
                                    keys::MashSchedule,
                                    KeyName("Mash Schedule"),
                                    keys::Steps,
                                    keys::Version,
                                    keys::StepType,
                                    keys::Duration,
                                    keys::Temperature,
                                    keys::Style,
                                    keys::StyleUUID,
                                    keys::StyleGuidelinesSource,
                                    keys::CarbonationVolumes,
                                    keys::ModifiedRecipe,
                                    keys::OriginalRecipe,
                                    keys::RecipeAtCreation,
                                    keys::Actuals,
                                    keys::PreBoilHydroReading,
                                    KeyName("MeasuredPreBoil Grav"),
                                    keys::DateBrewed,
                                    keys::DateRacked,
                                    keys::FinalBatchVolume,
                                    KeyName("Final Wort Volume"),
                                    keys::YeastIngredients,
                                    keys::HopIngredients,
                                    keys::FermentableIngredients,
                                    keys::OtherIngredients,
                                    keys::Ingredient,
                                    keys::When,
                                    keys::Amount,
                                    keys::Name,
                                    keys::Profile};
constexpr std::string_view documentWords[] = {"",
                                              "0",
                                              "1",
                                              "3",
                                              "nan",
                                              "1e308",
                                              "-1",
                                              words::RestAt,
                                              words::InMash,
                                              words::RaiseByInfusion,
                                              words::PullDecoction,
                                              "Extract - x",
                                              "Wyeast 1-2 y",
                                              "IPA"};

}  // namespace
}  // namespace zym

// Whatever a property list holds that counts as a recipe, it comes up to date, once and for all,
// and goes out in the formats of other programs.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  static const bool isOpen = (openFuzzStore("zymcore-native-fuzz"), true);
  (void)isOpen;
  TreeFromBytes bytes({reinterpret_cast<const char*>(data), size}, documentKeys, documentWords);
  PlistDictionary tree = bytes.dictionary();
  for (const KeyName key : {keys::Attenuation, keys::Notes, keys::CaCl2}) {
    if (!tree.contains(key)) tree.set(key, "");
  }
  const auto list = BinaryPropertyList::write(tree);
  if (!list) return 0;
  const auto recipe = ZYMWortmeisterWMRFile::parseFileData(NSData(*list));
  if (!recipe) std::abort();
  for (const PlistDictionary& batch : recipe->rows(keys::Batches)) {
    if (!batch.contains(keys::Actuals) || !batch.contains(keys::ModifiedRecipe)) std::abort();
  }
  if (ZYMBeerXML::dataForRecipe(*recipe).length() == 0) std::abort();
  if (!RecFile::read(ZYMRecFile::dataForRecipe(*recipe).view())) std::abort();
  return 0;
}
