#include "zymcore/platform/objects/NSManagedObject.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/platform/objects/internal/ObjectGraph.h"
#include "zymcore/platform/values/NSException.h"

namespace zym {
namespace {

std::string nameOf(const NSManagedObject& object, const std::string& property) {
  return object.entity().name() + "." + property;
}

[[noreturn]] void unknown(const NSManagedObject& object, std::string_view key) {
  throw NSException(NSInvalidArgumentException,
                    "there is no " + nameOf(object, std::string(key)) + " of that kind");
}

std::size_t attributeNamed(const NSManagedObject& object, KeyName key) {
  const auto attribute = object.entity().attributeIndex(key);
  if (!attribute) unknown(object, key.text());
  return *attribute;
}

std::size_t relationshipNamed(const NSManagedObject& object, KeyName key, bool isToMany) {
  const auto relationship = object.entity().relationshipIndex(key);
  if (!relationship || object.entity().relationships()[*relationship].isToMany != isToMany) {
    unknown(object, key.text());
  }
  return *relationship;
}

const NSAttributeDescription& attributeAt(const NSManagedObject& object, std::size_t attribute) {
  if (attribute >= object.entity().attributes().size()) unknown(object, std::to_string(attribute));
  return object.entity().attributes()[attribute];
}

void requireDestination(const NSManagedObject& object, std::size_t relationship,
                        const NSManagedObject& other) {
  const NSRelationshipDescription& description = object.entity().relationships()[relationship];
  if (&other.managedObjectContext() != &object.managedObjectContext() ||
      other.entity().position() != description.destination) {
    throw NSException(NSInvalidArgumentException, nameOf(object, description.name) +
                                                      " can't hold an object of another entity or "
                                                      "context");
  }
}

/// The value as the attribute keeps it, so that memory and store agree.
std::optional<PlistValue> normalized(PlistValue value, NSAttributeType type) {
  if (type == NSAttributeType::Integer) return PlistValue(value.integerValue());
  if (type == NSAttributeType::Real) {
    const double number = value.doubleValue();
    return std::isnan(number) ? std::nullopt : std::optional<PlistValue>(number);
  }
  if (type == NSAttributeType::Date && std::isnan(value.date()->timeIntervalSinceReferenceDate())) {
    return std::nullopt;
  }
  return value;
}

/// Runs what may fail to read the store where there is no way to answer so.
template <class Work>
auto orThrow(const NSManagedObject& object, Work work) {
  try {
    return work();
  } catch (const StoreFailure& failure) {
    throw NSException(NSObjectInaccessibleException, object.objectID().URIRepresentation() +
                                                         " can't be read. " +
                                                         failure.error.localizedDescription);
  }
}

}  // namespace

NSManagedObject::NSManagedObject(const NSManagedObjectSeed& seed)
    : context_(seed.context), id_(seed.objectID) {}

NSManagedObject::~NSManagedObject() = default;

ObjectGraph& NSManagedObject::graph() const noexcept {
  return *context_.graph_;
}

const PlistValue* NSManagedObject::valueForKey(KeyName key) const {
  return valueAtIndex(attributeNamed(*this, key));
}

const PlistValue* NSManagedObject::valueAtIndex(std::size_t attribute) const {
  if (attributeAt(*this, attribute).type == NSAttributeType::Document) {
    throw NSException(NSInvalidArgumentException,
                      nameOf(*this, attributeAt(*this, attribute).name) + " is a document");
  }
  const Values* const values =
      values_ ? values_.get() : orThrow(*this, [&] { return graph().valuesOf(*this); });
  if (!values || !values->attributes[attribute]) return nullptr;
  return &*values->attributes[attribute];
}

const std::string* NSManagedObject::stringForKey(KeyName key) const {
  const PlistValue* const value = valueForKey(key);
  return value ? value->string() : nullptr;
}

void NSManagedObject::setValue_forKey(std::optional<PlistValue> value, KeyName key) {
  setValue_atIndex(std::move(value), attributeNamed(*this, key));
}

void NSManagedObject::setValue_atIndex(std::optional<PlistValue> value, std::size_t attribute) {
  const NSAttributeDescription& description = attributeAt(*this, attribute);
  if (value && !description.accepts(*value)) {
    throw NSException(NSInvalidArgumentException, "Unacceptable type of value for attribute " +
                                                      nameOf(*this, description.name) + ": " +
                                                      value->className());
  }
  if (value) value = normalized(std::move(*value), description.type);
  orThrow(*this, [&] { graph().setAttribute(*this, attribute, std::move(value)); });
}

std::optional<NSData> NSManagedObject::documentForKey(KeyName key, NSError* error) const {
  return documentAtIndex(attributeNamed(*this, key), error);
}

std::optional<NSData> NSManagedObject::documentAtIndex(std::size_t attribute,
                                                       NSError* error) const {
  if (attributeAt(*this, attribute).type != NSAttributeType::Document) {
    throw NSException(NSInvalidArgumentException,
                      nameOf(*this, attributeAt(*this, attribute).name) + " is no document");
  }
  try {
    return graph().document(*this, attribute);
  } catch (const StoreFailure& failure) {
    if (error) *error = failure.error;
    return std::nullopt;
  }
}

void NSManagedObject::setDocument_forKey(std::optional<NSData> document, KeyName key) {
  setDocument_atIndex(std::move(document), attributeNamed(*this, key));
}

void NSManagedObject::setDocument_atIndex(std::optional<NSData> document, std::size_t attribute) {
  setValue_atIndex(document ? std::optional<PlistValue>(std::move(*document)) : std::nullopt,
                   attribute);
}

NSManagedObject* NSManagedObject::objectForKey(KeyName relationship) const {
  const std::size_t position = relationshipNamed(*this, relationship, false);
  return orThrow(*this, [&] { return graph().toOne(*this, position); });
}

void NSManagedObject::setObject_forKey(NSManagedObject* object, KeyName relationship) {
  const std::size_t position = relationshipNamed(*this, relationship, false);
  if (object) requireDestination(*this, position, *object);
  orThrow(*this, [&] { graph().setToOne(*this, position, object); });
}

std::vector<NSManagedObject*> NSManagedObject::objectsForKey(KeyName relationship) const {
  const std::size_t position = relationshipNamed(*this, relationship, true);
  return orThrow(*this, [&]() -> std::vector<NSManagedObject*> {
    if (!graph().valuesOf(*this) || !alive_) return {};
    return graph().toMany(const_cast<NSManagedObject&>(*this), position);
  });
}

void NSManagedObject::setObjects_forKey(const std::vector<NSManagedObject*>& objects,
                                        KeyName relationship) {
  const std::size_t position = relationshipNamed(*this, relationship, true);
  for (const NSManagedObject* const object : objects) requireDestination(*this, position, *object);
  const std::unordered_set<const NSManagedObject*> wanted(objects.begin(), objects.end());
  orThrow(*this, [&] {
    for (NSManagedObject* const object : objectsForKey(relationship)) {
      if (!wanted.contains(object)) graph().take(*this, position, *object);
    }
    for (NSManagedObject* const object : objects) graph().add(*this, position, *object);
  });
}

void NSManagedObject::addObject_forKey(NSManagedObject& object, KeyName relationship) {
  const std::size_t position = relationshipNamed(*this, relationship, true);
  requireDestination(*this, position, object);
  orThrow(*this, [&] { graph().add(*this, position, object); });
}

void NSManagedObject::removeObject_forKey(NSManagedObject& object, KeyName relationship) {
  const std::size_t position = relationshipNamed(*this, relationship, true);
  requireDestination(*this, position, object);
  orThrow(*this, [&] { graph().take(*this, position, object); });
}

}  // namespace zym
