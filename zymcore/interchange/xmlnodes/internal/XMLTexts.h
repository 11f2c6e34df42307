#pragma once

#include <libxml/tree.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zym::xmlnodes {

/// Texts of a document that come again and again, each kept once. Ordered, since a document chooses
/// its names.
class StringCache {
 public:
  [[nodiscard]] std::shared_ptr<const std::string> text(std::string text) {
    auto& known = texts_[text];
    if (!known) known = std::make_shared<const std::string>(std::move(text));
    return known;
  }

 private:
  std::map<std::string, std::shared_ptr<const std::string>, std::less<>> texts_;
};

struct TextFreed {
  void operator()(xmlChar* text) const { xmlFree(text); }
};
/// A text that libxml2 hands over.
using OwnText = std::unique_ptr<xmlChar, TextFreed>;

inline std::string stringOf(const xmlChar* text) {
  return text ? reinterpret_cast<const char*>(text) : std::string();
}

/// For an argument of libxml2, which ends at the first null.
class XMLText {
 public:
  explicit XMLText(std::string_view text) : text_(text) {}
  [[nodiscard]] const xmlChar* get() const {
    return reinterpret_cast<const xmlChar*>(text_.c_str());
  }

 private:
  std::string text_;
};

/// The name that an element or attribute of a namespace has before a tree knows the namespace.
inline std::string fakeQualifiedName(std::string_view uri, std::string_view localName) {
  return "{" + std::string(uri) + "}:" + std::string(localName);
}

/// The declaration of the URI that holds at the node; null for none.
inline xmlNs* namespaceOfURI(xmlNode* node, std::string_view uri) {
  return node && node->doc ? xmlSearchNsByHref(node->doc, node, XMLText(uri).get())
         : node            ? xmlSearchNsByHref(nullptr, node, XMLText(uri).get())
                           : nullptr;
}

/// Gives the node, and what is below it, the namespaces that the tree has for them: names that wait
/// for one get it, and declarations of the same prefix and URI as the tree's go.
void fixUpNamespacesForNode_graftingToTreeNode(xmlNode* node, xmlNode* tree);

/// What used declarations that are about to go uses those of the node instead, by their prefix;
/// with none of it there, the name stands alone.
void replaceNamespaces(xmlNode* node, const xmlNs* before);

}  // namespace zym::xmlnodes
