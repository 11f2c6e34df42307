#pragma once

#include "tests/reference/PlainDocuments.h"

/// The calculations over plain structs: the oracle of the tests and the limit that the benchmarks
/// measure against. Shares no line with the library.
namespace zym::reference {

void recalculateRecipe(PlainRecipe& recipe, const PlainDefaults& user);
void recalculateBatch(PlainBatch& batch, const PlainDefaults& user);
void recalculateBatchCost(PlainBatch& batch);

}  // namespace zym::reference
