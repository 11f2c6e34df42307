#include <cstdlib>

#include "fuzz/TreeFromBytes.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/host/NSUserDefaults.h"

namespace zym {
namespace {

// All that is read, and "Notes" for what isn't.
constexpr KeyName documentKeys[] = {keys::ModifiedRecipe,
                                    keys::Actuals,
                                    keys::FermentableIngredients,
                                    keys::HopIngredients,
                                    keys::OtherIngredients,
                                    keys::YeastIngredients,
                                    keys::MashSchedule,
                                    keys::Steps,
                                    keys::Batches,
                                    keys::VolumeAtPitching,
                                    keys::VolumeToFermenter,
                                    keys::PreBoilWortVolume,
                                    keys::FinalWortVolume,
                                    keys::FinalBatchVolume,
                                    keys::MashEfficiency,
                                    keys::WortFermentability,
                                    keys::SteepDuration,
                                    keys::SteepTemperature,
                                    keys::Attenuation,
                                    keys::Ingredient,
                                    keys::Amount,
                                    keys::Extract,
                                    keys::Color,
                                    keys::IsGrain,
                                    keys::When,
                                    keys::Form,
                                    keys::Alpha,
                                    keys::Minutes,
                                    keys::MCUForAddition,
                                    keys::GravityForIBUCalcs,
                                    keys::Cost,
                                    keys::StepType,
                                    keys::Temperature,
                                    keys::SpargeMethod,
                                    keys::MTThermalMass,
                                    keys::PreBoilHydroReading,
                                    keys::OGHydroReading,
                                    keys::FGHydroReading,
                                    keys::PreBoilTemp,
                                    keys::OGTemp,
                                    keys::FGTemp,
                                    keys::HydrometerCalibratedAt,
                                    keys::OG,
                                    keys::FG,
                                    keys::PreBoilGrav,
                                    keys::Notes};

constexpr KeyName defaultsKeys[] = {keys::BoilingPoint,           keys::HopFormula,
                                    keys::BeerColorFormula,       keys::PelletHopAdjustment,
                                    keys::BaggedHopAdjustment,    keys::BaggedPelletHopAdjustment,
                                    keys::FirstWortHopAdjustment, keys::MashHopAdjustment};

constexpr std::string_view documentWords[] = {words::InMashSteeped,
                                              words::StartOfBoil,
                                              words::InMash,
                                              words::FirstWortHopped,
                                              words::AllOfBoil,
                                              words::InFermenter,
                                              words::DryHopped,
                                              words::BaggedWholeHops,
                                              words::LoosePelletHops,
                                              words::PelletizedHops,
                                              words::Low,
                                              words::High,
                                              words::NoSparge,
                                              words::RaiseByInfusion,
                                              "Candy Sugar",
                                              "Lactose",
                                              "Zucker \xC3\xBC",
                                              "0",
                                              "1",
                                              "3",
                                              "1.050",
                                              "100",
                                              "75.5",
                                              "20000",
                                              "2000",
                                              "-1e300",
                                              "1e308",
                                              "inf",
                                              "nan"};

void recalculate(PlistDictionary& document, int operation) {
  switch (operation) {
    case 0:
      return ZYMBeerCalculations::recalculateBeerRecipe(document);
    case 1:
      return ZYMBeerCalculations::recalculateBatch(document);
    default:
      return ZYMBeerCalculations::recalculateBatchCost(document);
  }
}

}  // namespace
}  // namespace zym

// Whatever a document holds, its figures depend on what they are calculated from and not on those
// that were there before.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::string_view forDefaults = bytes.substr(0, 32);
  NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
  defaults.setPersistentFile("");
  defaults.setArguments(TreeFromBytes(forDefaults, defaultsKeys, documentWords).dictionary());

  TreeFromBytes tree(bytes.substr(forDefaults.size()), documentKeys, documentWords);
  const int operation = tree.byte() % 3;
  PlistDictionary document = tree.dictionary();
  recalculate(document, operation);
  // As bytes, since a date that is no number differs from itself.
  const auto once = BinaryPropertyList::write(document);
  recalculate(document, operation);
  if (BinaryPropertyList::write(document) != once) std::abort();
  return 0;
}
