#include "tests/reference/RandomDocuments.h"
#include "tests/reference/Recalculation.h"
#include "tests/support/Defaults.h"
#include "tests/support/Test.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/documents/SafeJSON.h"

namespace zym {
namespace {

class Reference : public testing::WithDefaults {
 protected:
  using Recalculate = void (*)(PlistDictionary&);
  /// Both work on the same document; and a second time changes nothing.
  static void compare(PlistDictionary document, Recalculate library, auto reference) {
    PlistDictionary expected = document;
    reference(expected);
    for (int i = 0; i < 2; ++i) {
      library(document);
      if (document == expected) continue;
      constexpr unsigned readable = 1;
      ASSERT_EQ(safeDataWithJSONObject_options(document, readable),
                safeDataWithJSONObject_options(expected, readable));
    }
  }
  reference::RandomDocuments random{20};
};

TEST_F(Reference, RecipesAgreeToTheLastDigit) {
  for (int i = 0; i < 5000 && !HasFailure(); ++i) {
    const PlistDictionary user = random.defaults();
    defaults().setArguments(user);
    compare(random.recipe(), ZYMBeerCalculations::recalculateBeerRecipe,
            [&](PlistDictionary& recipe) { reference::recalculateRecipe(recipe, user); });
  }
}

TEST_F(Reference, BatchesAgreeToTheLastDigit) {
  for (int i = 0; i < 3000 && !HasFailure(); ++i) {
    const PlistDictionary user = random.defaults();
    defaults().setArguments(user);
    const PlistDictionary batch = random.batch();
    compare(batch, ZYMBeerCalculations::recalculateBatch,
            [&](PlistDictionary& b) { reference::recalculateBatch(b, user); });
    compare(batch, ZYMBeerCalculations::recalculateBatchCost, reference::recalculateBatchCost);
  }
}

}  // namespace
}  // namespace zym
