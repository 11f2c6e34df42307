#include <unordered_map>
#include <vector>

#include "zymcore/interchange/xmlnodes/internal/XMLTexts.h"

namespace zym::xmlnodes {
namespace {

using Substitutions = std::unordered_map<const xmlNs*, xmlNs*>;

bool hasName(const xmlNode* node) {
  return node->type == XML_ELEMENT_NODE || node->type == XML_ATTRIBUTE_NODE;
}

void fixQualifiedName(xmlNode* node, xmlNode* tree) {
  if (node->ns) return;
  const std::string name = stringOf(node->name);
  const std::size_t colon = name.rfind(':');
  if (colon == std::string::npos) return;
  const std::string before = name.substr(0, colon);
  xmlNs* found = nullptr;
  if (before.size() >= 2 && before.front() == '{' && before.back() == '}') {
    found = namespaceOfURI(tree, before.substr(1, before.size() - 2));
  }
  if (!found) found = xmlSearchNs(tree->doc, tree, XMLText(before).get());
  if (!found) return;
  node->ns = found;
  xmlNodeSetName(node, XMLText(name.substr(colon + 1)).get());
}

void deleteNamespace(const xmlNs* declared, xmlNode* node) {
  for (xmlNs** at = &node->nsDef; *at; at = &(*at)->next) {
    if (*at != declared) continue;
    xmlNs* const gone = *at;
    *at = gone->next;
    gone->next = nullptr;
    xmlFreeNs(gone);
    return;
  }
}

// A declaration that goes is looked at only by its address afterwards.
void fixDuplicateNamespaces(xmlNode* node, xmlNode* tree, Substitutions& substitutions) {
  if (node->type == XML_ELEMENT_NODE) {
    std::vector<xmlNs*> declared;
    for (xmlNs* each = node->nsDef; each; each = each->next) declared.push_back(each);
    for (xmlNs* each : declared) {
      xmlNs* const known = namespaceOfURI(tree, stringOf(each->href));
      if (!known || known == each || !xmlStrEqual(known->prefix, each->prefix)) continue;
      substitutions[each] = known;
      deleteNamespace(each, node);
    }
  }
  const auto other = substitutions.find(node->ns);
  if (node->ns && other != substitutions.end()) node->ns = other->second;
}

// By hand and not by recursion, for a tree that was built may be of any depth.
template <class Work>
void forEachBelow(xmlNode* top, Work work) {
  std::vector<xmlNode*> left{top};
  while (!left.empty()) {
    xmlNode* const each = left.back();
    left.pop_back();
    if (!hasName(each)) continue;
    work(each);
    if (each->type != XML_ELEMENT_NODE) continue;
    for (xmlNode* child = each->last; child; child = child->prev) left.push_back(child);
    for (xmlAttr* attribute = each->properties; attribute; attribute = attribute->next) {
      left.push_back(reinterpret_cast<xmlNode*>(attribute));
    }
  }
}

}  // namespace

void replaceNamespaces(xmlNode* node, const xmlNs* before) {
  Substitutions others;
  for (const xmlNs* each = before; each; each = each->next) {
    xmlNs* other = node->nsDef;
    while (other && !xmlStrEqual(other->prefix, each->prefix)) other = other->next;
    others[each] = other;
  }
  forEachBelow(node, [&](xmlNode* each) {
    const auto other = others.find(each->ns);
    if (each->ns && other != others.end()) each->ns = other->second;
  });
}

void fixUpNamespacesForNode_graftingToTreeNode(xmlNode* node, xmlNode* tree) {
  Substitutions substitutions;
  forEachBelow(node, [&](xmlNode* each) {
    fixQualifiedName(each, tree);
    fixDuplicateNamespaces(each, tree, substitutions);
  });
}

}  // namespace zym::xmlnodes
