#pragma once

#include <sstream>

#include "tests/support/Test.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// A row of a form is "attribute key given>stored read written". Alone, what is given is stored.
/// Read is what the attribute becomes of a record without the key: a text, or absent, kept, a new
/// uuid or now. Written is what the record has for an object without the attribute: nothing, where
/// nothing is said. A form whose records have children names their key. ('' is no text. An amount
/// in stock is the sum of the lots, and there are none.)
inline constexpr const char* formTexts = R"(
ZYMFermentableEntity: isGrain IsGrain 1 kept | mustBeMashed MustBeMashed 0 kept |
  color Color 3.5>3.500000 0.000000 | moisture Moisture 4>4.000000 0.000000 |
  extract Extract 80.1>80.099998 0.000000 | uuid UUID U absent |
  dateLastModified DateLastModified date now | ingredientDescription Description d '' |
  name Ingredient n '' ''
ZYMHopEntity: alpha Alpha 4.5>4.500000 0.000000 | uuid UUID U absent |
  dateLastModified DateLastModified date now | ingredientDescription Description d '' |
  name Variety n '' ''
ZYMOtherIngredientEntity: uuid UUID U absent | dateLastModified DateLastModified date now |
  ingredientDescription Description d '' | name Ingredient n '' ''
ZYMYeastEntity: beerType BeerType Lager Ale | yeastType YeastType Dry Liquid |
  attenuation Attenuation 74>74.000000 0.000000 | uuid UUID U absent |
  dateLastModified DateLastModified date now | ingredientDescription Description d '' |
  name Name n '' ''
ZYMWaterEntity: uuid UUID U new | name Name n absent '' |
  dateLastModified DateLastModified date now | calcium Calcium 1>1.000000 0.000000 |
  bicarbonate Carbonate 2>2.000000 0.000000 | chloride Chloride 3>3.000000 0.000000 |
  magnesium Magnesium 4>4.000000 0.000000 | sodium Sodium 5>5.000000 0.000000 |
  sulfate Sulfate 6>6.000000 0.000000 | notes Notes t '' ''
ZYMSupplierEntity: uuid UUID U new | name Name n '' '' |
  dateLastModified DateLastModified date now | homepage Homepage h absent |
  email Email e absent | location Location l absent | phone Phone p absent
ZYMProfileEntity: uuid UUID U absent | name ProfileName n '' '' |
  dateLastModified DateLastModified date now |
  preBoilVolume PreBoilVolume 1>1.000000 0.000000 |
  postBoilVolume PostBoilVolume 2>2.000000 0.000000 |
  volumeTransferred VolumeToFermenter 3>3.000000 0.000000 |
  waterAdded VolumeWaterAdded 4>4.000000 0.000000 |
  volumeAtPitching VolumeAtPitching 5>5.000000 0.000000 |
  finishedVolume FinishedBatchVolume 6>6.000000 0.000000 |
  recipeType PreferredRecipeType t absent | mashScheduleUuid PreferredMashSchedule m absent |
  baseWaterUuid PreferredBaseWaterUUID b absent first |
  targetWaterUuid PreferredTargetWaterUUID w absent first |
  spargeMethod PreferredSpargeMethod s absent |
  mtThermalMass MTThermalMass 7>7.000000 0.000000 |
  waterGrainRatio WaterGrainRatio 8>8.000000 0.000000 |
  extractEfficiency ExtractEfficiency 9>9.000000 0.000000 |
  boilDuration BoilDuration 90.7>90 0
ZYMStyleEntity: uuid UUID U new | dateLastModified DateLastModified date now |
  name Name n '' ''
ZYMStyleCategoryEntity: uuid UUID U new | name Name n '' '' |
  dateLastModified DateLastModified date now | category Category c absent |
  type Type t absent | maxABV MaxABV 1 absent | minABV MinABV 2 absent |
  maxColor MaxColor 3 absent | minColor MinColor 4 absent | maxFG MaxFG 5 absent |
  minFG MinFG 6 absent | maxIBU MaxIBU 7 absent | minIBU MinIBU 8 absent |
  maxOG MaxOG 9 absent | minOG MinOG 0 absent
ZYMMashScheduleEntity with Steps: uuid UUID U new |
  dateLastModified DateLastModified date now | name ScheduleName n '' ''
ZYMMashStepEntity: name StepType n '' '' | uuid UUID U new new | duration Duration 15 kept |
  temperature Temperature 66 kept
ZYMInventoryEntity with Batches: uuid UUID U kept |
  dateLastModified DateLastModified date now | name Ingredient '' '' '' |
  amountInStock AmountInStock 9>0.000000 0.000000 |
  ingredientType IngredientType Hop Fermentable
ZYMInventoryBatchEntity: ingredientType IngredientType Hop kept |
  amountInStock AmountInStock 9 kept | cost Cost 1.5 0.0 | name BatchName n '' '' |
  uuid UUID U kept | deliveredOn DeliveredOn date kept | expiresOn ExpiresOn date kept |
  extract Extract 1 kept | color Color 2 kept | alpha Alpha 3 kept | hopForm Form f kept
ZYMOrderEntity with OrderItems: uuid UUID U new | name Name n '' '' |
  dateLastModified DateLastModified date now | orderDate OrderDate date absent |
  deliveryDate DeliveryDate date absent | notes Notes t '' '' |
  supplierUuid SupplierUUID s absent
ZYMOrderItemEntity: uuid UUID U new | dateLastModified DateLastModified date now |
  amount Amount 2.5>2.500000 0.000000 | ingredientUuid IngredientUUID i absent |
  status Status s absent | ingredientType IngredientType Hop kept | cost Cost 1.5 0.0 |
  extract Extract 1 kept | color Color 2 kept | alpha Alpha 3 kept | hopForm Form f kept
ZYMGroupEntity with KeysOfContents: uuid UUID U absent | type Type t absent |
  dateLastModified DateLastModified date now | name GroupName n '' ''
ZYMRecipeEntity: uuid UUID U kept | name RecipeTitle n kept '' |
  dateLastModified DateLastModified date now
ZYMRecipeBatchEntity: uuid UUID U kept | name BatchTitle n kept '' |
  dateBrewed DateBrewed date kept | dateLastModified DateLastModified date now)";

struct Row {
  std::string attribute, key, given, stored, read;
  std::optional<std::string> written;
};
struct Form {
  std::string entity;
  bool hasChildren = false;
  std::vector<Row> rows;
};

inline std::vector<Form> readForms() {
  std::vector<Form> forms;
  std::istringstream words(formTexts);
  std::vector<std::string> row;
  const auto endRow = [&] {
    if (row.empty()) return;
    for (std::string& word : row) word = word == "''" ? "" : word;
    const std::size_t change = row[2].find('>');
    forms.back().rows.push_back({row[0], row[1], row[2].substr(0, change),
                                 row[2].substr(change == row[2].npos ? 0 : change + 1), row[3],
                                 row.size() > 4 ? std::optional(row[4]) : std::nullopt});
    row.clear();
  };
  for (std::string word; words >> word;) {
    if (word.starts_with("ZYM")) {
      endRow();
      forms.push_back({word.substr(0, word.find(':')), !word.ends_with(':'), {}});
      while (!word.ends_with(':')) words >> word;
    } else if (word == "|") {
      endRow();
    } else {
      row.push_back(word);
    }
  }
  endRow();
  return forms;
}
inline const std::vector<Form> forms = readForms();

inline const NSDate day = NSDate::dateWithTimeIntervalSince1970(1e9 + 0.1234567);

inline PlistValue valueOf(const std::string& text) {
  return text == "date" ? PlistValue(day) : PlistValue(text);
}

}  // namespace zym
