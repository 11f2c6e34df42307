#include "zymcore/interchange/xmlnodes/internal/BoundedParse.h"

#include <libxml/parser.h>

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <vector>

#include "zymcore/interchange/xmlnodes/GDataXMLNode.h"
#include "zymcore/interchange/xmlnodes/internal/XMLTexts.h"

namespace zym::xmlnodes {
namespace {

constexpr int options = XML_PARSE_NOBLANKS | XML_PARSE_NOCDATA;
static_assert(options == 16640);
// Nothing is said on standard error, and nothing fetched.
constexpr int quiet = XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET;

constexpr std::size_t mostAttributes = 5000;
// Of a document whose letters aren't bytes, so that its tags can't be seen from outside.
constexpr std::size_t mostBytesUnseen = 1U << 20U;
constexpr std::size_t mostExpanded = 16U << 20U;

// The parser compares each attribute of a tag with all before it.
bool hasEndlessTag(std::string_view bytes) {
  const bool isUnseen =
      bytes.size() > 1 && (bytes.substr(0, 4).find('\0') != std::string::npos ||
                           static_cast<unsigned char>(bytes[0]) >= 0xFE ||
                           bytes.substr(0, 200).find("encoding") != std::string::npos);
  if (isUnseen && bytes.size() > mostBytesUnseen &&
      bytes.substr(0, 200).find("UTF-8") == std::string::npos &&
      bytes.substr(0, 200).find("utf-8") == std::string::npos) {
    return true;
  }
  std::size_t attributes = 0;
  char quote = 0;
  bool isInTag = false;
  for (const char c : bytes) {
    if (!isInTag) {
      isInTag = c == '<';
      attributes = 0;
      quote = 0;
    } else if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      isInTag = false;
    } else if (c == '=' && ++attributes > mostAttributes) {
      return true;
    }
  }
  return false;
}

/// How much text the references of a document stand for.
class Expansion {
 public:
  explicit Expansion(xmlDoc* document) : document_(document) {}

  [[nodiscard]] bool isBounded() {
    std::size_t sum = 0;
    for (xmlNode* node = document_->children; node; node = next(node)) {
      sum += ofNode(node);
      if (node->type == XML_ELEMENT_NODE) {
        for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
          for (xmlNode* part = attribute->children; part; part = part->next) sum += ofNode(part);
          if (sum > mostExpanded) return false;
        }
      }
      if (sum > mostExpanded) return false;
    }
    return true;
  }

 private:
  // In the order of the document; what an entity holds is not of it.
  static xmlNode* next(xmlNode* node) {
    if (node->type == XML_ELEMENT_NODE && node->children) return node->children;
    while (node && !node->next) {
      node = node->parent && node->parent->type == XML_ELEMENT_NODE ? node->parent : nullptr;
    }
    return node ? node->next : nullptr;
  }
  std::size_t ofNode(const xmlNode* node) {
    return node->type == XML_ENTITY_REF_NODE ? ofEntity(stringOf(node->name), 0) : 0;
  }
  std::size_t ofEntity(const std::string& name, int depth) {
    const auto known = sizes_.find(name);
    if (known != sizes_.end()) return known->second;
    constexpr int deepest = 40;
    const xmlEntity* const entity = xmlGetDocEntity(document_, XMLText(name).get());
    if (!entity || !entity->content) return 0;
    if (depth > deepest) return mostExpanded + 1;
    // A name that is being looked at names itself.
    sizes_[name] = mostExpanded + 1;
    const std::string content = stringOf(entity->content);
    std::size_t size = content.size();
    for (std::size_t at = content.find('&'); at != std::string::npos && size <= mostExpanded;
         at = content.find('&', at + 1)) {
      const std::size_t end = content.find(';', at);
      if (end == std::string::npos) break;
      if (content[at + 1] != '#') size += ofEntity(content.substr(at + 1, end - at - 1), depth + 1);
    }
    return sizes_[name] = std::min(size, mostExpanded + 1);
  }

  xmlDoc* document_;
  std::unordered_map<std::string, std::size_t> sizes_;
};

}  // namespace

void DocumentFreed::operator()(xmlDoc* document) const {
  delete static_cast<StringCache*>(document->_private);
  xmlFreeDoc(document);
}

OwnDocument owned(xmlDoc* document) {
  if (document) document->_private = new StringCache();
  return OwnDocument(document);
}

OwnDocument parsed(std::string_view bytes, NSError* error) {
  xmlInitParser();
  OwnDocument document;
  const bool isTooMuch = bytes.size() > std::numeric_limits<int>::max() / 2 || hasEndlessTag(bytes);
  if (!isTooMuch) {
    document = owned(xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                                   options | quiet));
  }
  if (document && !Expansion(document.get()).isBounded()) document.reset();
  if (!document) fail(error, kGDataXMLErrorDomain, -1, "no XML, or one beyond all bounds");
  return document;
}

}  // namespace zym::xmlnodes
