#pragma once

#include "tests/reference/PlainDocuments.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym::reference {

/// What becomes of a given text or array that is empty. What is to be written is always left out.
enum class WhereEmpty { LeaveOut, KeepEmpty };

/// The plain struct as the library's document, with keys beside that no calculation knows.
[[nodiscard]] PlistDictionary documentOf(const PlainRecipe& recipe, WhereEmpty whereEmpty);
[[nodiscard]] PlistDictionary documentOf(const PlainBatch& batch, WhereEmpty whereEmpty);

/// Every place where two documents differ, for a person to read; empty where they don't.
[[nodiscard]] std::string differences(const PlistDictionary& expected,
                                      const PlistDictionary& actual);

}  // namespace zym::reference
