#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <vector>

#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym {
namespace {

struct Sorted {
  std::int64_t whenIndex;
  double amount;
  PlistValue ingredient;
};

// What is no number counts as it will once it is stored as text.
double comparableAmount(const PlistDictionary& ingredient) {
  const double amount = ingredient.doubleValue(keys::Amount);
  return std::isnan(amount) ? 0 : amount;
}

Sorted sortedBy(PlistValue ingredient, words::Vocabulary whens) {
  PlistDictionary* row = ingredient.editDictionary();
  if (!row) return {NSNotFound, 0, std::move(ingredient)};
  // Sorting has these two keys to itself: an addition comes out without them.
  row->remove(keys::Amount2);
  row->remove(keys::WhenIndex);
  const std::int64_t whenIndex = words::positionOf(row->stringValue(keys::When), whens);
  const double amount = comparableAmount(*row);
  return {whenIndex, amount, std::move(ingredient)};
}

bool standsBefore(const Sorted& a, const Sorted& b) {
  return a.whenIndex != b.whenIndex ? a.whenIndex < b.whenIndex : a.amount > b.amount;
}

void sortUnder(KeyName key, words::Vocabulary whens, PlistDictionary& recipe) {
  if (PlistArray* ingredients = recipe.editArray(key)) {
    ZYMRecipes::sortIngredient_withWhens(*ingredients, whens);
  }
}

class HopTimes {
 public:
  explicit HopTimes(const PlistDictionary& recipe) : boil_(recipe.doubleValue(keys::BoilDuration)) {
    const PlistValue* boil = recipe.find(keys::BoilDuration);
    const bool isQuantity = boil && (boil->string() || boil->isNumber());
    for (std::size_t i = 0; i < times_.size(); ++i) {
      const bool isBoil = words::hopMinutes[i].empty();
      PlistValue minutes = isBoil && isQuantity ? *boil : isBoil ? "0" : words::hopMinutes[i];
      const double number = minutes.doubleValue();
      times_[i] = {std::move(minutes), number};
    }
  }

  /// Takes the addition forward to the first time that the boil has room for.
  void fit(PlistDictionary& hop) const {
    const std::int64_t found = words::positionOf(hop.stringValue(keys::When), words::hopWhen);
    std::size_t position = found == NSNotFound ? 0 : static_cast<std::size_t>(found);
    while (position + 1 < times_.size() && times_[position].number > boil_) ++position;
    hop.set(keys::When, words::hopWhen[position]);
    hop.set(keys::Minutes, times_[position].minutes);
  }

 private:
  struct Time {
    PlistValue minutes = 0;
    double number = 0;
  };
  double boil_;
  std::array<Time, std::size(words::hopMinutes)> times_;
};

}  // namespace

void ZYMRecipes::sortIngredientsInRecipe(PlistDictionary& recipe) {
  sortUnder(keys::FermentableIngredients, words::fermentableWhen, recipe);
  sortUnder(keys::HopIngredients, words::hopWhen, recipe);
  sortUnder(keys::OtherIngredients, words::otherWhen, recipe);
}

void ZYMRecipes::sortIngredient_withWhens(PlistArray& ingredients,
                                          std::span<const std::string_view> whens) {
  std::vector<PlistValue>& values = ingredients.editAll();
  std::vector<Sorted> sorted;
  sorted.reserve(values.size());
  for (PlistValue& value : values) sorted.push_back(sortedBy(std::move(value), whens));
  std::stable_sort(sorted.begin(), sorted.end(), standsBefore);
  std::transform(sorted.begin(), sorted.end(), values.begin(),
                 [](Sorted& each) { return std::move(each.ingredient); });
}

void ZYMRecipes::validateIngredientsInRecipe(PlistDictionary& recipe) {
  validateFermentablesInRecipe(recipe);
  validateHopsInRecipe(recipe);
  validateOthersInRecipe(recipe);
}

void ZYMRecipes::validateFermentablesInRecipe(PlistDictionary& recipe) {
  double total = 0;
  for (PlistDictionary& fermentable : recipe.editRows(keys::FermentableIngredients)) {
    total += fermentable.doubleValue(keys::Amount);
    if (fermentable.boolValue(keys::IsGrain)) fermentable.set(keys::When, words::InMashSteeped);
  }
  for (PlistDictionary& fermentable : recipe.editRows(keys::FermentableIngredients)) {
    const double share = fermentable.doubleValue(keys::Amount) / total;
    fermentable.setNumber(keys::Percentage, total < 0.01 ? 0.0 : share * 100);
  }
}

void ZYMRecipes::validateHopsInRecipe(PlistDictionary& recipe) {
  const HopTimes times(recipe);
  for (PlistDictionary& hop : recipe.editRows(keys::HopIngredients)) times.fit(hop);
}

void ZYMRecipes::validateOthersInRecipe(PlistDictionary& /*recipe*/) {}

bool ZYMRecipes::removeZeroedIngredientsInRecipe(PlistDictionary& recipe) {
  return removeZeroedIngredientsInRecipe_withKey(recipe, keys::FermentableIngredients) ||
         removeZeroedIngredientsInRecipe_withKey(recipe, keys::HopIngredients) ||
         removeZeroedIngredientsInRecipe_withKey(recipe, keys::OtherIngredients);
}

bool ZYMRecipes::removeZeroedIngredientsInRecipe_withKey(PlistDictionary& recipe, KeyName key) {
  PlistArray* ingredients = recipe.editArray(key);
  if (!ingredients) return false;
  return std::erase_if(ingredients->editAll(), [](const PlistValue& value) {
           const PlistDictionary* ingredient = value.dictionary();
           return ingredient && ingredient->doubleValue(keys::Amount) < 0.05;
         }) > 0;
}

}  // namespace zym
