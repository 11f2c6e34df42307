#include "zymcore/interchange/xmlnodes/GDataXMLDocument.h"

#include <libxml/tree.h>

#include <memory>

#include "zymcore/interchange/xmlnodes/internal/BoundedParse.h"
#include "zymcore/interchange/xmlnodes/internal/Wrapped.h"
#include "zymcore/interchange/xmlnodes/internal/XMLTexts.h"

namespace zym {

using namespace xmlnodes;

namespace {

void replaceText(const xmlChar*& field, std::string_view text) {
  xmlFree(const_cast<xmlChar*>(field));
  field = xmlStrdup(XMLText(text).get());
}

}  // namespace

std::unique_ptr<GDataXMLDocument> GDataXMLDocument::initWithXMLString_options(std::string_view text,
                                                                              unsigned options,
                                                                              NSError* error) {
  return initWithData_options(text, options, error);
}

std::unique_ptr<GDataXMLDocument> GDataXMLDocument::initWithData_options(std::string_view data,
                                                                         unsigned /*options*/,
                                                                         NSError* error) {
  OwnDocument document = parsed(data, error);
  if (!document) return nullptr;
  return std::unique_ptr<GDataXMLDocument>(new GDataXMLDocument(document.release()));
}

std::unique_ptr<GDataXMLDocument> GDataXMLDocument::initWithRootElement(
    const GDataXMLElement& root) {
  OwnDocument document = owned(xmlNewDoc(XMLText("1.0").get()));
  xmlNode* const copy = document ? root.XMLNodeCopy() : nullptr;
  if (!copy) return nullptr;
  (void)xmlDocSetRootElement(document.get(), copy);
  return std::unique_ptr<GDataXMLDocument>(new GDataXMLDocument(document.release()));
}

GDataXMLDocument::~GDataXMLDocument() {
  DocumentFreed()(xmlDoc_);
}

std::shared_ptr<GDataXMLElement> GDataXMLDocument::rootElement() const {
  xmlNode* const root = xmlDocGetRootElement(xmlDoc_);
  return root ? wrapped<GDataXMLElement>(root, false) : nullptr;
}

std::string GDataXMLDocument::XMLData() const {
  xmlChar* bytes = nullptr;
  int length = 0;
  xmlDocDumpMemory(xmlDoc_, &bytes, &length);
  const OwnText text(bytes);
  return bytes ? std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length))
               : std::string();
}

void GDataXMLDocument::setVersion(std::string_view version) {
  replaceText(xmlDoc_->version, version);
}

void GDataXMLDocument::setCharacterEncoding(std::string_view encoding) {
  replaceText(xmlDoc_->encoding, encoding);
}

std::optional<std::vector<GDataXMLNode::Pointer>> GDataXMLDocument::nodesForXPath(
    std::string_view xpath, NSError* error) const {
  return nodesForXPath_namespaces(xpath, nullptr, error);
}

std::optional<std::vector<GDataXMLNode::Pointer>> GDataXMLDocument::nodesForXPath_namespaces(
    std::string_view xpath, const PlistDictionary* namespaces, NSError* error) const {
  return GDataXMLNode::nodeBorrowingXMLNode(reinterpret_cast<xmlNode*>(xmlDoc_))
      ->nodesForXPath_namespaces(xpath, namespaces, error);
}

}  // namespace zym
