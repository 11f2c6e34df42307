#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>

namespace zym {

struct XMLTree;
class NSXMLNodes;

/// An element of an `NSXMLDocument`. Costs nothing to copy, and is good for as long as the
/// document.
class NSXMLNode {
 public:
  NSXMLNode(const XMLTree& tree, std::uint32_t element) noexcept
      : tree_(&tree), element_(element) {}

  /// As it is spelled, prefix included.
  [[nodiscard]] std::string_view name() const noexcept;
  /// All text in the element and in those within it, in order and as it stands.
  [[nodiscard]] std::string_view stringValue() const noexcept;
  /// The elements in it, in order. Texts, comments and processing instructions aren't among them.
  [[nodiscard]] NSXMLNodes children() const noexcept;
  /// The element after it in the same element; absent after the last.
  [[nodiscard]] std::optional<NSXMLNode> nextSibling() const noexcept;

 private:
  const XMLTree* tree_;
  std::uint32_t element_;
};

/// An element and those after it, in order.
class NSXMLNodes {
 public:
  class iterator {
   public:
    explicit iterator(std::optional<NSXMLNode> at) noexcept : at_(at) {}
    const NSXMLNode& operator*() const noexcept { return *at_; }
    const NSXMLNode* operator->() const noexcept { return &*at_; }
    iterator& operator++() noexcept {
      at_ = at_->nextSibling();
      return *this;
    }
    bool operator==(std::default_sentinel_t) const noexcept { return !at_; }

   private:
    std::optional<NSXMLNode> at_;
  };

  explicit NSXMLNodes(std::optional<NSXMLNode> first) noexcept : first_(first) {}
  [[nodiscard]] iterator begin() const noexcept { return iterator(first_); }
  [[nodiscard]] std::default_sentinel_t end() const noexcept { return {}; }
  /// Absent when there is none.
  [[nodiscard]] std::optional<NSXMLNode> firstObject() const noexcept { return first_; }

 private:
  std::optional<NSXMLNode> first_;
};

}  // namespace zym
