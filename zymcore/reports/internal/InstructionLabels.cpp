#include "zymcore/reports/internal/InstructionLabels.h"

#include <string>

#include "zymcore/platform/values/PlistValue.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/internal/Sentences.h"

namespace zym::pages {
namespace {

constexpr KeyName none{""};

struct Label {
  std::string_view text;
  KeyName key;
  // Of the values that stand in it.
  KeyName first = none;
  KeyName second = none;
};
constexpr Label labels[] = {
    {"Summary", KeyName("SummaryText")},
    {"Gravity Before Boil", KeyName("GravityBeforeBoilText")},
    {"Original Gravity", KeyName("OriginalGravityText")},
    {"Final Gravity", KeyName("FinalGravityText")},
    {"Volume Before Boil", KeyName("VolumeBeforeBoilText")},
    {"Volume After Boil", KeyName("VolumeAfterBoilText")},
    {"Volume Transferred", KeyName("VolumeTransferredText")},
    {"Water Added To Dilute", KeyName("WaterAddedToDiluteText")},
    {"Volume At Pitching", KeyName("VolumeAtPitchingText")},
    {"Volume Of Finished Beer", KeyName("VolumeOfFinishedBeerText")},
    {"Total Water Required", KeyName("TotalWaterRequiredText")},
    {"Total Grain", KeyName("TotalGrainText")},
    {"Batch Cost", KeyName("BatchCostText")},
    {"Preparation", KeyName("PreparationText")},
    {"If using a yeast starter prepare one a couple of days in advance.",
     KeyName("YeastStarterText")},
    {"If necessary crush the grains.", KeyName("CrushGrainsText")},
    {"Prepare %@ of water for the boil.", KeyName("PrepareWaterForTheBoil"),
     keys::PreBoilWortVolume},
    {"Heat %@ of water to %@.", KeyName("HeatWaterTo"), keys::StrikeWaterVolume,
     keys::StrikeWaterTemperature},
    {"Prepare %@ of water and heat to 155F/65C.", KeyName("PrepareWaterAndHeatTo"),
     keys::PreBoilWortVolume},
    {"Mashing", KeyName("MashingText")},
    {"Dough in the following fermentable ingredients.", KeyName("DoughInTheFollowingFermentables")},
    {"Allow the temperature to stabilize at %@. Allow to rest at this temperature for %@ minutes.",
     KeyName("AllowTemperatureToStabilizeAtRestFor"), keys::FirstRestTemperature,
     keys::FirstRestTime},
    {"Sparge the grains and top up if necessary to obtain %@ of wort (requires %@).",
     KeyName("SpargeTheGrainsAndTopUp"), keys::PreBoilWortVolume, keys::SpargeVolume},
    {"Steeping", KeyName("SteepingText")},
    {"Steep the following ingredients for 30 minutes at 155F/65C.",
     KeyName("SteepingTheFollowingIngredients")},
    {"Take out the the grains and rinse to obtain %@ of wort.", KeyName("TakeOutTheGrainsAndRinse"),
     keys::PreBoilWortVolume},
    {"Boiling", KeyName("BoilingText")},
    {"Bring the wort to the boil.", KeyName("BringTheWaterToBoil")},
    {"Boil the wort for a total of %@ minutes.", KeyName("BoilTheWort"), keys::BoilTime},
    {"Chill the wort to the appropriate pitching temperature and rack the wort to your fermenter.",
     KeyName("ChillTheWortToPitching")},
    {"Fermentation", KeyName("FermentationText")},
    {"The desired volume at pitching is %@.%@", KeyName("TheDesiredVolumeAtPitching"),
     keys::VolumeAtPitching, keys::AdditionalWaterText},
    {"Ferment at %@ with", KeyName("FermentAtWith"), keys::FermentationTemperature},
    {"If using a secondary, transfer when appropriate.", KeyName("IfUsingASecondary")},
    {"Racking And Packaging", KeyName("RackingAndPackagingText")},
    {"If using a secondary, the beer should be %@ before racking into either bottles or keg.",
     KeyName("IfUsingASecondaryTheBeer"), keys::Conditioning},
    {"If not using a secondary, the beer should be racked directly into bottles or keg and %@.",
     KeyName("IfNotUsingASecondaryTheBeer"), keys::Conditioning},
};

}  // namespace

void addInstructionLabels(PlistDictionary& values) {
  for (const Label& label : labels) {
    const std::string first(values.stringValue(label.first));
    const std::string second(values.stringValue(label.second));
    values.set(label.key, sentence(label.text, {first, second}));
  }
}

}  // namespace zym::pages
