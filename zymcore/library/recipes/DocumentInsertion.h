#pragma once

#include <string_view>

#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

class ZYMDocumentEntity;

/// A new recipe or batch in the main context, with the document. A document too deep to be stored
/// throws `NSInvalidArgumentException` and leaves no object behind.
ZYMDocumentEntity& insertDocument(std::string_view entityName, PlistDictionary& document);

/// Adds the recipe to the group and moves the group's date, if there is such a group; the library
/// is none.
void joinGroup(ZYMDocumentEntity& recipe, std::string_view groupUUID);

}  // namespace zym
