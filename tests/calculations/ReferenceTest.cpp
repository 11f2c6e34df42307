#include <gtest/gtest.h>

#include "tests/reference/RandomDocuments.h"
#include "tests/reference/Recalculation.h"
#include "tests/support/Defaults.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"

namespace zym {
namespace {

class Reference : public testing::WithDefaults {
 protected:
  using Recalculate = void (*)(PlistDictionary&);
  /// Both have worked on the same document; what differs afterwards.
  static std::string differences(PlistDictionary document, Recalculate library, auto reference) {
    PlistDictionary expected = document;
    library(document);
    reference(expected);
    // A second time changes nothing.
    PlistDictionary again = document;
    library(again);
    return reference::differences(expected, document) + reference::differences(document, again);
  }
  reference::RandomDocuments random{20};
};

TEST_F(Reference, RecipesAgreeToTheLastDigit) {
  for (int i = 0; i < 5000; ++i) {
    const PlistDictionary user = random.defaults();
    defaults().setArguments(user);
    ASSERT_EQ(differences(random.recipe(), ZYMBeerCalculations::recalculateBeerRecipe,
                          [&](PlistDictionary& r) { reference::recalculateRecipe(r, user); }),
              "")
        << "recipe " << i;
  }
}

TEST_F(Reference, BatchesAgreeToTheLastDigit) {
  for (int i = 0; i < 3000; ++i) {
    const PlistDictionary user = random.defaults();
    defaults().setArguments(user);
    const PlistDictionary batch = random.batch();
    ASSERT_EQ(differences(batch, ZYMBeerCalculations::recalculateBatch,
                          [&](PlistDictionary& b) { reference::recalculateBatch(b, user); }),
              "")
        << "batch " << i;
    ASSERT_EQ(differences(batch, ZYMBeerCalculations::recalculateBatchCost,
                          reference::recalculateBatchCost),
              "")
        << "cost of batch " << i;
  }
}

}  // namespace
}  // namespace zym
