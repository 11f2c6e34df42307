#include "app/sheets/RecipeSheet.h"

#include <span>
#include <string>

#include "app/sheets/Figures.h"
#include "app/sheets/VolumeRows.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym::host {
namespace {

using Cells = Table::Cells;

/// What a quantity is called, where it stands and how it is shown.
struct Figure {
  const char* name;
  KeyName key;
  std::string (*shown)(const PlistDictionary&, KeyName);
};

constexpr Figure predictions[] = {
    {"Before the boil", keys::ExpectedPreBoilGravity, gravityAt},
    {"Original gravity", keys::ExpectedOriginalGravity, gravityAt},
    {"Final gravity", keys::ExpectedFinalGravity, gravityAt},
    {"Apparent attenuation", keys::ApparentAttenuation, percentAt},
    {"Alcohol by volume", keys::ExpectedABV, percentAt},
    {"Alcohol by weight", keys::ExpectedABW, percentAt},
    {"Bitterness", keys::ExpectedIBU, bitternessAt},
    {"Colour", keys::ExpectedColor, beerColorAt},
};

std::string formulaInUse(KeyName key, words::Vocabulary names) {
  const std::int64_t code = NSUserDefaults::standardUserDefaults().integerForKey(key);
  if (code < 0 || code >= static_cast<std::int64_t>(names.size())) return {};
  return std::string(names[static_cast<std::size_t>(code)]);
}

Table predictionTable(const PlistDictionary& recipe) {
  Table table({{"", Cells::Texts}, {"", Cells::Quantities}, {"", Cells::Texts}});
  for (const Figure& figure : predictions) {
    std::string remark;
    if (figure.key.text() == keys::ExpectedIBU.text()) {
      remark = formulaInUse(keys::HopFormula, words::hopFormulas);
    } else if (figure.key.text() == keys::ExpectedColor.text()) {
      remark = formulaInUse(keys::BeerColorFormula, words::beerColorFormulas);
    }
    table.addRow({label(figure.name), figure.shown(recipe, figure.key), remark});
  }
  return table;
}

Table volumeTable(const PlistDictionary& recipe) {
  Table table({{"", Cells::Texts}, {"", Cells::Quantities}});
  for (const VolumeRow& row : volumeRows) {
    table.addRow({label(row.name), volumeAt(recipe, row.key)});
  }
  return table;
}

double sum(const PlistDictionary& recipe, KeyName rows, KeyName key) {
  double total = 0;
  for (const PlistDictionary& row : recipe.rows(rows)) total += row.doubleValue(key);
  return total;
}

Table fermentableTable(const PlistDictionary& recipe) {
  Table table({{"", Cells::Texts},
               {label("Amount"), Cells::Quantities},
               {label("Grist"), Cells::Quantities},
               {label("Extract"), Cells::Quantities},
               {label("Colour"), Cells::Quantities},
               {label("Malt"), Cells::Quantities},
               {label("When"), Cells::Texts}});
  const double points = sum(recipe, keys::FermentableIngredients, keys::GravityPointsForAddition);
  for (const PlistDictionary& row : recipe.rows(keys::FermentableIngredients)) {
    const double share =
        points > 0 ? row.doubleValue(keys::GravityPointsForAddition) / points * 100 : 0;
    table.addRow({nameAt(row, keys::Ingredient), weightAt(row, keys::Amount),
                  percentAt(row, keys::Percentage), percent(share),
                  percentAt(row, keys::MCUPercentage), maltColorAt(row, keys::Color),
                  wordAt(row, keys::When)});
  }
  return table;
}

Table hopTable(const PlistDictionary& recipe) {
  Table table({{"", Cells::Texts},
               {label("Amount"), Cells::Quantities},
               {label("Alpha"), Cells::Quantities},
               {label("Boiled"), Cells::Quantities},
               {label("Bitterness"), Cells::Quantities},
               {label("When"), Cells::Texts},
               {label("Form"), Cells::Texts}});
  for (const PlistDictionary& row : recipe.rows(keys::HopIngredients)) {
    table.addRow({nameAt(row, keys::Variety), hopWeightAt(row, keys::Amount),
                  percentAt(row, keys::Alpha), minutesAt(row, keys::Minutes),
                  bitternessAt(row, keys::IBUForAddition), wordAt(row, keys::When),
                  wordAt(row, keys::Form)});
  }
  return table;
}

Table otherTable(const PlistDictionary& recipe) {
  Table table(
      {{"", Cells::Texts}, {label("Amount"), Cells::Quantities}, {label("When"), Cells::Texts}});
  for (const PlistDictionary& row : recipe.rows(keys::OtherIngredients)) {
    table.addRow(
        {nameAt(row, keys::Ingredient), weightAt(row, keys::Amount), wordAt(row, keys::When)});
  }
  return table;
}

Table yeastTable(const PlistDictionary& recipe) {
  Table table({{"", Cells::Texts},
               {label("Amount"), Cells::Quantities},
               {label("Attenuation"), Cells::Quantities}});
  for (const PlistDictionary& row : recipe.rows(keys::YeastIngredients)) {
    table.addRow({nameAt(row, keys::Name), yeastAmount(row), percentAt(row, keys::Attenuation)});
  }
  return table;
}

constexpr const char* saltNames[] = {"Epsom salt",       "Chalk",      "Gypsum", "Table salt",
                                     "Calcium chloride", "Baking soda"};

/// The water aimed at and the salts that are added; nothing where neither was chosen.
Table waterTable(const PlistDictionary& recipe) {
  Table table({{"", Cells::Texts}, {"", Cells::Texts}});
  // The record that stands for no choice has a blank before its name.
  const std::string target(recipe.stringValue(keys::WaterProfileUsed));
  if (!target.empty() && !target.starts_with(' ')) {
    table.addRow({label("Target water"), nameAt(recipe, keys::WaterProfileUsed)});
  }
  for (std::size_t i = 0; i < std::size(saltNames); ++i) {
    if (!(recipe.doubleValue(keys::salts[i].weight) > 0)) continue;
    table.addRow({label(saltNames[i]), saltWeightAt(recipe, keys::salts[i].weight)});
  }
  return table;
}

Table mashTable(const PlistDictionary& recipe) {
  Table table({{"", Cells::Texts}, {"", Cells::Quantities}, {"", Cells::Quantities}});
  if (const PlistDictionary* schedule = recipe.dictionary(keys::MashSchedule)) {
    for (const PlistDictionary& step : schedule->rows(keys::Steps)) {
      table.addRow({label(step.stringValue(keys::StepType)), temperatureAt(step, keys::Temperature),
                    minutesAt(step, keys::Duration)});
    }
  }
  return table;
}

}  // namespace

std::string makesNow(const PlistDictionary& recipe, const PlistDictionary* before) {
  struct Figure {
    const char* name;
    KeyName key;
    std::string (*shown)(const PlistDictionary&, KeyName);
  };
  static constexpr Figure figures[] = {{"OG", keys::ExpectedOriginalGravity, gravityAt},
                                       {"FG", keys::ExpectedFinalGravity, gravityAt},
                                       {"alcohol", keys::ExpectedABV, percentAt},
                                       {"bitterness", keys::ExpectedIBU, bitternessAt},
                                       {"colour", keys::ExpectedColor, beerColorAt}};
  std::string line = label("Makes") + " ";
  for (const Figure& figure : figures) {
    const std::string now = figure.shown(recipe, figure.key);
    const std::string was = before ? figure.shown(*before, figure.key) : now;
    if (&figure != figures) line += ", ";
    line += label(figure.name) + " " + now;
    if (was != now) line += " (" + label("was") + " " + was.substr(0, was.find(' ')) + ")";
  }
  return line;
}

std::vector<std::string> lacksOf(const PlistDictionary& recipe) {
  bool hasFermentables = false;
  for (const PlistDictionary& row : recipe.rows(keys::FermentableIngredients)) {
    hasFermentables = hasFermentables || row.doubleValue(keys::Amount) > 0;
  }
  const PlistArray* yeasts = recipe.array(keys::YeastIngredients);
  std::vector<std::string> lacks;
  if (!hasFermentables) {
    lacks.push_back(label("Nothing to ferment: add malt, extract or sugar."));
  }
  if (!(recipe.doubleValue(keys::PreBoilWortVolume) > 0 &&
        recipe.doubleValue(keys::FinalWortVolume) > 0)) {
    lacks.push_back(label("Nothing to boil: set the volumes before and after the boil."));
  }
  if (!yeasts || yeasts->empty()) {
    lacks.push_back(label("No yeast: this will not ferment."));
  }
  return lacks;
}

void writeRecipe(Sheet& sheet, const PlistDictionary& recipe) {
  sheet.title(titleAt(recipe, keys::RecipeTitle));
  const std::string type = wordAt(recipe, keys::MashType);
  sheet.remark((type.empty() ? "" : type + ", ") + percentAt(recipe, keys::MashEfficiency) + " " +
               label("mash efficiency") + ", " + minutesAt(recipe, keys::BoilDuration) + " " +
               label("boil"));
  for (const std::string& lack : lacksOf(recipe)) sheet.remark(lack);
  sheet.section(label("Prediction"), predictionTable(recipe));
  sheet.section(label("Volumes"), volumeTable(recipe));
  writeAdditions(sheet, recipe);
}

void writeAdditions(Sheet& sheet, const PlistDictionary& recipe) {
  sheet.section(label("Fermentables"), fermentableTable(recipe));
  sheet.section(label("Hops"), hopTable(recipe));
  sheet.section(label("Other ingredients"), otherTable(recipe));
  sheet.section(label("Yeast"), yeastTable(recipe));
  sheet.section(label("Water"), waterTable(recipe));
  sheet.section(label("Mash"), mashTable(recipe));
  sheet.section(label("Notes"), recipe.stringValue(keys::Notes));
}

}  // namespace zym::host
