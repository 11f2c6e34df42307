#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zym {

/// What an XML document holds: its elements in the order of their beginning, so that the first
/// child of one that has children stands right after it, and all its text in one piece, of which
/// each element has a stretch.
struct XMLTree {
  static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

  struct Element {
    std::uint16_t name;
    bool hasChildren;
    std::uint32_t textStart;
    std::uint32_t textEnd;
    std::uint32_t nextSibling;
  };

  std::vector<std::string> names;
  std::vector<Element> elements;
  std::string text;
};

/// Makes a tree of the beginnings, the ends and the texts of elements, within the bounds of
/// `NSXMLDocument`.
class XMLTreeBuilder {
 public:
  /// The texts will be that long at most.
  explicit XMLTreeBuilder(std::size_t mostText);

  /// An element begins in the innermost open one. The name stays where it is while the tree is
  /// made.
  void start(std::string_view name);
  /// To the innermost open element, which there must be.
  void addText(std::string_view text);
  /// The innermost open element ends.
  void end() noexcept;
  /// The same where its end was forgotten. If it holds text of its own it ended before the first
  /// element in it, otherwise before the first of its own name; from there on the elements come
  /// after it.
  void endForgotten() noexcept;
  /// All open elements end as they stand.
  void endAll() noexcept;

  [[nodiscard]] bool isEmpty() const noexcept { return tree_->elements.empty(); }
  /// How many elements are open.
  [[nodiscard]] std::size_t levels() const noexcept { return open_.size() - 1; }
  [[nodiscard]] bool isOpen(std::string_view name) const noexcept;
  // Of the innermost open element, which there must be:
  [[nodiscard]] std::string_view name() const noexcept;
  /// Whether it holds text and no element.
  [[nodiscard]] bool isTextOnly() const noexcept {
    return open_.back().beginsWithText && open_.back().lastChild == XMLTree::none;
  }

  /// Why no more elements are taken; empty as long as they are.
  [[nodiscard]] const std::string& refusal() const noexcept { return refusal_; }
  [[nodiscard]] std::shared_ptr<const XMLTree> takeTree() noexcept { return std::move(tree_); }

 private:
  struct Level {
    std::uint32_t element;
    std::uint32_t lastChild = XMLTree::none;
    bool beginsWithText = false;  // other than white space
  };

  std::shared_ptr<XMLTree> tree_;
  std::vector<Level> open_;  // the document first
  std::vector<std::uint32_t> openOfName_;
  std::map<std::string_view, std::uint16_t> numberOfName_;  // Chosen names don't slow it down.
  std::string refusal_;
};

}  // namespace zym
