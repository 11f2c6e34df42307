#pragma once

#include <libxml/tree.h>

#include <memory>

#include "zymcore/interchange/xmlnodes/GDataXMLElement.h"

namespace zym {

template <class Wrapper>
std::shared_ptr<Wrapper> wrapped(_xmlNode* node, bool owns) {
  return std::make_shared<Wrapper>(GDataXMLNode::Key(), node, owns);
}

/// The declaration of a wrapper that is one.
inline xmlNs* namespaceIn(const GDataXMLNode& node) {
  return node.kind() == GDataXMLNodeKind::Namespace ? reinterpret_cast<xmlNs*>(node.XMLNode())
                                                    : nullptr;
}

}  // namespace zym
