#include "zymcore/documents/Vocabularies.h"
#include "zymcore/stock/ZYMAvailabilitiesEngine.h"
#include "zymcore/stock/internal/Lots.h"

namespace zym {
namespace {

/// So much may be missing of what is still taken for enough.
constexpr double tolerance = 0.5;

/// Takes from the lots until there is enough; answers what is then still wanted.
double takeSoonestFirst(PlistDictionary& ingredient, double wanted) {
  for (PlistDictionary* lot : lots::soonestFirst(ingredient)) {
    if (!(wanted > 0)) break;
    const double inStock = lot->doubleValue(keys::AmountInStock);
    const bool isEnough = inStock > wanted;
    lot->setNumber(keys::Amount, isEnough ? wanted : inStock);
    wanted = isEnough ? 0 : wanted - inStock;
  }
  return wanted;
}

// The means are by all that was wanted: what no lot gave, up to the tolerance, dilutes them.
void blend(PlistDictionary& fermentable, double notGiven) {
  double amount = notGiven;
  double extract = 0;
  double colour = 0;
  for (const PlistDictionary& lot : fermentable.rows(keys::Batches)) {
    const double taken = lot.doubleValue(keys::Amount);
    amount += taken;
    extract += lot.doubleValue(keys::Extract) * taken;
    colour += lot.doubleValue(keys::Color) * taken;
  }
  fermentable.setNumber(keys::Extract, amount > 0 ? extract / amount : 0);
  fermentable.setNumber(keys::Color, amount > 0 ? colour / amount : 0);
}

void allotFermentable(PlistDictionary& fermentable) {
  blend(fermentable, takeSoonestFirst(fermentable, fermentable.doubleValue(keys::Amount)));
}

void allotOther(PlistDictionary& other) {
  (void)takeSoonestFirst(other, other.doubleValue(keys::Amount));
}

void allotYeast(PlistDictionary& yeast) {
  const bool isSlurry = yeast.stringValue(keys::YeastAmountType) == words::Slurry;
  (void)takeSoonestFirst(yeast, isSlurry ? 0 : yeast.doubleValue(keys::Amount));
}

struct Kind {
  std::string_view ingredientType;
  void (*allot)(PlistDictionary& ingredient);
};
constexpr Kind kinds[] = {
    {words::Fermentable, allotFermentable},
    {words::Other, allotOther},
    {words::Yeast, allotYeast},
};

const Kind* kindOf(std::string_view ingredientType) {
  for (const Kind& kind : kinds) {
    if (kind.ingredientType == ingredientType) return &kind;
  }
  return nullptr;
}

}  // namespace

void ZYMAvailabilitiesEngine::createNewBatchesKeyForIngredient_withInventoryEntry(
    PlistDictionary& ingredient, const PlistDictionary& item) {
  if (lots::isDeducted(ingredient)) return;
  ingredient.remove(keys::Batches);
  const std::string_view type = item.stringValue(keys::IngredientType);
  const Kind* kind = kindOf(type);
  if (kind &&
      ingredient.doubleValue(keys::Amount) > item.doubleValue(keys::AmountInStock) + tolerance) {
    return;
  }
  ingredient.setOrRemove(keys::Batches, item.find(keys::Batches));
  for (PlistDictionary& lot : ingredient.editRows(keys::Batches)) lot.set(keys::Amount, "0.0");
  if (kind) {
    kind->allot(ingredient);
  } else if (type == words::Hop) {
    allotHop(ingredient, item);
  }
}

}  // namespace zym
