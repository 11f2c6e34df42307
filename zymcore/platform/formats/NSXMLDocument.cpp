#include "zymcore/platform/formats/NSXMLDocument.h"

#include <string>

#include "zymcore/platform/formats/internal/XMLEncoding.h"
#include "zymcore/platform/formats/internal/XMLReader.h"
#include "zymcore/platform/formats/internal/XMLTree.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NSException.h"

namespace zym {

std::optional<NSXMLDocument> NSXMLDocument::initWithData_options(const NSData& data,
                                                                 NSXMLNodeOptions options,
                                                                 NSError* error) {
  if (options != NSXMLDocumentTidyXML) {
    throw NSException(NSInvalidArgumentException, "XML is read as NSXMLDocumentTidyXML only");
  }
  if (data.length() > mostBytes) {
    fail(error, NSCocoaErrorDomain, NSFileReadTooLargeError,
         "more than " + std::to_string(mostBytes >> 20U) + " MB of XML");
    return std::nullopt;
  }
  std::string converted;
  const std::string_view text = textOfXML(data.view(), converted);
  XMLTreeBuilder builder(text.size());
  XMLReader reader(text, builder);
  reader.read();

  const std::string& fault = builder.refusal().empty() ? reader.damage() : builder.refusal();
  if (!fault.empty()) fail(error, NSCocoaErrorDomain, NSFileReadCorruptFileError, fault);
  if (!builder.refusal().empty()) return std::nullopt;
  std::shared_ptr<const XMLTree> tree = builder.takeTree();
  if (tree->elements.empty()) {
    fail(error, NSCocoaErrorDomain, NSFileReadCorruptFileError, "no element of XML");
    return std::nullopt;
  }
  return NSXMLDocument(std::move(tree));
}

}  // namespace zym
