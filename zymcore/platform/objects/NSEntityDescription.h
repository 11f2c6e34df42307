#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "zymcore/platform/values/PlistKey.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// The kinds of attribute. A `Document` is data that lies apart from its object and is read only
/// when it is asked for.
enum class NSAttributeType { String, Integer, Real, Date, Data, Document };

/// What becomes of the objects at the other end when an object is deleted: their end is emptied, or
/// they are deleted too.
enum class NSDeleteRule { Nullify, Cascade };

struct NSAttributeDescription {
  std::string name;
  NSAttributeType type = NSAttributeType::String;

  /// Whether the attribute can hold the value: a string, date or data the kind it says, an
  /// `Integer` an integer or boolean, a `Real` any number.
  [[nodiscard]] bool accepts(const PlistValue& value) const noexcept;
};

/// One end of a relationship. The other end is a relationship of the destination.
struct NSRelationshipDescription {
  std::string name;
  std::string destinationName;
  std::string inverseName;
  bool isToMany = false;
  NSDeleteRule deleteRule = NSDeleteRule::Nullify;
  /// The positions of the destination in the model and of the inverse in the destination.
  std::size_t destination = 0;
  std::size_t inverse = 0;
};

/// One kind of object: its attributes and relationships, each in the order of the model.
class NSEntityDescription {
 public:
  NSEntityDescription(std::string name, std::size_t position,
                      std::vector<NSAttributeDescription> attributes,
                      std::vector<NSRelationshipDescription> relationships);

  [[nodiscard]] const std::string& name() const noexcept { return name_; }
  /// Its position in the model.
  [[nodiscard]] std::size_t position() const noexcept { return position_; }
  [[nodiscard]] const std::vector<NSAttributeDescription>& attributes() const noexcept {
    return attributes_;
  }
  [[nodiscard]] const std::vector<NSRelationshipDescription>& relationships() const noexcept {
    return relationships_;
  }

  /// The position of the attribute or relationship of that name. For a key that is a constant this
  /// costs a few nanoseconds.
  [[nodiscard]] std::optional<std::size_t> attributeIndex(KeyName key) const noexcept;
  [[nodiscard]] std::optional<std::size_t> relationshipIndex(KeyName key) const noexcept;

 private:
  friend class NSManagedObjectModel;

  std::string name_;
  std::size_t position_;
  std::vector<NSAttributeDescription> attributes_;
  std::vector<NSRelationshipDescription> relationships_;
  std::vector<std::uint32_t> attributeHashes_;
  std::vector<std::uint32_t> relationshipHashes_;
};

}  // namespace zym
