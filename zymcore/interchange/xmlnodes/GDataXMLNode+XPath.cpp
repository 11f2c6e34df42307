#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <memory>

#include "zymcore/interchange/xmlnodes/GDataXMLElement.h"
#include "zymcore/interchange/xmlnodes/internal/Wrapped.h"
#include "zymcore/interchange/xmlnodes/internal/XMLTexts.h"

namespace zym {

using namespace xmlnodes;

namespace {

constexpr KeyName errorKey{"error"};

struct ContextFreed {
  void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
};
struct ResultFreed {
  void operator()(xmlXPathObject* result) const { xmlXPathFreeObject(result); }
};

void failWith(NSError* error, std::int64_t code, const std::string& message) {
  if (!error) return;
  *error = {kGDataXMLErrorDomain, code, message, {}, {}};
  if (!message.empty()) error->userInfo.set(errorKey, message);
}

/// A document for a tree that has none, as long as a query lasts.
class TemporaryDocument {
 public:
  explicit TemporaryDocument(xmlNode* node) {
    if (!node || node->type == XML_NAMESPACE_DECL || node->doc) return;
    top_ = node;
    while (top_->parent) top_ = top_->parent;
    document_ = xmlNewDoc(nullptr);
    if (document_) (void)xmlDocSetRootElement(document_, top_);
  }
  ~TemporaryDocument() {
    if (!document_) return;
    xmlUnlinkNode(top_);
    xmlSetTreeDoc(top_, nullptr);
    xmlFreeDoc(document_);
  }
  TemporaryDocument(const TemporaryDocument&) = delete;
  TemporaryDocument& operator=(const TemporaryDocument&) = delete;

 private:
  xmlNode* top_ = nullptr;
  xmlDoc* document_ = nullptr;
};

void registerNamespaces(xmlXPathContext* context, const PlistDictionary& namespaces) {
  for (const PlistEntry& entry : namespaces) {
    const std::string* uri = entry.value.string();
    if (!uri) continue;
    (void)xmlXPathRegisterNs(context, XMLText(entry.key.text()).get(), XMLText(*uri).get());
  }
}

void registerNamespacesOf(xmlXPathContext* context, xmlNode* node) {
  if (node->type == XML_DOCUMENT_NODE || node->type == XML_HTML_DOCUMENT_NODE) {
    node = xmlDocGetRootElement(reinterpret_cast<xmlDoc*>(node));
  }
  if (!node || node->type != XML_ELEMENT_NODE) return;
  for (const xmlNs* each = node->nsDef; each; each = each->next) {
    const XMLText prefix(each->prefix ? stringOf(each->prefix)
                                      : std::string(kGDataXMLXPathDefaultNamespacePrefix));
    (void)xmlXPathRegisterNs(context, prefix.get(), each->href);
  }
}

// A declaration that a query finds is the query's own, and goes with it.
GDataXMLNode::Pointer pointerTo(xmlNode* node) {
  if (node->type != XML_NAMESPACE_DECL) return GDataXMLNode::nodeBorrowingXMLNode(node);
  return GDataXMLNode::nodeConsumingXMLNode(
      reinterpret_cast<xmlNode*>(xmlCopyNamespace(reinterpret_cast<xmlNs*>(node))));
}

}  // namespace

std::optional<std::vector<GDataXMLNode::Pointer>> GDataXMLNode::nodesForXPath(
    std::string_view xpath, NSError* error) const {
  return nodesForXPath_namespaces(xpath, nullptr, error);
}

std::optional<std::vector<GDataXMLNode::Pointer>> GDataXMLNode::nodesForXPath_namespaces(
    std::string_view xpath, const PlistDictionary* namespaces, NSError* error) const {
  xmlNode* const node = XMLNode();
  const TemporaryDocument temporary(node);
  if (!node || node->type == XML_NAMESPACE_DECL || !node->doc) {
    failWith(error, -1, "invalid node");
    return std::nullopt;
  }
  const std::unique_ptr<xmlXPathContext, ContextFreed> context(xmlXPathNewContext(node->doc));
  if (!context) {
    failWith(error, -1, "");
    return std::nullopt;
  }
  // Its errors are told, not printed.
  context->error = [](void*, xmlError*) {};
  context->node = node;
  if (namespaces) {
    registerNamespaces(context.get(), *namespaces);
  } else {
    registerNamespacesOf(context.get(), node);
  }
  const std::unique_ptr<xmlXPathObject, ResultFreed> result(
      xmlXPathEval(XMLText(xpath).get(), context.get()));
  if (!result) {
    const char* const message = context->lastError.message;
    failWith(error, context->lastError.code, message ? message : "");
    return std::nullopt;
  }
  std::vector<Pointer> found;
  const xmlNodeSet* const nodes = result->type == XPATH_NODESET ? result->nodesetval : nullptr;
  for (int i = 0; nodes && i < nodes->nodeNr; ++i) {
    // Null for the namespace of "xml", which nobody declares.
    if (Pointer each = pointerTo(nodes->nodeTab[i])) found.push_back(std::move(each));
  }
  return found;
}

}  // namespace zym
