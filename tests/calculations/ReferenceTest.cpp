#include <gtest/gtest.h>

#include "tests/reference/DocumentOf.h"
#include "tests/reference/PlainRecalculation.h"
#include "tests/reference/RandomDocuments.h"
#include "tests/support/Defaults.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {
namespace {

using reference::differences;
using reference::documentOf;
using reference::WhereEmpty;

class Reference : public testing::WithDefaults {
 protected:
  static reference::PlainDefaults chooseDefaults(reference::RandomDocuments& random) {
    const auto [values, plain] = random.defaults();
    defaults().setArguments(values);
    return plain;
  }
  static WhereEmpty whereEmpty(int document) {
    return document % 2 == 0 ? WhereEmpty::LeaveOut : WhereEmpty::KeepEmpty;
  }
};

TEST_F(Reference, RecipesAgreeToTheLastDigit) {
  reference::RandomDocuments random(20);
  for (int i = 0; i < 5000; ++i) {
    const reference::PlainDefaults user = chooseDefaults(random);
    reference::PlainRecipe plain = random.recipe();
    PlistDictionary recipe = documentOf(plain, whereEmpty(i));

    ZYMBeerCalculations::recalculateBeerRecipe(recipe);
    reference::recalculateRecipe(plain, user);
    const std::string wrong = differences(documentOf(plain, whereEmpty(i)), recipe);
    ASSERT_EQ(wrong, "") << "recipe " << i;
  }
}

TEST_F(Reference, BatchesAgreeToTheLastDigit) {
  reference::RandomDocuments random(21);
  for (int i = 0; i < 3000; ++i) {
    const reference::PlainDefaults user = chooseDefaults(random);
    reference::PlainBatch plain = random.batch();
    PlistDictionary batch = documentOf(plain, whereEmpty(i));

    ZYMBeerCalculations::recalculateBatch(batch);
    reference::recalculateBatch(plain, user);
    std::string wrong = differences(documentOf(plain, whereEmpty(i)), batch);
    ASSERT_EQ(wrong, "") << "batch " << i;

    ZYMBeerCalculations::recalculateBatchCost(batch);
    reference::recalculateBatchCost(plain);
    wrong = differences(documentOf(plain, whereEmpty(i)), batch);
    ASSERT_EQ(wrong, "") << "cost of batch " << i;
  }
}

}  // namespace
}  // namespace zym
