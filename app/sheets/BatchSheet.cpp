#include "app/sheets/BatchSheet.h"

#include <optional>
#include <string>

#include "app/sheets/Figures.h"
#include "app/sheets/RecipeSheet.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"

namespace zym::host {
namespace {

using Cells = Table::Cells;

constexpr const char* nothing = "–";

/// A quantity with its keys in the recipe and in the measurements. It is known only when there is a
/// hydrometer reading that it needs; one of 1.000 is the mark of a reading not taken.
struct Outcome {
  const char* name;
  std::optional<KeyName> predicted;
  KeyName measured;
  std::string (*shown)(const PlistDictionary&, KeyName);
  std::optional<KeyName> reading = std::nullopt;
};

const Outcome outcomes[] = {
    {"Before the boil", keys::ExpectedPreBoilGravity, keys::PreBoilGrav, gravityAt,
     keys::PreBoilHydroReading},
    {"Original gravity", keys::ExpectedOriginalGravity, keys::OG, gravityAt, keys::OGHydroReading},
    {"Final gravity", keys::ExpectedFinalGravity, keys::FG, gravityAt, keys::OGHydroReading},
    {"Apparent attenuation", keys::ApparentAttenuation, keys::ApparentAttenuation, percentAt,
     keys::OGHydroReading},
    {"Real attenuation", std::nullopt, keys::RealAttenuation, percentAt, keys::OGHydroReading},
    {"Alcohol by volume", keys::ExpectedABV, keys::ABV, percentAt, keys::OGHydroReading},
    {"Alcohol by weight", keys::ExpectedABW, keys::ABW, percentAt, keys::OGHydroReading},
    {"Mash efficiency", keys::MashEfficiency, keys::ActualMashEfficiency, percentAt,
     keys::PreBoilHydroReading},
    {"Bitterness", keys::ExpectedIBU, keys::IBU, bitternessAt},
    {"Colour", keys::ExpectedColor, keys::Color, beerColorAt},
};

const Outcome volumes[] = {
    {"Before the boil", keys::PreBoilWortVolume, keys::PreBoilWortVolume, volumeAt},
    {"After the boil", keys::FinalWortVolume, keys::FinalWortVolume, volumeAt},
    {"To the fermenter", keys::VolumeToFermenter, keys::VolumeToFermenter, volumeAt},
    {"Water added", keys::VolumeWaterAdded, keys::VolumeWaterAdded, volumeAt},
    {"At pitching", keys::VolumeAtPitching, keys::VolumeAtPitching, volumeAt},
    {"Finished beer", keys::FinalBatchVolume, keys::FinalBatchVolume, volumeAt},
};

struct Day {
  const char* name;
  KeyName key;
};
constexpr Day days[] = {{"Brewed", keys::DateBrewed},
                        {"Racked", keys::DateRacked},
                        {"Packaged", keys::DatePackaged},
                        {"Ready", keys::DateReady}};

constexpr Day notes[] = {{"Notes on the batch", keys::BatchNotes},
                         {"Notes on the boil", keys::BoilNotes},
                         {"Notes on the fermentation", keys::FermentationNotes},
                         {"Notes on the packaging", keys::PackagingNotes},
                         {"Notes on the taste", keys::TastingNotes}};

template <std::size_t Count>
Table comparison(const Outcome (&rows)[Count], const PlistDictionary& recipe,
                 const PlistDictionary& actuals) {
  Table table({{"", Cells::Texts},
               {label("Predicted"), Cells::Quantities},
               {label("Measured"), Cells::Quantities}});
  for (const Outcome& row : rows) {
    const bool isKnown = !row.reading || actuals.doubleValue(*row.reading) > 1.0;
    table.addRow({label(row.name), row.predicted ? row.shown(recipe, *row.predicted) : nothing,
                  isKnown ? row.shown(actuals, row.measured) : nothing});
  }
  return table;
}

Table dayTable(const PlistDictionary& batch) {
  Table table({{"", Cells::Texts}, {"", Cells::Texts}});
  for (const Day& day : days) {
    const std::string date = dayAt(batch, day.key);
    if (!date.empty()) table.addRow({label(day.name), date});
  }
  return table;
}

PlistDictionary dictionaryAt(const PlistDictionary& document, KeyName key) {
  const PlistDictionary* found = document.dictionary(key);
  return found ? *found : PlistDictionary();
}

}  // namespace

void writeBatch(Sheet& sheet, const PlistDictionary& batch) {
  PlistDictionary recipe = dictionaryAt(batch, keys::ModifiedRecipe);
  ZYMBeerCalculations::recalculateBeerRecipe(recipe);
  const PlistDictionary actuals = dictionaryAt(batch, keys::Actuals);

  sheet.title(titleAt(batch, keys::BatchTitle));
  sheet.section(label("Outcome"), comparison(outcomes, recipe, actuals));
  sheet.section(label("Volumes"), comparison(volumes, recipe, actuals));

  Table mash({{"", Cells::Texts}, {"", Cells::Texts}});
  mash.addRow({label("Method"), wordAt(batch, keys::SpargeMethod)});
  mash.addRow({label("Thickness"), waterGrainAt(batch, keys::WaterGrainRatio)});
  sheet.section(label("Mash and sparge"), mash);

  writeAdditions(sheet, recipe);
  sheet.section(label("Days"), dayTable(batch));
  for (const Day& note : notes) sheet.section(label(note.name), textAt(batch, note.key));
}

}  // namespace zym::host
