#pragma once

#include <string_view>

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

/// What an update of a recipe or batch goes by.
struct DocumentUpdate {
  std::string_view entityName;
  // Of the undo step.
  std::string_view actionName;
  std::string_view comment;

  /// Stores a document, as one undo step, under the one object with its "UUID", unless it equals
  /// what is stored there or there is none. Unless `preservingDLM` its "DateLastModified" becomes
  /// the present time, in `document` as well. Throws `NSInvalidArgumentException` when the stored
  /// document can't be read or this one is too deep to be stored.
  void apply(PlistDictionary& document, bool preservingDLM) const;
};

}  // namespace zym
