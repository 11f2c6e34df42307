#include "zymcore/interchange/xmlnodes/GDataXMLElement.h"

#include <libxml/tree.h>

#include "zymcore/interchange/xmlnodes/internal/BoundedParse.h"
#include "zymcore/interchange/xmlnodes/internal/Wrapped.h"
#include "zymcore/interchange/xmlnodes/internal/XMLTexts.h"

namespace zym {

using namespace xmlnodes;

namespace {

bool isOfNamespace(const xmlNode* node, const xmlNs* ns, const XMLText& localName) {
  return node->ns == ns && xmlStrEqual(node->name, localName.get());
}

xmlAttr* findAttribute(xmlNode* element, std::string_view name, const xmlNs* ns) {
  const XMLText text(name);
  return ns ? xmlHasNsProp(element, text.get(), ns->href)
            : xmlHasNsProp(element, text.get(), nullptr);
}

// The declaration that holds here for the URI; a new one where there is none.
xmlNs* namespaceForAttribute(xmlNode* element, const xmlNs* of) {
  if (!of) return nullptr;
  xmlNs* const known = namespaceOfURI(element, stringOf(of->href));
  return known ? known : xmlNewNs(element, of->href, of->prefix);
}

}  // namespace

GDataXMLElement::Element GDataXMLElement::initWithXMLString(std::string_view text, NSError* error) {
  const OwnDocument document = parsed(text, error);
  xmlNode* const root = document ? xmlDocGetRootElement(document.get()) : nullptr;
  xmlNode* const copy = root ? xmlCopyNode(root, 1) : nullptr;
  if (copy) return wrapped<GDataXMLElement>(copy, true);
  fail(error, kGDataXMLErrorDomain, -1, "no XML");
  return nullptr;
}

void GDataXMLElement::releaseCachedValues() {
  GDataXMLNode::releaseCachedValues();
  cachedAttributes_.reset();
}

std::vector<GDataXMLNode::Pointer> GDataXMLElement::namespaces() const {
  std::vector<Pointer> found;
  for (xmlNs* each = XMLNode()->nsDef; each; each = each->next) {
    if (stringOf(each->prefix) == "xml") continue;
    found.push_back(nodeBorrowingXMLNode(reinterpret_cast<xmlNode*>(each)));
  }
  return found;
}

void GDataXMLElement::setNamespaces(const std::vector<Pointer>& namespaces) {
  releaseCachedValues();
  // Copied before those that there were go, for they may be the same.
  std::vector<xmlNs*> copies;
  for (const Pointer& each : namespaces) {
    if (const xmlNs* declared = each ? namespaceIn(*each) : nullptr) {
      copies.push_back(xmlNewNs(nullptr, declared->href, declared->prefix));
    }
  }
  xmlNs* before = XMLNode()->nsDef;
  XMLNode()->nsDef = nullptr;
  xmlNs** end = &XMLNode()->nsDef;
  for (xmlNs* each : copies) {
    *end = each;
    end = &each->next;
  }
  replaceNamespaces(XMLNode(), before);
  xmlFreeNsList(before);
  fixUpNamespacesForNode_graftingToTreeNode(XMLNode(), XMLNode());
}

void GDataXMLElement::addNamespace(const GDataXMLNode& declaration) {
  const xmlNs* const declared = namespaceIn(declaration);
  if (!declared) return;
  releaseCachedValues();
  // Null for a prefix that is declared here already.
  (void)xmlNewNs(XMLNode(), declared->href, declared->prefix);
  fixUpNamespacesForNode_graftingToTreeNode(XMLNode(), XMLNode());
}

void GDataXMLElement::addChild(const GDataXMLNode& child) {
  if (child.kind() == GDataXMLNodeKind::Attribute) return addAttribute(child);
  if (child.kind() == GDataXMLNodeKind::Namespace || !child.XMLNode()) return;
  releaseCachedValues();
  xmlNode* const copy = child.XMLNodeCopy();
  // Text is joined to text before it, and then gone.
  xmlNode* const added = copy ? xmlAddChild(XMLNode(), copy) : nullptr;
  if (added) {
    fixUpNamespacesForNode_graftingToTreeNode(added, XMLNode());
  } else if (copy) {
    xmlFreeNode(copy);
  }
}

void GDataXMLElement::removeChild(GDataXMLNode& child) {
  xmlNode* const node = child.XMLNode();
  if (!node || child.kind() == GDataXMLNodeKind::Namespace || node->parent != XMLNode()) return;
  releaseCachedValues();
  xmlUnlinkNode(node);
  if (!child.shouldFreeXMLNode()) xmlFreeNode(node);
}

std::vector<GDataXMLElement::Element> GDataXMLElement::elementsForName(
    std::string_view name) const {
  if (const auto before = prefixForName(name)) {
    const xmlNs* const known = xmlSearchNs(XMLNode()->doc, XMLNode(), XMLText(*before).get());
    if (known) return elementsForLocalName_URI(localNameForName(name), stringOf(known->href));
  }
  std::vector<Element> found;
  for (const Pointer& child : children()) {
    if (child->kind() == GDataXMLNodeKind::Element && child->name() && *child->name() == name) {
      found.push_back(std::static_pointer_cast<GDataXMLElement>(child));
    }
  }
  return found;
}

std::vector<GDataXMLElement::Element> GDataXMLElement::elementsForLocalName_URI(
    std::string_view localName, std::string_view uri) const {
  const xmlNs* const known = namespaceOfURI(XMLNode(), uri);
  const XMLText fake(fakeQualifiedName(uri, localName));
  const XMLText local(localName);
  std::vector<Element> found;
  for (const Pointer& child : children()) {
    xmlNode* const node = child->XMLNode();
    if (node->type != XML_ELEMENT_NODE) continue;
    const xmlNs* const own = node->nsDef ? namespaceOfURI(node, uri) : known;
    const bool matches = own ? isOfNamespace(node, own, local) : isOfNamespace(node, nullptr, fake);
    if (matches) found.push_back(std::static_pointer_cast<GDataXMLElement>(child));
  }
  return found;
}

const std::vector<GDataXMLNode::Pointer>& GDataXMLElement::attributes() const {
  if (!cachedAttributes_) {
    cachedAttributes_.emplace();
    for (xmlAttr* each = XMLNode()->properties; each; each = each->next) {
      cachedAttributes_->push_back(nodeBorrowingXMLNode(reinterpret_cast<xmlNode*>(each)));
    }
  }
  return *cachedAttributes_;
}

void GDataXMLElement::addAttribute(const GDataXMLNode& attribute) {
  if (attribute.kind() != GDataXMLNodeKind::Attribute) return;
  const auto* const given = reinterpret_cast<const xmlAttr*>(attribute.XMLNode());
  const std::string name = stringOf(given->name);
  if (findAttribute(XMLNode(), name, given->ns)) return;
  releaseCachedValues();
  xmlNs* const ns = namespaceForAttribute(XMLNode(), given->ns);
  xmlAttr* const added =
      xmlNewNsProp(XMLNode(), ns, XMLText(name).get(), XMLText(attribute.stringValue()).get());
  if (!added) return;
  fixUpNamespacesForNode_graftingToTreeNode(reinterpret_cast<xmlNode*>(added), XMLNode());
}

GDataXMLNode::Pointer GDataXMLElement::cachedAttribute(const void* attribute) const {
  for (const Pointer& each : attributes()) {
    if (each->XMLNode() == attribute) return each;
  }
  return nullptr;
}

GDataXMLNode::Pointer GDataXMLElement::attributeForName(std::string_view name) const {
  const xmlAttr* found = xmlHasProp(XMLNode(), XMLText(name).get());
  if (!found) {
    const auto before = prefixForName(name);
    const xmlNs* const known =
        before ? xmlSearchNs(XMLNode()->doc, XMLNode(), XMLText(*before).get()) : nullptr;
    if (known) found = findAttribute(XMLNode(), localNameForName(name), known);
  }
  return found ? cachedAttribute(found) : nullptr;
}

GDataXMLNode::Pointer GDataXMLElement::attributeForLocalName_URI(std::string_view localName,
                                                                 std::string_view uri) const {
  const xmlNs* const known = namespaceOfURI(XMLNode(), uri);
  const xmlAttr* found = known ? findAttribute(XMLNode(), localName, known) : nullptr;
  if (!found) {
    found = xmlHasNsProp(XMLNode(), XMLText(fakeQualifiedName(uri, localName)).get(), nullptr);
  }
  return found ? cachedAttribute(found) : nullptr;
}

std::optional<std::string> GDataXMLElement::resolvePrefixForNamespaceURI(
    std::string_view uri) const {
  const xmlNs* const known = namespaceOfURI(XMLNode(), uri);
  return known ? std::optional(stringOf(known->prefix)) : std::nullopt;
}

}  // namespace zym
