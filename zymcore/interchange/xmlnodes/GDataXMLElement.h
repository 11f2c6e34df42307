#pragma once

#include "zymcore/interchange/xmlnodes/GDataXMLNode.h"

namespace zym {

/// An element of an XML tree.
class GDataXMLElement final : public GDataXMLNode {
 public:
  using Element = std::shared_ptr<GDataXMLElement>;
  using GDataXMLNode::GDataXMLNode;

  /// The root of the document that the text is. Null, with an error, when it is none.
  [[nodiscard]] static Element initWithXMLString(std::string_view text, NSError* error = nullptr);

  /// Those declared here, without "xml".
  [[nodiscard]] std::vector<Pointer> namespaces() const;
  /// In place of those there were; children that they suit take them.
  void setNamespaces(const std::vector<Pointer>& namespaces);
  void addNamespace(const GDataXMLNode& declaration);

  /// Adds a copy at the end, of an attribute as an attribute. Names that wait for a namespace get
  /// it, and declarations that the tree has already go.
  void addChild(const GDataXMLNode& child);
  /// Takes a child out of the tree. One that borrows is freed with it, and must not be used again.
  void removeChild(GDataXMLNode& child);

  [[nodiscard]] std::vector<Element> elementsForName(std::string_view name) const;
  [[nodiscard]] std::vector<Element> elementsForLocalName_URI(std::string_view localName,
                                                              std::string_view uri) const;

  /// Kept until the element is changed.
  [[nodiscard]] const std::vector<Pointer>& attributes() const;
  /// Adds a copy; nothing when there is such an attribute already.
  void addAttribute(const GDataXMLNode& attribute);
  /// Null for none.
  [[nodiscard]] Pointer attributeForName(std::string_view name) const;
  [[nodiscard]] Pointer attributeForLocalName_URI(std::string_view localName,
                                                  std::string_view uri) const;

  /// "" for the default namespace; absent for one that isn't in scope.
  [[nodiscard]] std::optional<std::string> resolvePrefixForNamespaceURI(std::string_view uri) const;

 private:
  void releaseCachedValues() override;
  [[nodiscard]] Pointer cachedAttribute(const void* attribute) const;

  mutable std::optional<std::vector<Pointer>> cachedAttributes_;
};

}  // namespace zym
