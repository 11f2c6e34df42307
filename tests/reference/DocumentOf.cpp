#include "tests/reference/DocumentOf.h"

#include <algorithm>

#include "tests/reference/PlainFields.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym::reference {
namespace {

class Converter {
 public:
  explicit Converter(WhereEmpty whereEmpty) : keepEmpty_(whereEmpty == WhereEmpty::KeepEmpty) {}

  PlistDictionary operator()(const PlainAllocation& drawn) const {
    PlistDictionary result;
    given(result, drawn, allocationGiven);
    return result;
  }
  PlistDictionary operator()(const PlainFermentable& row) const {
    PlistDictionary result = addition(row);
    result.set(keys::Moisture, "4.0");
    result.set(keys::MustBeMashed, "1");
    given(result, row, fermentableGiven);
    written(result, row, fermentableWritten);
    return result;
  }
  PlistDictionary operator()(const PlainHop& row) const {
    PlistDictionary result = addition(row);
    given(result, row, hopGiven);
    written(result, row, hopWritten);
    return result;
  }
  PlistDictionary operator()(const PlainOther& row) const {
    PlistDictionary result = addition(row);
    given(result, row, otherGiven);
    return result;
  }
  PlistDictionary operator()(const PlainYeast& row) const {
    PlistDictionary result = addition(row);
    given(result, row, yeastGiven);
    return result;
  }
  PlistDictionary operator()(const PlainStep& step) const {
    PlistDictionary result{{keys::Duration, "60"}};
    given(result, step, stepGiven);
    return result;
  }
  PlistDictionary operator()(const PlainRecipe& recipe) const {
    PlistDictionary result = beside();
    given(result, recipe, recipeGiven);
    rows(result, keys::FermentableIngredients, recipe.fermentables);
    rows(result, keys::HopIngredients, recipe.hops);
    rows(result, keys::OtherIngredients, recipe.others);
    rows(result, keys::YeastIngredients, recipe.yeasts);
    PlistDictionary schedule{{keys::ScheduleName, "Single"}};
    rows(schedule, keys::Steps, recipe.steps);
    if (keepEmpty_ || !recipe.steps.empty()) result.set(keys::MashSchedule, schedule);
    written(result, recipe, recipeWritten);
    return result;
  }
  PlistDictionary operator()(const PlainBatch& batch) const {
    PlistDictionary actuals{{keys::FermentationTemperature, "18.0"}};
    given(actuals, batch.actuals, actualsGiven);
    written(actuals, batch.actuals, actualsWritten);
    PlistDictionary result{{keys::BatchTitle, "Batch 1"}};
    given(result, batch, batchGiven);
    result.set(keys::ModifiedRecipe, (*this)(batch.recipe));
    result.set(keys::Actuals, actuals);
    written(result, batch, batchWritten);
    return result;
  }

 private:
  // What else there is in a recipe.
  static PlistDictionary beside() {
    PlistDictionary result{{keys::UUID, "0E984725-C51C-4BF4-9960-E1C80E27ABA0"},
                           {keys::RecipeTitle, "Ordinary"},
                           {keys::DateLastModified, NSDate()},
                           {keys::StyleUUID, "16FD2706-8BAF-433B-82EB-8C7FADA847DA"},
                           {keys::StyleGuidelinesSource, "1.000000"},
                           {keys::MashType, "Full Mash"},
                           {keys::BoilDuration, "60"},
                           {keys::WaterProfileUsed, "Burton"},
                           {keys::MashpH, "5.2"},
                           {keys::Acid, "Unadjusted"},
                           {keys::FermentationTemperature, "18.0"},
                           {keys::Carbonation, "Nothing"},
                           {keys::CarbonationVolumes, "0.0"},
                           {keys::Conditioning, "Lagered for 4 weeks"},
                           {keys::Notes, "Keeps well."}};
    for (const KeyName salt :
         {keys::MgSO4, keys::CaCO3, keys::CaSO4, keys::NaCl, keys::CaCl2, keys::NaHCO3,
          keys::MgSO4InGrammes, keys::CaCO3InGrammes, keys::CaSO4InGrammes, keys::NaClInGrammes,
          keys::CaCl2InGrammes, keys::NaHCO3InGrammes}) {
      result.set(salt, "0.0");
    }
    return result;
  }

  template <class Row, std::size_t n>
  void given(PlistDictionary& to, const Row& row, const Field<Row> (&fields)[n]) const {
    for (const Field<Row>& field : fields) {
      const std::string& text = row.*field.text;
      if (keepEmpty_ || !text.empty()) to.set(field.key, text);
    }
  }
  template <class Row, std::size_t n>
  void written(PlistDictionary& to, const Row& row, const Field<Row> (&fields)[n]) const {
    for (const Field<Row>& field : fields) {
      const std::string& text = row.*field.text;
      if (!text.empty()) to.set(field.key, text);
    }
  }
  template <class Row>
  void rows(PlistDictionary& to, KeyName key, const std::vector<Row>& rows) const {
    if (rows.empty() && !keepEmpty_) return;
    PlistArray array;
    for (const Row& row : rows) array.append((*this)(row));
    to.set(key, array);
  }
  template <class Row>
  PlistDictionary addition(const Row& row) const {
    PlistDictionary result{{keys::UUID, "6F9619FF-8B86-4D01-B42D-00CF4FC964FF"},
                           {keys::DateLastModified, NSDate()},
                           {keys::Description, "Malted, kilned or grown with care, as bought."}};
    rows(result, keys::Batches, row.stock);
    return result;
  }

  bool keepEmpty_;
};

void compare(const PlistValue* expected, const PlistValue* actual, const std::string& path,
             std::string& result);

void compare(const PlistDictionary& expected, const PlistDictionary& actual,
             const std::string& path, std::string& result) {
  const auto at = [&](const PlistEntry& entry) {
    return path + "/" + std::string(entry.key.text());
  };
  for (const PlistEntry& entry : expected) {
    compare(&entry.value, actual.find(entry.key), at(entry), result);
  }
  for (const PlistEntry& entry : actual) {
    if (!expected.contains(entry.key)) compare(nullptr, &entry.value, at(entry), result);
  }
}

std::string described(const PlistValue* value) {
  if (!value) return "nothing";
  return value->string() ? '"' + *value->string() + '"' : value->className();
}

void compare(const PlistValue* expected, const PlistValue* actual, const std::string& path,
             std::string& result) {
  if (expected && actual && *expected == *actual) return;
  if (expected && actual && expected->dictionary() && actual->dictionary()) {
    compare(*expected->dictionary(), *actual->dictionary(), path, result);
  } else if (expected && actual && expected->array() && actual->array()) {
    const PlistArray& a = *expected->array();
    const PlistArray& b = *actual->array();
    for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
      compare(a.find(i), b.find(i), path + "/" + std::to_string(i), result);
    }
  } else {
    result += path + ": " + described(expected) + " expected, not " + described(actual) + "\n";
  }
}

}  // namespace

PlistDictionary documentOf(const PlainRecipe& recipe, WhereEmpty whereEmpty) {
  return Converter(whereEmpty)(recipe);
}

PlistDictionary documentOf(const PlainBatch& batch, WhereEmpty whereEmpty) {
  return Converter(whereEmpty)(batch);
}

std::string differences(const PlistDictionary& expected, const PlistDictionary& actual) {
  std::string result;
  compare(expected, actual, "", result);
  return result;
}

}  // namespace zym::reference
