#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "zymcore/interchange/xmlnodes/GDataXMLDocument.h"

// A document and, behind the first line end, a query. What is read can be walked, written, read
// again as the same, and queried without a word of the document doing harm.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zym;
  const std::string_view all(reinterpret_cast<const char*>(data), size);
  const std::size_t end = all.find('\n');
  const std::string_view query = all.substr(0, end);
  const std::string_view text = end == std::string_view::npos ? all : all.substr(end + 1);
  const auto document = GDataXMLDocument::initWithData_options(text, 0);
  if (!document) return 0;
  const auto root = document->rootElement();
  if (!root) return 0;
  (void)root->stringValue();
  for (const auto& child : root->children()) (void)child->description();
  for (const auto& attribute : root->attributes()) (void)root->attributeForName(*attribute->name());
  const auto copy = GDataXMLDocument::initWithRootElement(*root);
  copy->rootElement()->addChild(*root);
  copy->rootElement()->removeChild(*copy->rootElement()->childAtIndex(0));
  // A query may take long on a large document, by what it asks and by no fault.
  if (query.size() > 64 || text.size() > 2000) return 0;
  NSError error;
  if (!document->nodesForXPath(query, &error) && error.domain.empty()) std::abort();
  return 0;
}
