#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "zymcore/platform/objects/NSManagedObject.h"
#include "zymcore/platform/objects/NSManagedObjectContext.h"
#include "zymcore/platform/objects/NSPredicate.h"
#include "zymcore/platform/objects/NSSortDescriptor.h"
#include "zymcore/platform/values/PlistArray.h"

namespace zym {

/// Fetches by the name of an entity. An absent context is the main one, an absent sort key no
/// order. Every fetch runs inside the context's `performBlockAndWait`, so one from another thread
/// waits. The result is absent when the store can't be read, which callers treat as nothing found.
class ZYMEntityFetch {
 public:
  using Objects = std::optional<std::vector<NSManagedObject*>>;

  [[nodiscard]] static Objects findAllObjectsInContext_predicate_sortDescriptor(
      std::string_view entity, NSManagedObjectContext* context,
      const std::optional<NSPredicate>& predicate,
      const std::optional<NSSortDescriptor>& sortDescriptor);
  [[nodiscard]] static Objects objectsInContext_matchingKey_andValue_sortedOnKey(
      std::string_view entity, NSManagedObjectContext* context, KeyName key,
      const std::optional<PlistValue>& value, const std::optional<KeyName>& sortKey);

  /// The object with that uuid, when there is exactly one. An absent uuid is nobody's.
  [[nodiscard]] static NSManagedObject* onlyObjectWithUUID(std::string_view entity,
                                                           NSManagedObjectContext* context,
                                                           std::optional<std::string_view> uuid);
};

/// The records of the objects, in order; an object that has none is passed over.
[[nodiscard]] PlistArray dictionaryRepresentationOfEntityArray(
    const std::vector<NSManagedObject*>& objects);
/// The records of a set of objects, sorted on an attribute.
[[nodiscard]] PlistArray dictionaryRepresentationsSortedOnEntityKey_ascending_fromSet(
    KeyName key, bool ascending, const std::vector<NSManagedObject*>& objects);
/// The same by "index", ascending.
[[nodiscard]] PlistArray dictionaryRepresentationsSortedOnIndexKeyFromSet(
    const std::vector<NSManagedObject*>& objects);

/// The fetches of one class of object. `Class::entityName` names its entity.
template <class Class>
class ZYMEntityFinders {
 public:
  using Objects = std::optional<std::vector<Class*>>;

  /// Null when the model lacks it.
  [[nodiscard]] static const NSEntityDescription* entityDescriptionInContext(
      NSManagedObjectContext& context) {
    return context.persistentStoreCoordinator()->managedObjectModel().entityNamed(
        Class::entityName);
  }
  /// All objects in the main context, in no order.
  [[nodiscard]] static Objects findAllObjects() {
    return findAllObjectsInContext_predicate_sortDescriptor(nullptr, std::nullopt, std::nullopt);
  }
  /// All objects in the main context, ascending on the key.
  [[nodiscard]] static Objects findAllObjectsSortedOnKey(KeyName key) {
    return findAllObjectsInContext_predicate_sortDescriptor(nullptr, std::nullopt,
                                                            NSSortDescriptor(key, true));
  }
  [[nodiscard]] static Objects objectsMatchingKey_andValue_sortedOnKey(
      KeyName key, const std::optional<PlistValue>& value, const std::optional<KeyName>& sortKey) {
    return objectsInContext_matchingKey_andValue_sortedOnKey(nullptr, key, value, sortKey);
  }
  [[nodiscard]] static Objects objectsInContext_matchingKey_andValue_sortedOnKey(
      NSManagedObjectContext* context, KeyName key, const std::optional<PlistValue>& value,
      const std::optional<KeyName>& sortKey) {
    return ofClass(ZYMEntityFetch::objectsInContext_matchingKey_andValue_sortedOnKey(
        Class::entityName, context, key, value, sortKey));
  }
  [[nodiscard]] static Objects findAllObjectsInContext_predicate_sortDescriptor(
      NSManagedObjectContext* context, const std::optional<NSPredicate>& predicate,
      const std::optional<NSSortDescriptor>& sortDescriptor) {
    return ofClass(ZYMEntityFetch::findAllObjectsInContext_predicate_sortDescriptor(
        Class::entityName, context, predicate, sortDescriptor));
  }
  /// The object with that uuid, when there is exactly one; an absent uuid is nobody's. An absent
  /// context is the main one.
  [[nodiscard]] static Class* onlyObjectWithUUID(NSManagedObjectContext* context,
                                                 std::optional<std::string_view> uuid) {
    return static_cast<Class*>(
        ZYMEntityFetch::onlyObjectWithUUID(Class::entityName, context, uuid));
  }
  [[nodiscard]] static Class& insertInContext(NSManagedObjectContext& context) {
    return static_cast<Class&>(*context.insertNewObjectForEntityForName(Class::entityName));
  }

 private:
  static Objects ofClass(ZYMEntityFetch::Objects objects) {
    if (!objects) return std::nullopt;
    std::vector<Class*> result;
    result.reserve(objects->size());
    for (NSManagedObject* object : *objects) result.push_back(static_cast<Class*>(object));
    return result;
  }
};

}  // namespace zym
