#pragma once

#include <libxml/tree.h>

#include <memory>
#include <string_view>

#include "zymcore/platform/values/NSError.h"

namespace zym::xmlnodes {

struct DocumentFreed {
  void operator()(xmlDoc* document) const;
};
/// A document with the cache of its texts.
using OwnDocument = std::unique_ptr<xmlDoc, DocumentFreed>;

/// The document in the bytes, within the bounds that `GDataXMLDocument` names.
[[nodiscard]] OwnDocument parsed(std::string_view bytes, NSError* error);
/// The document with a cache of its own; null for null.
[[nodiscard]] OwnDocument owned(xmlDoc* document);

}  // namespace zym::xmlnodes
