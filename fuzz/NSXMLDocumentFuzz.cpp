#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "zymcore/platform/formats/NSXMLDocument.h"
#include "zymcore/platform/text/NSString.h"

namespace {

xmlNodePtr elementFrom(xmlNodePtr node) {
  while (node && node->type != XML_ELEMENT_NODE) node = node->next;
  return node;
}

std::string nameOf(xmlNodePtr node) {
  const std::string name = reinterpret_cast<const char*>(node->name);
  if (!node->ns || !node->ns->prefix) return name;
  return reinterpret_cast<const char*>(node->ns->prefix) + (":" + name);
}

void compare(const zym::NSXMLNode& node, xmlNodePtr expected) {
  const std::unique_ptr<xmlChar, decltype(xmlFree)> content(xmlNodeGetContent(expected), xmlFree);
  if (node.name() != nameOf(expected)) std::abort();
  if (node.stringValue() != reinterpret_cast<const char*>(content.get())) std::abort();
  xmlNodePtr child = elementFrom(expected->children);
  for (const zym::NSXMLNode& each : node.children()) {
    if (!child) std::abort();
    compare(each, child);
    child = elementFrom(child->next);
  }
  if (child) std::abort();
}

}  // namespace

// Whatever is well-formed reads as any reader reads it. (Declared entities are left alone,
// encodings are guessed, and the oracle takes a zero for the end.)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  NSError damage;
  const auto tidied =
      NSXMLDocument::initWithData_options(NSData(bytes), NSXMLDocumentTidyXML, &damage);
  if (!isUTF8(bytes) || bytes.find("<!DOCTYPE") != std::string_view::npos ||
      bytes.find("encoding") != std::string_view::npos ||
      bytes.find('\0') != std::string_view::npos) {
    return 0;
  }
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> expected(
      xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                    XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
      &xmlFreeDoc);
  if (!expected) return 0;
  if (!tidied || !damage.localizedDescription.empty()) std::abort();
  compare(tidied->rootElement(), xmlDocGetRootElement(expected.get()));
  return 0;
}
