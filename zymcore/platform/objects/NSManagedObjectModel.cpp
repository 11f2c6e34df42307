#include "zymcore/platform/objects/NSManagedObjectModel.h"

#include <glib.h>

#include <algorithm>
#include <set>
#include <utility>

#include "zymcore/platform/formats/NSPropertyListSerialization.h"
#include "zymcore/platform/host/NSFileManager.h"
#include "zymcore/platform/objects/NSManagedObject.h"
#include "zymcore/platform/objects/NSPersistentStoreCoordinator.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NSException.h"

namespace zym {
namespace {

constexpr std::size_t mostModelBytes = 4U << 20U;
constexpr std::size_t longestName = 64;

constexpr KeyName versionKey{"version"};
constexpr KeyName entitiesKey{"entities"};
constexpr KeyName attributesKey{"attributes"};
constexpr KeyName relationshipsKey{"relationships"};
constexpr KeyName destinationKey{"destination"};
constexpr KeyName inverseKey{"inverse"};
constexpr KeyName toManyKey{"toMany"};
constexpr KeyName deleteRuleKey{"deleteRule"};

constexpr std::pair<std::string_view, NSAttributeType> attributeTypes[] = {
    {"string", NSAttributeType::String}, {"integer", NSAttributeType::Integer},
    {"real", NSAttributeType::Real},     {"date", NSAttributeType::Date},
    {"data", NSAttributeType::Data},     {"document", NSAttributeType::Document}};

/// What is wrong with a description, in words.
struct Refusal {
  std::string reason;
};

bool isLetter(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::string checkedName(std::string_view name) {
  const bool isName = !name.empty() && name.size() <= longestName && isLetter(name.front()) &&
                      std::all_of(name.begin(), name.end(), [](char c) {
                        return isLetter(c) || (c >= '0' && c <= '9') || c == '_';
                      });
  if (!isName) throw Refusal{"\"" + std::string(name.substr(0, longestName)) + "\" is no name"};
  return std::string(name);
}

/// Names of which no two differ only in case.
class Names {
 public:
  void add(const std::string& name) {
    std::string lower = name;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return static_cast<char>(isLetter(c) ? c | 0x20 : c); });
    if (lower.starts_with("sqlite_")) throw Refusal{"\"" + name + "\" is reserved"};
    if (!names_.insert(std::move(lower)).second) throw Refusal{"\"" + name + "\" stands twice"};
  }

 private:
  std::set<std::string> names_;
};

std::string requiredText(const PlistDictionary& description, KeyName key) {
  const std::string* const text = description.string(key);
  if (!text) throw Refusal{"a relationship has no \"" + std::string(key.text()) + "\""};
  return *text;
}

/// The dictionary under the key; an empty one where there is none.
PlistDictionary members(const PlistDictionary& description, KeyName key) {
  const PlistValue* const value = description.find(key);
  if (!value) return {};
  if (!value->dictionary()) {
    throw Refusal{"\"" + std::string(key.text()) + "\" is no dictionary"};
  }
  return *value->dictionary();
}

NSAttributeDescription attributeFrom(const PlistEntry& entry) {
  const std::string* const kind = entry.value.string();
  const auto* const found =
      std::find_if(std::begin(attributeTypes), std::end(attributeTypes),
                   [&](const auto& candidate) { return kind && candidate.first == *kind; });
  NSAttributeDescription attribute{checkedName(entry.key.text()), {}};
  if (found == std::end(attributeTypes)) {
    throw Refusal{"the attribute \"" + attribute.name + "\" is of no known kind"};
  }
  attribute.type = found->second;
  return attribute;
}

NSDeleteRule deleteRuleFrom(const PlistDictionary& description) {
  const PlistValue* const rule = description.find(deleteRuleKey);
  if (!rule || *rule == PlistValue("nullify")) return NSDeleteRule::Nullify;
  if (*rule == PlistValue("cascade")) return NSDeleteRule::Cascade;
  throw Refusal{"a relationship has an unknown delete rule"};
}

NSRelationshipDescription relationshipFrom(const PlistEntry& entry) {
  const std::string name = checkedName(entry.key.text());
  const PlistDictionary* const description = entry.value.dictionary();
  if (!description) throw Refusal{"the relationship \"" + name + "\" is no dictionary"};
  NSRelationshipDescription relationship;
  relationship.name = name;
  relationship.destinationName = requiredText(*description, destinationKey);
  relationship.inverseName = requiredText(*description, inverseKey);
  relationship.isToMany = description->boolValue(toManyKey);
  relationship.deleteRule = deleteRuleFrom(*description);
  return relationship;
}

NSEntityDescription entityFrom(const PlistEntry& entry, std::size_t position) {
  const std::string name = checkedName(entry.key.text());
  const PlistDictionary* const description = entry.value.dictionary();
  if (!description) throw Refusal{"the entity \"" + name + "\" is no dictionary"};
  const PlistDictionary attributeList = members(*description, attributesKey);
  const PlistDictionary relationshipList = members(*description, relationshipsKey);
  if (attributeList.size() > NSManagedObjectModel::mostProperties ||
      relationshipList.size() > NSManagedObjectModel::mostProperties) {
    throw Refusal{"the entity \"" + name + "\" has too many properties"};
  }
  Names names;
  std::vector<NSAttributeDescription> attributes;
  for (const PlistEntry& attribute : attributeList) {
    attributes.push_back(attributeFrom(attribute));
    names.add(attributes.back().name);
  }
  std::vector<NSRelationshipDescription> relationships;
  for (const PlistEntry& relationship : relationshipList) {
    relationships.push_back(relationshipFrom(relationship));
    names.add(relationships.back().name);
  }
  return {name, position, std::move(attributes), std::move(relationships)};
}

// The order in which properties stand in a description means nothing.
std::string versionHash(const NSEntityDescription& entity) {
  std::set<std::string> lines;
  for (const NSAttributeDescription& attribute : entity.attributes()) {
    const auto* const kind =
        std::find_if(std::begin(attributeTypes), std::end(attributeTypes),
                     [&](const auto& candidate) { return candidate.second == attribute.type; });
    lines.insert("attribute " + attribute.name + " " + std::string(kind->first));
  }
  for (const NSRelationshipDescription& relationship : entity.relationships()) {
    lines.insert("relationship " + relationship.name +
                 (relationship.isToMany ? " many " : " one ") + relationship.destinationName + " " +
                 relationship.inverseName);
  }
  std::string text = entity.name() + "\n";
  for (const std::string& line : lines) text += line + "\n";
  char* const checksum = g_compute_checksum_for_data(
      G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(text.data()), text.size());
  std::string hash = checksum;
  g_free(checksum);
  return hash;
}

}  // namespace

std::shared_ptr<NSManagedObjectModel> NSManagedObjectModel::initWithContentsOfURL(
    const std::filesystem::path& url, NSError* error) {
  const auto bytes = NSFileManager::contentsAtPath(url.string(), mostModelBytes, error);
  if (!bytes) return nullptr;
  const auto description = NSPropertyListSerialization::propertyListWithData(*bytes, error);
  if (!description) return nullptr;
  if (!description->dictionary()) {
    fail(error, NSCocoaErrorDomain, NSManagedObjectModelInvalidError,
         "The object model is no dictionary.");
    return nullptr;
  }
  return initWithPropertyList(*description->dictionary(), error);
}

std::shared_ptr<NSManagedObjectModel> NSManagedObjectModel::initWithPropertyList(
    const PlistDictionary& description, NSError* error) {
  try {
    const std::shared_ptr<NSManagedObjectModel> model(new NSManagedObjectModel());
    model->take(description);
    return model;
  } catch (const Refusal& refusal) {
    fail(error, NSCocoaErrorDomain, NSManagedObjectModelInvalidError,
         "The object model can't be used: " + refusal.reason + ".");
    return nullptr;
  }
}

void NSManagedObjectModel::take(const PlistDictionary& description) {
  const PlistDictionary entities = members(description, entitiesKey);
  if (entities.size() > mostEntities) throw Refusal{"it has too many entities"};
  Names names;
  for (const PlistEntry& entry : entities) {
    entities_.push_back(entityFrom(entry, entities_.size()));
    names.add(entities_.back().name());
  }
  if (entities_.empty()) throw Refusal{"it has no entities"};
  for (NSEntityDescription& entity : entities_) {
    for (NSRelationshipDescription& relationship : entity.relationships_) {
      resolve(entity, relationship);
    }
  }
  version_ = description.stringValue(versionKey);
  description_ = description;
  for (const NSEntityDescription& entity : entities_) {
    hashes_.set(KeyName(entity.name()), versionHash(entity));
  }
  factories_.resize(entities_.size());
}

void NSManagedObjectModel::resolve(const NSEntityDescription& entity,
                                   NSRelationshipDescription& relationship) const {
  const std::string name = entity.name() + "." + relationship.name;
  const NSEntityDescription* const destination = entityNamed(relationship.destinationName);
  if (!destination) throw Refusal{"the destination of " + name + " is missing"};
  const auto inverse = destination->relationshipIndex(KeyName(relationship.inverseName));
  if (!inverse) throw Refusal{"the inverse of " + name + " is missing"};
  const NSRelationshipDescription& other = destination->relationships()[*inverse];
  if (other.destinationName != entity.name() || other.inverseName != relationship.name) {
    throw Refusal{name + " and its inverse don't agree"};
  }
  if (&other == &relationship) throw Refusal{name + " is its own inverse"};
  relationship.destination = destination->position();
  relationship.inverse = *inverse;
}

const NSEntityDescription* NSManagedObjectModel::entityNamed(std::string_view name) const noexcept {
  const auto found =
      std::find_if(entities_.begin(), entities_.end(),
                   [&](const NSEntityDescription& entity) { return entity.name() == name; });
  return found == entities_.end() ? nullptr : &*found;
}

bool NSManagedObjectModel::isConfiguration_compatibleWithStoreMetadata(
    const std::optional<std::string>& configuration,
    const std::optional<PlistDictionary>& metadata) const {
  if (configuration || !metadata) return false;
  const PlistDictionary* const hashes = metadata->dictionary(NSStoreModelVersionHashesKey);
  return hashes && *hashes == hashes_;
}

void NSManagedObjectModel::setManagedObjectFactory(std::string_view entityName, Factory factory) {
  const NSEntityDescription* const entity = entityNamed(entityName);
  if (!entity) {
    throw NSException(NSInvalidArgumentException,
                      "the model has no entity named " + std::string(entityName));
  }
  factories_[entity->position()] = std::move(factory);
}

std::unique_ptr<NSManagedObject> NSManagedObjectModel::newObject(
    const NSManagedObjectSeed& seed) const {
  const Factory& factory = factories_[seed.objectID.entity->position()];
  return factory ? factory(seed) : std::make_unique<NSManagedObject>(seed);
}

}  // namespace zym
