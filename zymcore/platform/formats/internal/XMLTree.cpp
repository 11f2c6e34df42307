#include "zymcore/platform/formats/internal/XMLTree.h"

#include <utility>

#include "zymcore/platform/formats/NSXMLDocument.h"

namespace zym {

XMLTreeBuilder::XMLTreeBuilder(std::size_t mostText)
    : tree_(std::make_shared<XMLTree>()), open_{{XMLTree::none}} {
  tree_->text.reserve(mostText);
}

void XMLTreeBuilder::start(std::string_view name) {
  std::vector<XMLTree::Element>& elements = tree_->elements;
  const auto [known, isNew] =
      numberOfName_.try_emplace(name, static_cast<std::uint16_t>(tree_->names.size()));
  if (isNew && tree_->names.size() == NSXMLDocument::mostNames) {
    refusal_ = "more than " + std::to_string(NSXMLDocument::mostNames) + " names of elements";
  } else if (elements.size() == NSXMLDocument::mostElements) {
    refusal_ = "more than " + std::to_string(NSXMLDocument::mostElements) + " elements";
  } else if (levels() == NSXMLDocument::mostLevels) {
    refusal_ = "elements nested deeper than " + std::to_string(NSXMLDocument::mostLevels);
  }
  if (!refusal_.empty()) return;
  if (isNew) {
    tree_->names.emplace_back(name);
    openOfName_.push_back(0);
  }

  const auto element = static_cast<std::uint32_t>(elements.size());
  const auto text = static_cast<std::uint32_t>(tree_->text.size());
  Level& parent = open_.back();
  if (parent.lastChild != XMLTree::none) {
    elements[parent.lastChild].nextSibling = element;
  } else if (parent.element != XMLTree::none) {
    elements[parent.element].hasChildren = true;
  }
  parent.lastChild = element;
  elements.push_back({known->second, false, text, text, XMLTree::none});
  open_.push_back({element});
  ++openOfName_[known->second];
}

void XMLTreeBuilder::addText(std::string_view text) {
  Level& level = open_.back();
  if (!level.beginsWithText && level.lastChild == XMLTree::none) {
    level.beginsWithText = text.find_first_not_of(" \t\n") != std::string_view::npos;
  }
  tree_->text += text;
}

void XMLTreeBuilder::end() noexcept {
  XMLTree::Element& element = tree_->elements[open_.back().element];
  element.textEnd = static_cast<std::uint32_t>(tree_->text.size());
  --openOfName_[element.name];
  open_.pop_back();
}

void XMLTreeBuilder::endForgotten() noexcept {
  const Level level = open_.back();
  end();
  std::vector<XMLTree::Element>& elements = tree_->elements;
  XMLTree::Element& element = elements[level.element];
  if (!element.hasChildren) return;

  std::uint32_t lastWithin = XMLTree::none;
  std::uint32_t after = level.element + 1;
  while (!level.beginsWithText && elements[after].name != element.name) {
    lastWithin = std::exchange(after, elements[after].nextSibling);
    if (after == XMLTree::none) return;
  }
  if (lastWithin == XMLTree::none) {
    element.hasChildren = false;
  } else {
    elements[lastWithin].nextSibling = XMLTree::none;
  }
  element.textEnd = elements[after].textStart;
  element.nextSibling = after;
  open_.back().lastChild = level.lastChild;
}

void XMLTreeBuilder::endAll() noexcept {
  while (levels() > 0) end();
}

bool XMLTreeBuilder::isOpen(std::string_view name) const noexcept {
  const auto known = numberOfName_.find(name);
  return known != numberOfName_.end() && openOfName_[known->second] > 0;
}

std::string_view XMLTreeBuilder::name() const noexcept {
  return tree_->names[tree_->elements[open_.back().element].name];
}

}  // namespace zym
