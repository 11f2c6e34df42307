#include "zymcore/platform/formats/NSXMLNode.h"

#include "zymcore/platform/formats/internal/XMLTree.h"

namespace zym {

std::string_view NSXMLNode::name() const noexcept {
  return tree_->names[tree_->elements[element_].name];
}

std::string_view NSXMLNode::stringValue() const noexcept {
  const XMLTree::Element& element = tree_->elements[element_];
  return std::string_view(tree_->text)
      .substr(element.textStart, element.textEnd - element.textStart);
}

NSXMLNodes NSXMLNode::children() const noexcept {
  if (!tree_->elements[element_].hasChildren) return NSXMLNodes(std::nullopt);
  return NSXMLNodes(NSXMLNode(*tree_, element_ + 1));
}

std::optional<NSXMLNode> NSXMLNode::nextSibling() const noexcept {
  const std::uint32_t next = tree_->elements[element_].nextSibling;
  if (next == XMLTree::none) return std::nullopt;
  return NSXMLNode(*tree_, next);
}

}  // namespace zym
