#include "zymcore/interchange/xmlnodes/GDataXMLNode.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdio>

#include "zymcore/interchange/xmlnodes/GDataXMLElement.h"
#include "zymcore/interchange/xmlnodes/internal/Wrapped.h"
#include "zymcore/interchange/xmlnodes/internal/XMLTexts.h"

namespace zym {

using namespace xmlnodes;

namespace {

struct BufferFreed {
  void operator()(xmlBuffer* buffer) const { xmlBufferFree(buffer); }
};

/// What is told of each type of libxml2's nodes.
struct KindOfType {
  xmlElementType type;
  GDataXMLNodeKind kind;
};
constexpr KindOfType kinds[] = {
    {XML_ELEMENT_NODE, GDataXMLNodeKind::Element},
    {XML_ATTRIBUTE_NODE, GDataXMLNodeKind::Attribute},
    {XML_NAMESPACE_DECL, GDataXMLNodeKind::Namespace},
    {XML_PI_NODE, GDataXMLNodeKind::ProcessingInstruction},
    {XML_XINCLUDE_START, GDataXMLNodeKind::ProcessingInstruction},
    {XML_XINCLUDE_END, GDataXMLNodeKind::ProcessingInstruction},
    {XML_COMMENT_NODE, GDataXMLNodeKind::Comment},
    {XML_TEXT_NODE, GDataXMLNodeKind::Text},
    {XML_CDATA_SECTION_NODE, GDataXMLNodeKind::Text},
    {XML_DTD_NODE, GDataXMLNodeKind::DTD},
    {XML_ENTITY_REF_NODE, GDataXMLNodeKind::Entity},
    {XML_ENTITY_NODE, GDataXMLNodeKind::Entity},
    {XML_ENTITY_DECL, GDataXMLNodeKind::Entity},
    {XML_ATTRIBUTE_DECL, GDataXMLNodeKind::AttributeDeclaration},
    {XML_ELEMENT_DECL, GDataXMLNodeKind::ElementDeclaration},
    {XML_NOTATION_NODE, GDataXMLNodeKind::Notation},
    {XML_DOCUMENT_NODE, GDataXMLNodeKind::Document},
    {XML_DOCUMENT_TYPE_NODE, GDataXMLNodeKind::Document},
    {XML_DOCUMENT_FRAG_NODE, GDataXMLNodeKind::Document},
    {XML_HTML_DOCUMENT_NODE, GDataXMLNodeKind::Document},
};

// A declaration begins as no node does; its type stands elsewhere.
xmlElementType typeOf(const xmlNode* node) {
  return node->type;
}

// Such a node has no children of its own, whatever stands in its place.
bool hasChildren(const xmlNode* node) {
  return node->type != XML_NAMESPACE_DECL && node->type != XML_ENTITY_REF_NODE;
}

xmlNode* firstChild(const xmlNode* node) {
  return node && hasChildren(node) ? node->children : nullptr;
}

xmlNs* namespaceOf(const xmlNode* node) {
  const bool hasOne = node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE;
  return hasOne ? node->ns : nullptr;
}

std::string trimmed(std::string text) {
  constexpr const char* blanks = " \t\r\n";
  text.erase(0, text.find_first_not_of(blanks));
  text.erase(text.find_last_not_of(blanks) + 1);
  return text;
}

}  // namespace

GDataXMLElement::Element GDataXMLNode::elementWithName(std::string_view name) {
  xmlInitParser();
  xmlNode* const node = xmlNewNode(nullptr, XMLText(name).get());
  return node ? wrapped<GDataXMLElement>(node, true) : nullptr;
}

GDataXMLElement::Element GDataXMLNode::elementWithName_stringValue(std::string_view name,
                                                                   std::string_view value) {
  const auto element = elementWithName(name);
  if (!element) return nullptr;
  xmlNode* const text = xmlNewText(XMLText(value).get());
  if (text && !xmlAddChild(element->XMLNode(), text)) {
    xmlFreeNode(text);
    return nullptr;
  }
  return element;
}

GDataXMLElement::Element GDataXMLNode::elementWithName_URI(std::string_view name,
                                                           std::string_view uri) {
  return elementWithName(fakeQualifiedName(uri, localNameForName(name)));
}

GDataXMLNode::Pointer GDataXMLNode::attributeWithName_stringValue(std::string_view name,
                                                                  std::string_view value) {
  xmlInitParser();
  xmlAttr* const attribute = xmlNewProp(nullptr, XMLText(name).get(), XMLText(value).get());
  return nodeConsumingXMLNode(reinterpret_cast<xmlNode*>(attribute));
}

GDataXMLNode::Pointer GDataXMLNode::attributeWithName_URI_stringValue(std::string_view name,
                                                                      std::string_view uri,
                                                                      std::string_view value) {
  return attributeWithName_stringValue(fakeQualifiedName(uri, localNameForName(name)), value);
}

GDataXMLNode::Pointer GDataXMLNode::textWithStringValue(std::string_view value) {
  xmlInitParser();
  return nodeConsumingXMLNode(xmlNewText(XMLText(value).get()));
}

GDataXMLNode::Pointer GDataXMLNode::namespaceWithName_stringValue(std::string_view name,
                                                                  std::string_view uri) {
  xmlInitParser();
  const XMLText prefix(name);
  xmlNs* const declared =
      xmlNewNs(nullptr, XMLText(uri).get(), name.empty() ? nullptr : prefix.get());
  return nodeConsumingXMLNode(reinterpret_cast<xmlNode*>(declared));
}

GDataXMLNode::Pointer GDataXMLNode::nodeConsumingXMLNode(_xmlNode* node) {
  if (!node) return nullptr;
  if (node->type == XML_ELEMENT_NODE) return wrapped<GDataXMLElement>(node, true);
  return wrapped<GDataXMLNode>(node, true);
}

GDataXMLNode::Pointer GDataXMLNode::nodeBorrowingXMLNode(_xmlNode* node) {
  if (!node) return nullptr;
  if (node->type == XML_ELEMENT_NODE) return wrapped<GDataXMLElement>(node, false);
  return wrapped<GDataXMLNode>(node, false);
}

std::string GDataXMLNode::localNameForName(std::string_view name) {
  const std::size_t colon = name.find(':');
  const bool hasBoth = colon != std::string_view::npos && colon + 1 < name.size();
  return std::string(hasBoth ? name.substr(colon + 1) : name);
}

std::optional<std::string> GDataXMLNode::prefixForName(std::string_view name) {
  const std::size_t colon = name.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  return std::string(name.substr(0, colon));
}

GDataXMLNode::~GDataXMLNode() {
  if (!xmlNode_ || !shouldFreeXMLNode_) return;
  // Attributes and declarations as well.
  xmlFreeNode(xmlNode_);
}

void GDataXMLNode::releaseCachedValues() {
  cachedName_.reset();
  cachedChildren_.reset();
}

std::string GDataXMLNode::stringValue() const {
  if (!xmlNode_) return {};
  if (xmlNode_->type == XML_NAMESPACE_DECL) {
    return stringOf(reinterpret_cast<const xmlNs*>(xmlNode_)->href);
  }
  return stringOf(OwnText(xmlNodeGetContent(xmlNode_)).get());
}

void GDataXMLNode::setStringValue(std::string_view value) {
  if (!xmlNode_) return;
  releaseCachedValues();
  if (xmlNode_->type == XML_NAMESPACE_DECL) {
    auto* const declared = reinterpret_cast<xmlNs*>(xmlNode_);
    xmlFree(const_cast<xmlChar*>(declared->href));
    declared->href = xmlStrdup(XMLText(value).get());
    return;
  }
  // The text of an element is read as XML; as a text node it is what it is.
  const bool isContainer =
      xmlNode_->type == XML_ELEMENT_NODE || xmlNode_->type == XML_ATTRIBUTE_NODE;
  const OwnText escaped(isContainer ? xmlEncodeSpecialChars(xmlNode_->doc, XMLText(value).get())
                                    : nullptr);
  xmlNodeSetContent(xmlNode_, escaped ? escaped.get() : XMLText(value).get());
}

std::string GDataXMLNode::XMLString() const {
  if (!xmlNode_) return {};
  const std::unique_ptr<xmlBuffer, BufferFreed> buffer(xmlBufferCreate());
  if (!buffer ||
      xmlNodeDump(buffer.get(), xmlNode_->type == XML_NAMESPACE_DECL ? nullptr : xmlNode_->doc,
                  xmlNode_, 0, 0) < 0) {
    return {};
  }
  return trimmed({reinterpret_cast<const char*>(xmlBufferContent(buffer.get())),
                  static_cast<std::size_t>(xmlBufferLength(buffer.get()))});
}

std::string GDataXMLNode::localName() const {
  return name() ? localNameForName(*name()) : std::string();
}

std::string GDataXMLNode::prefix() const {
  const xmlNs* const own = xmlNode_ ? namespaceOf(xmlNode_) : nullptr;
  return own ? stringOf(own->prefix) : std::string();
}

std::optional<std::string> GDataXMLNode::URI() const {
  const xmlNs* const own = xmlNode_ ? namespaceOf(xmlNode_) : nullptr;
  return own && own->href ? std::optional(stringOf(own->href)) : std::nullopt;
}

std::optional<std::string> GDataXMLNode::qualifiedName() const {
  if (!xmlNode_) return std::nullopt;
  if (xmlNode_->type == XML_NAMESPACE_DECL) {
    return stringOf(reinterpret_cast<const xmlNs*>(xmlNode_)->prefix);
  }
  if (!xmlNode_->name) return std::nullopt;
  const std::string own = stringOf(xmlNode_->name);
  const std::string before = prefix();
  return before.empty() ? own : before + ":" + own;
}

const std::shared_ptr<const std::string>& GDataXMLNode::name() const {
  if (cachedName_) return cachedName_;
  std::optional<std::string> text = qualifiedName();
  if (!text) return cachedName_;
  const bool isShared = xmlNode_->type == XML_ELEMENT_NODE ||
                        xmlNode_->type == XML_ATTRIBUTE_NODE || xmlNode_->type == XML_TEXT_NODE;
  auto* const cache =
      isShared && xmlNode_->doc ? static_cast<StringCache*>(xmlNode_->doc->_private) : nullptr;
  cachedName_ =
      cache ? cache->text(std::move(*text)) : std::make_shared<const std::string>(std::move(*text));
  return cachedName_;
}

GDataXMLNodeKind GDataXMLNode::kind() const noexcept {
  if (!xmlNode_) return GDataXMLNodeKind::Invalid;
  for (const KindOfType& each : kinds) {
    if (each.type == typeOf(xmlNode_)) return each.kind;
  }
  return GDataXMLNodeKind::Invalid;
}

std::size_t GDataXMLNode::childCount() const noexcept {
  std::size_t count = 0;
  for (const xmlNode* child = firstChild(xmlNode_); child; child = child->next) ++count;
  return count;
}

const std::vector<GDataXMLNode::Pointer>& GDataXMLNode::children() const {
  if (!cachedChildren_) {
    cachedChildren_.emplace().reserve(childCount());
    for (xmlNode* child = firstChild(xmlNode_); child; child = child->next) {
      cachedChildren_->push_back(nodeBorrowingXMLNode(child));
    }
  }
  return *cachedChildren_;
}

GDataXMLNode::Pointer GDataXMLNode::childAtIndex(std::size_t index) const {
  return index < children().size() ? children()[index] : nullptr;
}

GDataXMLNode::Pointer GDataXMLNode::nextSibling() const {
  const bool hasOne = xmlNode_ && xmlNode_->type != XML_NAMESPACE_DECL;
  return hasOne ? nodeBorrowingXMLNode(xmlNode_->next) : nullptr;
}

_xmlNode* GDataXMLNode::XMLNodeCopy() const {
  if (!xmlNode_) return nullptr;
  if (xmlNode_->type == XML_NAMESPACE_DECL) {
    return reinterpret_cast<xmlNode*>(xmlCopyNamespace(reinterpret_cast<xmlNs*>(xmlNode_)));
  }
  return xmlCopyNode(xmlNode_, 1);
}

GDataXMLNode::Pointer GDataXMLNode::copy() const {
  return nodeConsumingXMLNode(XMLNodeCopy());
}

std::string GDataXMLNode::description() const {
  char address[32];
  (void)std::snprintf(address, sizeof address, "%p", static_cast<const void*>(this));
  const int type = xmlNode_ ? static_cast<int>(xmlNode_->type) : -1;
  return std::string("GDataXMLNode ") + address + ": {type:" + std::to_string(type) +
         " name:" + (name() ? *name() : "(null)") + " xml:\"" + XMLString() + "\"}";
}

bool GDataXMLNode::isEqual(const GDataXMLNode* other) const {
  if (!other) return false;
  if (this == other || xmlNode_ == other->xmlNode_) return true;
  const bool isNameEqual = qualifiedName() == other->qualifiedName();
  return kind() == other->kind() && isNameEqual && childCount() == other->childCount();
}

}  // namespace zym
