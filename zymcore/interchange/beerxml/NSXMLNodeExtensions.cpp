#include "zymcore/interchange/beerxml/NSXMLNodeExtensions.h"

namespace zym {

std::optional<NSXMLNode> siblingWithName(std::optional<NSXMLNode> node,
                                         std::string_view name) noexcept {
  while (node && node->name() != name) node = node->nextSibling();
  return node;
}

}  // namespace zym
