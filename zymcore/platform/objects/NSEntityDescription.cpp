#include "zymcore/platform/objects/NSEntityDescription.h"

#include <utility>

namespace zym {
namespace {

template <class Property>
std::vector<std::uint32_t> hashesOf(const std::vector<Property>& properties) {
  std::vector<std::uint32_t> hashes;
  hashes.reserve(properties.size());
  for (const Property& property : properties) hashes.push_back(KeyName(property.name).hash());
  return hashes;
}

template <class Property>
std::optional<std::size_t> positionOf(KeyName key, const std::vector<std::uint32_t>& hashes,
                                      const std::vector<Property>& properties) noexcept {
  for (std::size_t i = 0; i < hashes.size(); ++i) {
    if (hashes[i] == key.hash() && properties[i].name == key.text()) return i;
  }
  return std::nullopt;
}

}  // namespace

bool NSAttributeDescription::accepts(const PlistValue& value) const noexcept {
  switch (type) {
    case NSAttributeType::String:
      return value.string() != nullptr;
    case NSAttributeType::Integer:
      return value.integer() || value.boolean();
    case NSAttributeType::Real:
      return value.isNumber();
    case NSAttributeType::Date:
      return value.date() != nullptr;
    case NSAttributeType::Data:
    case NSAttributeType::Document:
      return value.data() != nullptr;
  }
  return false;
}

NSEntityDescription::NSEntityDescription(std::string name, std::size_t position,
                                         std::vector<NSAttributeDescription> attributes,
                                         std::vector<NSRelationshipDescription> relationships)
    : name_(std::move(name)),
      position_(position),
      attributes_(std::move(attributes)),
      relationships_(std::move(relationships)),
      attributeHashes_(hashesOf(attributes_)),
      relationshipHashes_(hashesOf(relationships_)) {}

std::optional<std::size_t> NSEntityDescription::attributeIndex(KeyName key) const noexcept {
  return positionOf(key, attributeHashes_, attributes_);
}

std::optional<std::size_t> NSEntityDescription::relationshipIndex(KeyName key) const noexcept {
  return positionOf(key, relationshipHashes_, relationships_);
}

}  // namespace zym
