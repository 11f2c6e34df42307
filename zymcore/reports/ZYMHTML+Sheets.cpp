#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/NSColorExtensions.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/library/ZYMStyles.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/ZYMHTML.h"
#include "zymcore/reports/internal/PageFigures.h"
#include "zymcore/reports/internal/PageTexts.h"
#include "zymcore/reports/internal/SheetLabels.h"
#include "zymcore/reports/internal/SheetRows.h"
#include "zymcore/reports/internal/SheetWater.h"
#include "zymcore/reports/internal/StylePlaces.h"
#include "zymcore/reports/internal/Template.h"
#include "zymcore/transformers/ZYMBeerColorValueTransformer.h"
#include "zymcore/transformers/ZYMGravityValueTransformer.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"
#include "zymcore/transformers/ZYMVolumeValueTransformer.h"

namespace zym {
namespace {

using namespace pages;

/// A gravity up to here was never measured, or predicted of nothing.
constexpr double gravityOfWater = 1.001;

std::string oneDecimalAt(const PlistDictionary& record, KeyName key) {
  return ZYMHTML::trimToOneDecimalPlace(record.find(key));
}
std::string percentAt(const PlistDictionary& record, KeyName key) {
  return ZYMHTML::trimToOneDecimalPlaceAppendingPercent(record.find(key));
}
std::string minutesAt(const PlistDictionary& record, KeyName key) {
  const std::string number = oneDecimalAt(record, key);
  return number == noFigure ? number : number + " " + Localized_String("mins");
}
std::string measuredGravityAt(const PlistDictionary& actuals, KeyName key) {
  return actuals.doubleValue(key) > gravityOfWater
             ? shownAt<ZYMGravityValueTransformer>(actuals, key)
             : Localized_String("-No Record-");
}
constexpr auto gravityAt = shownAt<ZYMGravityValueTransformer>;
constexpr auto volumeAt = shownAt<ZYMVolumeValueTransformer>;
constexpr auto colorAt = shownAt<ZYMBeerColorValueTransformer>;
constexpr auto temperatureAt = shownAt<ZYMTemperatureValueTransformer>;

struct Figure {
  KeyName key;     // of the page
  KeyName source;  // of the record
  std::string (*shown)(const PlistDictionary& record, KeyName key);
};
constexpr Figure recipeFigures[] = {
    {keys::ExpectedPreBoilGravity, keys::ExpectedPreBoilGravity, gravityAt},
    {keys::ExpectedOriginalGravity, keys::ExpectedOriginalGravity, gravityAt},
    {keys::ExpectedFinalGravity, keys::ExpectedFinalGravity, gravityAt},
    {keys::PreBoilWortVolume, keys::PreBoilWortVolume, volumeAt},
    {keys::FinalWortVolume, keys::FinalWortVolume, volumeAt},
    {keys::VolumeToFermenter, keys::VolumeToFermenter, volumeAt},
    {keys::VolumeWaterAdded, keys::VolumeWaterAdded, volumeAt},
    {keys::VolumeAtPitching, keys::VolumeAtPitching, volumeAt},
    {keys::FinalBatchVolume, keys::FinalBatchVolume, volumeAt},
    {keys::ExpectedColor, keys::ExpectedColor, colorAt},
    {keys::FermentationTemperature, keys::FermentationTemperature, temperatureAt},
    {keys::ApparentAttenuation, keys::ApparentAttenuation, percentAt},
    {keys::ExpectedABV, keys::ExpectedABV, percentAt},
    {keys::ExpectedABW, keys::ExpectedABW, percentAt},
    {keys::MashEfficiency, keys::MashEfficiency, percentAt},
    {keys::ExpectedIBU, keys::ExpectedIBU, oneDecimalAt},
    {keys::BoilDuration, keys::BoilDuration, minutesAt},
};
constexpr Figure styleFigures[] = {
    {keys::MinOG, keys::MinOG, gravityAt},     {keys::MaxOG, keys::MaxOG, gravityAt},
    {keys::MinFG, keys::MinFG, gravityAt},     {keys::MaxFG, keys::MaxFG, gravityAt},
    {keys::MinColor, keys::MinColor, colorAt}, {keys::MaxColor, keys::MaxColor, colorAt},
};
constexpr Figure actualFigures[] = {
    {keys::ActualPreBoilGravity, keys::PreBoilGrav, measuredGravityAt},
    {keys::ActualOriginalGravity, keys::OG, measuredGravityAt},
    {keys::ActualFinalGravity, keys::FG, measuredGravityAt},
    {keys::ActualPreBoilWortVolume, keys::PreBoilWortVolume, volumeAt},
    {keys::ActualFinalWortVolume, keys::FinalWortVolume, volumeAt},
    {keys::ActualVolumeToFermenter, keys::VolumeToFermenter, volumeAt},
    {keys::ActualVolumeAtPitching, keys::VolumeAtPitching, volumeAt},
    {keys::ActualFinalBatchVolume, keys::FinalBatchVolume, volumeAt},
    {keys::ActualColor, keys::Color, colorAt},
    {keys::ActualApparentAttenuation, keys::ApparentAttenuation, percentAt},
    {keys::ActualABV, keys::ABV, percentAt},
    {keys::ActualABW, keys::ABW, percentAt},
    {keys::ActualMashEfficiency, keys::ActualMashEfficiency, percentAt},
    {keys::ActualIBU, keys::IBU, oneDecimalAt},
    {keys::ActualFermentationTemperature, keys::FermentationTemperature, temperatureAt},
};

constexpr KeyName batchDates[] = {keys::DateBrewed, keys::DateRacked, keys::DatePackaged,
                                  keys::DateReady};
constexpr KeyName batchNotes[] = {keys::BatchNotes, keys::BoilNotes, keys::FermentationNotes,
                                  keys::PackagingNotes, keys::TastingNotes};

constexpr std::string_view sheetTemplates[] = {"HTMLTemplate-Recipe", "HTMLTemplate-Batch",
                                               "HTMLTemplate-Recipe-Clipboard",
                                               "HTMLTemplate-Batch-Clipboard"};
constexpr std::int64_t batchBit = 1;
constexpr std::int64_t clipboardBit = 2;

void addFigures(std::span<const Figure> figures, const PlistDictionary& record,
                PlistDictionary& values) {
  for (const Figure& figure : figures) values.set(figure.key, figure.shown(record, figure.source));
}

void addStyle(const PlistDictionary& recipe, Form form, PlistDictionary& values) {
  const PlistDictionary style =
      ZYMStyles::sharedInstance()
          .styleWithUUID_inGuidelines(recipe.stringValue(keys::StyleUUID),
                                      recipe.integerValue(keys::StyleGuidelinesSource))
          .value_or(ZYMStyles::noChosenStyle());
  for (const KeyName key : {keys::MinIBU, keys::MaxIBU, keys::Category}) {
    values.set(key, pageTextAt(style, key, form));
  }
  values.set(keys::StyleName, pageTextAt(style, keys::Name, form));
  addFigures(styleFigures, style, values);
  addStylePlaces(recipe, style, values);
}

std::string bitternessRatio(const PlistDictionary& recipe) {
  const double gravity = recipe.doubleValue(keys::ExpectedOriginalGravity);
  if (!(gravity > gravityOfWater)) return noFigure;
  return decimals(recipe.doubleValue(keys::ExpectedIBU) / ((gravity - 1) * 1000), 2);
}

void addRecipe(const PlistDictionary& recipe, Form form, PlistDictionary& values) {
  values.set(keys::BeerColorInHex, hexRepresentation(ZYMBeerCalculations::colourForBeerWithSRM(
                                       recipe.doubleValue(keys::ExpectedColor))));
  addStyle(recipe, form, values);
  addFigures(recipeFigures, recipe, values);
  values.set(keys::BUGURatio, bitternessRatio(recipe));
  const bool inPlato =
      NSUserDefaults::standardUserDefaults().integerForKey(keys::GravityUnits) == 1;
  const bool inEBC = NSUserDefaults::standardUserDefaults().integerForKey(keys::ColorUnit) == 1;
  values.set(keys::GravityUnit, Localized_String(inPlato ? "Plato" : "SG"));
  values.set(keys::ColorUnitName, Localized_String(inEBC ? "EBC" : "SRM"));
  values.set(keys::Formula, nameOfFormula(keys::HopFormula, words::hopFormulas));
  values.set(keys::ColorFormula, nameOfFormula(keys::BeerColorFormula, words::beerColorFormulas));
  addSheetTables(recipe, form, values);
  addSheetWater(recipe, form, values);
  values.set(keys::Acid, translated(recipe.stringValue(keys::Acid), words::acids, form));
  values.set(keys::MashType,
             translated(recipe.stringValue(keys::MashType), words::mashTypes, form));
  if (const PlistDictionary* schedule = recipe.dictionary(keys::MashSchedule)) {
    values.set(keys::ScheduleName, pageTextAt(*schedule, keys::ScheduleName, form));
  }
  values.set(keys::Notes, notesAt(recipe, keys::Notes, form));
  values.set(keys::TastingNotes, "");
}

void addBatch(const PlistDictionary& batch, Form form, PlistDictionary& values) {
  static const PlistDictionary none;
  const PlistDictionary* actuals = batch.dictionary(keys::Actuals);
  addFigures(actualFigures, actuals ? *actuals : none, values);
  for (const KeyName key : batchDates) values.set(key, dayAt(batch, key));
  for (const KeyName key : batchNotes) values.set(key, notesAt(batch, key, form));
  values.set(keys::BatchTitle, pageTextAt(batch, keys::BatchTitle, form));
}

}  // namespace

std::string ZYMHTML::renderRecipeToHTMLForWeb(PlistDictionary& recipe) {
  return renderItemToHTML_type(recipe, 0);
}

std::string ZYMHTML::renderBatchToHTMLForWeb(PlistDictionary& batch) {
  return renderItemToHTML_type(batch, batchBit);
}

std::string ZYMHTML::renderRecipeToStringForClipboard(PlistDictionary& recipe) {
  return renderItemToHTML_type(recipe, clipboardBit);
}

std::string ZYMHTML::renderItemToHTML_type(PlistDictionary& item, std::int64_t type) {
  const bool isBatch = (type & batchBit) != 0;
  const Form form = (type & clipboardBit) != 0 ? Form::Plain : Form::Markup;
  if (isBatch) ZYMBeerCalculations::recalculateBatch(item);
  PlistDictionary none;
  PlistDictionary* held = isBatch ? item.editDictionary(keys::ModifiedRecipe) : &item;
  PlistDictionary& recipe = held ? *held : none;
  ZYMBeerCalculations::recalculateBeerRecipe(recipe);
  ZYMRecipes::sortIngredientsInRecipe(recipe);

  PlistDictionary values = recipe;
  makePageTexts(values, form);
  addSheetLabels(values);
  addRecipe(recipe, form, values);
  if (isBatch) addBatch(item, form, values);
  insertHTMLHeader(values);
  const auto position = static_cast<std::size_t>(type & (batchBit | clipboardBit));
  return withoutGuards(pageOf(sheetTemplates[position], values), form);
}

}  // namespace zym
