#pragma once

#include "zymcore/interchange/xmlnodes/GDataXMLElement.h"

// Of libxml2.
struct _xmlDoc;

namespace zym {

/// An XML document, which owns its tree.
class GDataXMLDocument {
 public:
  // Null, with an error, for what is no document, or one that would cost out of all proportion:
  // more than 5,000 attributes in a tag, entities that grow beyond 16 MB, elements more than 256
  // deep. Nothing outside is fetched. Blanks between elements are dropped, CDATA becomes text.
  // `options` change nothing.
  [[nodiscard]] static std::unique_ptr<GDataXMLDocument> initWithXMLString_options(
      std::string_view text, unsigned options, NSError* error = nullptr);
  [[nodiscard]] static std::unique_ptr<GDataXMLDocument> initWithData_options(
      std::string_view data, unsigned options, NSError* error = nullptr);
  /// A document of a copy of the element.
  [[nodiscard]] static std::unique_ptr<GDataXMLDocument> initWithRootElement(
      const GDataXMLElement& root);

  ~GDataXMLDocument();
  GDataXMLDocument(const GDataXMLDocument&) = delete;
  GDataXMLDocument& operator=(const GDataXMLDocument&) = delete;

  /// Borrows. Null for a document without one.
  [[nodiscard]] std::shared_ptr<GDataXMLElement> rootElement() const;
  /// The document as XML, in its own encoding.
  [[nodiscard]] std::string XMLData() const;
  void setVersion(std::string_view version);
  void setCharacterEncoding(std::string_view encoding);

  // As of a node, from the document on.
  [[nodiscard]] std::optional<std::vector<GDataXMLNode::Pointer>> nodesForXPath(
      std::string_view xpath, NSError* error = nullptr) const;
  [[nodiscard]] std::optional<std::vector<GDataXMLNode::Pointer>> nodesForXPath_namespaces(
      std::string_view xpath, const PlistDictionary* namespaces, NSError* error = nullptr) const;

 private:
  explicit GDataXMLDocument(_xmlDoc* document) noexcept : xmlDoc_(document) {}

  _xmlDoc* xmlDoc_;
};

}  // namespace zym
