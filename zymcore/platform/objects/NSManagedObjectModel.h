#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/platform/objects/NSEntityDescription.h"
#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistDictionary.h"

namespace zym {

class NSManagedObject;
struct NSManagedObjectSeed;

/// The description of all entities of a store. It comes from a property list of this form:
///
///     version: "1"
///     entities:
///       Author:
///         attributes: { name: "string", born: "date", rank: "integer", text: "document" }
///         relationships:
///           books: { destination: "Book", inverse: "author", toMany: true, deleteRule: "cascade" }
///
/// The kinds of attribute are "string", "integer", "real", "date", "data" and "document". A
/// relationship is to one object unless "toMany" is true, and its "deleteRule" is "nullify" unless
/// it says "cascade". Every relationship has an inverse. Names begin with a letter and go on with
/// letters, digits and underscores, at most 64; two that differ only in case are refused.
class NSManagedObjectModel {
 public:
  using Factory = std::function<std::unique_ptr<NSManagedObject>(const NSManagedObjectSeed&)>;

  // What a model has at most, and an entity of attributes and of relationships.
  static constexpr std::size_t mostEntities = 256;
  static constexpr std::size_t mostProperties = 64;

  /// The model in the property list at that place, of either form. Absent, with an error, when
  /// there is none or it is no model.
  [[nodiscard]] static std::shared_ptr<NSManagedObjectModel> initWithContentsOfURL(
      const std::filesystem::path& url, NSError* error = nullptr);
  [[nodiscard]] static std::shared_ptr<NSManagedObjectModel> initWithPropertyList(
      const PlistDictionary& description, NSError* error = nullptr);

  [[nodiscard]] const std::string& versionIdentifier() const noexcept { return version_; }
  [[nodiscard]] const std::vector<NSEntityDescription>& entities() const noexcept {
    return entities_;
  }
  /// Null when there is none of that name.
  [[nodiscard]] const NSEntityDescription* entityNamed(std::string_view name) const noexcept;
  /// The description that it was made from.
  [[nodiscard]] const PlistDictionary& propertyList() const noexcept { return description_; }
  /// For each entity a text that differs when its attributes, their kinds, or its relationships
  /// differ.
  [[nodiscard]] const PlistDictionary& entityVersionHashes() const noexcept { return hashes_; }

  /// Whether a store with that metadata has exactly this model's entities. There is only the
  /// default configuration, which is the absent one; no metadata is never compatible.
  [[nodiscard]] bool isConfiguration_compatibleWithStoreMetadata(
      const std::optional<std::string>& configuration,
      const std::optional<PlistDictionary>& metadata) const;

  /// Makes every object of the entity a `Class`, which needs a constructor from
  /// `const NSManagedObjectSeed&`. Before any context uses the model. Throws
  /// `NSInvalidArgumentException` for an entity that the model lacks.
  template <class Class>
  void setManagedObjectClass(std::string_view entityName) {
    setManagedObjectFactory(entityName, [](const NSManagedObjectSeed& seed) {
      return std::unique_ptr<NSManagedObject>(new Class(seed));
    });
  }
  void setManagedObjectFactory(std::string_view entityName, Factory factory);
  /// A new object, of the class of its entity.
  [[nodiscard]] std::unique_ptr<NSManagedObject> newObject(const NSManagedObjectSeed& seed) const;

 private:
  NSManagedObjectModel() = default;
  void take(const PlistDictionary& description);
  void resolve(const NSEntityDescription& entity, NSRelationshipDescription& relationship) const;

  std::string version_;
  std::vector<NSEntityDescription> entities_;
  PlistDictionary description_;
  PlistDictionary hashes_;
  std::vector<Factory> factories_;
};

}  // namespace zym
