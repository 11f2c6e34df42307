#include "app/commands/Additions.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "app/sheets/Figures.h"
#include "app/terminal/Faults.h"
#include "app/terminal/Text.h"
#include "app/values/Names.h"
#include "app/values/ValueForms.h"
#include "zymcore/documents/LocalizedNumbers.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/library/recipes/ZYMRecipes.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NumberText.h"

namespace zym::host {
namespace {

/// How a kind of ingredient stands in a recipe.
struct AdditionForm {
  std::string_view kind;
  KeyName rows;
  PlistValue (*toStorage)(const std::string& typed);
  std::string (*amountOf)(const PlistDictionary& addition);
  words::Vocabulary whens;
  std::string_view usualWhen;
};

std::string weightOf(const PlistDictionary& addition) {
  return weightAt(addition, keys::Amount);
}
std::string hopWeightOf(const PlistDictionary& addition) {
  return hopWeightAt(addition, keys::Amount);
}

constexpr AdditionForm forms[] = {
    {"fermentable", keys::FermentableIngredients, take::weight, weightOf, words::fermentableWhen,
     words::StartOfBoil},
    {"hop", keys::HopIngredients, take::hopWeight, hopWeightOf, words::hopWhen, words::AllOfBoil},
    {"other", keys::OtherIngredients, take::weight, weightOf, words::otherWhen, words::InBoil},
    {"yeast", keys::YeastIngredients, nullptr, yeastAmount, {}, {}},
};

const AdditionForm& formOf(const LibraryKind& kind) {
  const auto found = std::ranges::find(forms, kind.singular, &AdditionForm::kind);
  if (found == std::end(forms)) {
    throw UsageError(label("a recipe takes a fermentable, a hop, an other or a yeast, no %1",
                           {label(kind.singular)}));
  }
  return *found;
}

bool startsWithDigit(std::string_view text) {
  return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

/// The time that the table of hop times has for so many minutes before the end of the boil: the
/// nearest, the shorter of two.
std::string_view whenForMinutes(double minutes, const PlistDictionary& recipe) {
  if (minutes == recipe.doubleValue(keys::BoilDuration)) {
    for (const std::string_view when : words::hopWhen) {
      if (startsWithDigit(when) && doubleValue(when) == minutes) return when;
    }
    return words::AllOfBoil;
  }
  std::string_view best = words::AtTurnOff;
  double least = minutes;
  for (const std::string_view when : words::hopWhen) {
    if (!startsWithDigit(when)) continue;
    const double difference = std::abs(doubleValue(when) - minutes);
    if (difference <= least) {
      least = difference;
      best = when;
    }
  }
  return best;
}

std::string_view whenOf(const AdditionForm& form, const std::string& typed,
                        const PlistDictionary& recipe) {
  if (typed.empty()) return form.usualWhen;
  if (form.kind == "hop" && startsWithDigit(typed)) {
    return whenForMinutes(floatValueWithLocalizedValue(typed), recipe);
  }
  return take::wordOf(form.whens, typed);
}

void setYeastAmount(PlistDictionary& addition, const std::string& typed) {
  const std::size_t unit = typed.find_first_not_of("0123456789., ");
  const bool isPacks =
      unit == std::string::npos || uppercaseString(typed.substr(unit)).starts_with("PACK");
  addition.set(keys::YeastAmountType, isPacks ? words::CommercialPack : words::Slurry);
  addition.set(keys::Amount, isPacks ? take::minutes(typed) : take::volume(typed));
  addition.set(keys::UsageNote, "");
}

std::string inWords(const PlistDictionary& addition, const AdditionForm& form,
                    const LibraryKind& kind) {
  std::string words = form.amountOf(addition) + " " + textAt(addition, kind.nameKey());
  const std::string when = wordAt(addition, keys::When);
  return when.empty() ? words : words + ", " + when;
}

}  // namespace

std::string addIngredient(PlistDictionary& recipe, const LibraryKind& kind, const std::string& name,
                          const Addition& given) {
  const AdditionForm& form = formOf(kind);
  PlistDictionary addition = recordNamed(kind, name);
  addition.remove(keys::Description);
  if (form.toStorage) {
    addition.set(keys::Amount, form.toStorage(given.amount));
    addition.set(keys::When, whenOf(form, given.when, recipe));
  } else {
    setYeastAmount(addition, given.amount);
  }
  if (form.kind == "hop") {
    const std::string_view hopForm =
        given.form.empty() ? words::LooseWholeHops : take::wordOf(words::hopForms, given.form);
    if (!given.form.empty() || !addition.contains(keys::Form)) addition.set(keys::Form, hopForm);
  } else if (!given.form.empty()) {
    throw UsageError(label("only hops have a form"));
  }
  addition.set(keys::IngredientDeducted, "0");

  PlistArray additions = recipe.array(form.rows) ? *recipe.array(form.rows) : PlistArray();
  additions.append(addition);
  recipe.set(form.rows, std::move(additions));
  ZYMRecipes::validateIngredientsInRecipe(recipe);
  const PlistArray& stored = *recipe.array(form.rows);
  return inWords(*stored.find(stored.size() - 1)->dictionary(), form, kind);
}

std::string dropIngredient(PlistDictionary& recipe, const LibraryKind& kind,
                           const std::string& name) {
  const AdditionForm& form = formOf(kind);
  PlistArray* additions = recipe.editArray(form.rows);
  std::vector<std::string> numbers;
  std::vector<Named> candidates;
  std::vector<std::size_t> positions;
  for (std::size_t i = 0; additions && i < additions->size(); ++i) {
    if (additions->find(i)->dictionary()) positions.push_back(i);
  }
  for (std::size_t i = 0; i < positions.size(); ++i) numbers.push_back(std::to_string(i + 1));
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const PlistDictionary& addition = *additions->find(positions[i])->dictionary();
    candidates.push_back({addition.stringValue(kind.nameKey()), numbers[i]});
  }
  const std::size_t position = positions[positionMeant(name, candidates, kind.singular)];
  const std::string dropped = inWords(*additions->find(position)->dictionary(), form, kind);
  additions->remove(position);
  ZYMRecipes::validateIngredientsInRecipe(recipe);
  return dropped;
}

}  // namespace zym::host
