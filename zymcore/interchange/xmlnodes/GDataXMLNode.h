#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistDictionary.h"

// Of libxml2.
struct _xmlNode;

namespace zym {

class GDataXMLElement;

/// The prefix that stands for a default namespace in a query.
inline constexpr std::string_view kGDataXMLXPathDefaultNamespacePrefix = "_def_ns";
/// All errors of this layer have the domain and, but for those of a query, the code -1.
inline constexpr const char* kGDataXMLErrorDomain = "org.zymcore.xmlnodes";

enum class GDataXMLNodeKind : std::int32_t {
  Invalid = 0,
  Document = 1,
  Element = 2,
  Attribute = 3,
  Namespace = 4,
  ProcessingInstruction = 5,
  Comment = 6,
  Text = 7,
  DTD = 8,
  Entity = 9,
  AttributeDeclaration = 10,
  ElementDeclaration = 11,
  Notation = 12,
};

/// A node of an XML tree, or a namespace declaration. It owns its node, with all below it, or
/// borrows it.
///
/// What comes out of a tree (children, attributes, results of queries, a root element) borrows, and
/// is to be let go before the tree is: before the document, or the owning node on top, ends, and
/// before a node that it is, or lies below, is removed. What goes into a tree is copied, so a
/// caller's node stays its own. Texts are UTF-8. One thread at a time.
class GDataXMLNode {
 public:
  using Pointer = std::shared_ptr<GDataXMLNode>;

  // Nodes that own themselves. Null when libxml2 can't make them.

  [[nodiscard]] static std::shared_ptr<GDataXMLElement> elementWithName(std::string_view name);
  [[nodiscard]] static std::shared_ptr<GDataXMLElement> elementWithName_stringValue(
      std::string_view name, std::string_view value);
  /// Of that namespace, which is resolved when the element is put into a tree that knows it.
  [[nodiscard]] static std::shared_ptr<GDataXMLElement> elementWithName_URI(std::string_view name,
                                                                            std::string_view uri);
  [[nodiscard]] static Pointer attributeWithName_stringValue(std::string_view name,
                                                             std::string_view value);
  [[nodiscard]] static Pointer attributeWithName_URI_stringValue(std::string_view name,
                                                                 std::string_view uri,
                                                                 std::string_view value);
  [[nodiscard]] static Pointer textWithStringValue(std::string_view value);
  /// An empty name for the default namespace.
  [[nodiscard]] static Pointer namespaceWithName_stringValue(std::string_view name,
                                                             std::string_view uri);

  /// An element for an element, and a node for all else; null for null. The first frees the node at
  /// its end.
  [[nodiscard]] static Pointer nodeConsumingXMLNode(_xmlNode* node);
  [[nodiscard]] static Pointer nodeBorrowingXMLNode(_xmlNode* node);

  /// What is behind the first colon; the whole where there is none, or it stands at the end.
  [[nodiscard]] static std::string localNameForName(std::string_view name);
  /// What is before the first colon; absent where there is none.
  [[nodiscard]] static std::optional<std::string> prefixForName(std::string_view name);

  /// What only the operations above have.
  class Key {
    Key() = default;
    template <class Wrapper>
    friend std::shared_ptr<Wrapper> wrapped(_xmlNode* node, bool owns);
  };
  GDataXMLNode(Key, _xmlNode* node, bool owns) noexcept
      : xmlNode_(node), shouldFreeXMLNode_(owns) {}

  virtual ~GDataXMLNode();
  GDataXMLNode(const GDataXMLNode&) = delete;
  GDataXMLNode& operator=(const GDataXMLNode&) = delete;

  /// The URI of a namespace, else the text of the node with all below it.
  [[nodiscard]] std::string stringValue() const;
  void setStringValue(std::string_view value);
  /// The node as XML, without blanks around it.
  [[nodiscard]] std::string XMLString() const;

  [[nodiscard]] std::string localName() const;
  /// Empty for none.
  [[nodiscard]] std::string prefix() const;
  [[nodiscard]] std::optional<std::string> URI() const;
  /// With its prefix; of a namespace the prefix, and "" for the default one. Absent for a node
  /// without a name.
  [[nodiscard]] std::optional<std::string> qualifiedName() const;
  /// The same, kept. Of a parsed document equal names are one text. Null for absent.
  [[nodiscard]] const std::shared_ptr<const std::string>& name() const;
  [[nodiscard]] GDataXMLNodeKind kind() const noexcept;

  [[nodiscard]] std::size_t childCount() const noexcept;
  /// Kept until the node is changed.
  [[nodiscard]] const std::vector<Pointer>& children() const;
  /// Null beyond the last.
  [[nodiscard]] Pointer childAtIndex(std::size_t index) const;
  [[nodiscard]] Pointer nextSibling() const;

  /// The nodes that the expression finds from here, in their order; none for an expression that
  /// yields no nodes. Absent, with the error of the query under "error", when it can't be
  /// evaluated. Prefixes are those of `namespaces`, or of the node itself when absent, where
  /// `kGDataXMLXPathDefaultNamespacePrefix` stands for the default one.
  [[nodiscard]] std::optional<std::vector<Pointer>> nodesForXPath(std::string_view xpath,
                                                                  NSError* error = nullptr) const;
  [[nodiscard]] std::optional<std::vector<Pointer>> nodesForXPath_namespaces(
      std::string_view xpath, const PlistDictionary* namespaces, NSError* error = nullptr) const;

  [[nodiscard]] _xmlNode* XMLNode() const noexcept { return xmlNode_; }
  /// A deep copy without a tree, the caller's to free.
  [[nodiscard]] _xmlNode* XMLNodeCopy() const;
  /// A node that owns a deep copy.
  [[nodiscard]] Pointer copy() const;
  [[nodiscard]] bool shouldFreeXMLNode() const noexcept { return shouldFreeXMLNode_; }
  void setShouldFreeXMLNode(bool flag) noexcept { shouldFreeXMLNode_ = flag; }

  [[nodiscard]] std::string description() const;
  /// The same node, or one of the same kind, name and number of children.
  [[nodiscard]] bool isEqual(const GDataXMLNode* other) const;
  /// One number for all nodes, since equal ones may differ in all else.
  [[nodiscard]] static std::size_t hash() noexcept { return 0; }

 protected:
  virtual void releaseCachedValues();

 private:
  _xmlNode* xmlNode_;
  bool shouldFreeXMLNode_;
  mutable std::shared_ptr<const std::string> cachedName_;
  mutable std::optional<std::vector<Pointer>> cachedChildren_;
};

}  // namespace zym
