#include "app/sheets/BatchSheet.h"

#include <algorithm>
#include <optional>
#include <string>

#include "app/sheets/Figures.h"
#include "app/sheets/RecipeSheet.h"
#include "app/sheets/VolumeRows.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"

namespace zym::host {
namespace {

using Cells = Table::Cells;

constexpr const char* nothing = "–";

/// What was measured of a batch. A hydrometer reading of 1.000 is the mark of one not taken;
/// volumes start as the recipe's, so they are the batch's own once one differs.
struct Measured {
  Measured(const PlistDictionary& recipe, const PlistDictionary& actuals)
      : preBoil(actuals.doubleValue(keys::PreBoilHydroReading) > 1),
        original(actuals.doubleValue(keys::OGHydroReading) > 1),
        final(isReading(actuals.doubleValue(keys::FGHydroReading))),
        volumes(std::ranges::any_of(volumeRows, [&](const VolumeRow& row) {
          return actuals.doubleValue(row.key) != recipe.doubleValue(row.key);
        })) {}

  static bool isReading(double gravity) { return gravity > 0 && gravity != 1; }

  bool preBoil, original, final, volumes;
};

/// A quantity with its keys in the recipe and in the measurements, and whether what it is worked
/// out from was measured.
struct Outcome {
  const char* name;
  std::optional<KeyName> predicted;
  KeyName measured;
  std::string (*shown)(const PlistDictionary&, KeyName);
  bool (*isKnown)(const Measured&);
};

bool fromPreBoil(const Measured& m) {
  return m.preBoil;
}
bool fromOriginal(const Measured& m) {
  return m.original;
}
bool fromFinal(const Measured& m) {
  return m.final;
}
bool fromOriginalAndFinal(const Measured& m) {
  return m.original && m.final;
}
bool fromAnyWort(const Measured& m) {
  return m.preBoil || m.original;
}
bool fromVolumes(const Measured& m) {
  return m.volumes;
}

const Outcome outcomes[] = {
    {"Before the boil", keys::ExpectedPreBoilGravity, keys::PreBoilGrav, gravityAt, fromPreBoil},
    {"Original gravity", keys::ExpectedOriginalGravity, keys::OG, gravityAt, fromOriginal},
    {"Final gravity", keys::ExpectedFinalGravity, keys::FG, gravityAt, fromFinal},
    {"Apparent attenuation", keys::ApparentAttenuation, keys::ApparentAttenuation, percentAt,
     fromOriginalAndFinal},
    {"Real attenuation", std::nullopt, keys::RealAttenuation, percentAt, fromOriginalAndFinal},
    {"Alcohol by volume", keys::ExpectedABV, keys::ABV, percentAt, fromOriginalAndFinal},
    {"Alcohol by weight", keys::ExpectedABW, keys::ABW, percentAt, fromOriginalAndFinal},
    {"Mash efficiency", keys::MashEfficiency, keys::ActualMashEfficiency, percentAt, fromPreBoil},
    {"Bitterness", keys::ExpectedIBU, keys::IBU, bitternessAt, fromAnyWort},
    {"Colour", keys::ExpectedColor, keys::Color, beerColorAt, fromVolumes},
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

Table comparison() {
  return Table({{"", Cells::Texts},
                {label("Predicted"), Cells::Quantities},
                {label("Measured"), Cells::Quantities}});
}

Table outcomeTable(const PlistDictionary& recipe, const PlistDictionary& actuals,
                   const Measured& measured) {
  Table table = comparison();
  for (const Outcome& row : outcomes) {
    table.addRow({label(row.name), row.predicted ? row.shown(recipe, *row.predicted) : nothing,
                  row.isKnown(measured) ? row.shown(actuals, row.measured) : nothing});
  }
  return table;
}

Table volumeTable(const PlistDictionary& recipe, const PlistDictionary& actuals,
                  const Measured& measured) {
  Table table = comparison();
  for (const VolumeRow& row : volumeRows) {
    table.addRow({label(row.name), volumeAt(recipe, row.key),
                  measured.volumes ? volumeAt(actuals, row.key) : nothing});
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
  const Measured measured(recipe, actuals);
  sheet.section(label("Outcome"), outcomeTable(recipe, actuals, measured));
  sheet.section(label("Volumes"), volumeTable(recipe, actuals, measured));

  Table mash({{"", Cells::Texts}, {"", Cells::Texts}});
  mash.addRow({label("Method"), wordAt(batch, keys::SpargeMethod)});
  mash.addRow({label("Thickness"), waterGrainAt(batch, keys::WaterGrainRatio)});
  sheet.section(label("Mash and sparge"), mash);

  writeAdditions(sheet, recipe);
  sheet.section(label("Days"), dayTable(batch));
  for (const Day& note : notes) sheet.section(label(note.name), batch.stringValue(note.key));
}

}  // namespace zym::host
