#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "zymcore/platform/objects/NSManagedObjectID.h"
#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSError.h"
#include "zymcore/platform/values/PlistKey.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

class NSManagedObject;
class NSManagedObjectContext;
class ObjectGraph;

/// Thrown where a value is asked for and the store, though open, can't be read any more.
inline constexpr const char* NSObjectInaccessibleException = "NSObjectInaccessibleException";

/// What a context makes an object from; only contexts make them.
struct NSManagedObjectSeed {
  NSManagedObjectContext& context;
  NSManagedObjectID objectID;
};

/// One record of the store as its context sees it. There is exactly one object for a row in a
/// context, which owns it and keeps it, deleted or not, for as long as it lives itself. Values are
/// read from the store when the first of them is asked for.
///
/// A key that the entity lacks, a value of a kind that its attribute doesn't accept, and an object
/// of another entity or context than a relationship leads to throw `NSInvalidArgumentException`. An
/// object belongs to the thread of its context.
class NSManagedObject {
 public:
  explicit NSManagedObject(const NSManagedObjectSeed& seed);
  virtual ~NSManagedObject();
  NSManagedObject(const NSManagedObject&) = delete;
  NSManagedObject& operator=(const NSManagedObject&) = delete;

  [[nodiscard]] const NSEntityDescription& entity() const noexcept { return *id_.entity; }
  [[nodiscard]] NSManagedObjectContext& managedObjectContext() const noexcept { return context_; }
  [[nodiscard]] NSManagedObjectID objectID() const noexcept { return id_; }

  /// Inserted and not saved yet.
  [[nodiscard]] bool isInserted() const noexcept { return alive_ && !stored_; }
  /// Changed since the last save.
  [[nodiscard]] bool isUpdated() const noexcept { return alive_ && stored_ && dirty_; }
  /// Deleted in this context, or found to be gone from the store. Its attributes can be read as
  /// long as they are known, its relationships are empty, and setting anything changes nothing.
  [[nodiscard]] bool isDeleted() const noexcept { return !alive_; }

  // Attributes, by key or by `NSEntityDescription::attributeIndex`.

  /// The value of an attribute, or null when it has none. It lasts until the object changes or the
  /// context saves, fetches, merges or rolls back. Not for a `Document`.
  [[nodiscard]] const PlistValue* valueForKey(KeyName key) const;
  [[nodiscard]] const PlistValue* valueAtIndex(std::size_t attribute) const;
  /// The text of a string attribute, under the same terms.
  [[nodiscard]] const std::string* stringForKey(KeyName key) const;

  /// Sets or removes the value of any attribute. A number that is none, in a `Real` or `Date`, is
  /// no value. Setting the value that is there changes nothing.
  void setValue_forKey(std::optional<PlistValue> value, KeyName key);
  void setValue_atIndex(std::optional<PlistValue> value, std::size_t attribute);

  /// The bytes of a `Document`, read from the store each time unless they were changed since the
  /// last save. Absent when there are none, and, with an error, when they can't be read.
  [[nodiscard]] std::optional<NSData> documentForKey(KeyName key, NSError* error = nullptr) const;
  [[nodiscard]] std::optional<NSData> documentAtIndex(std::size_t attribute,
                                                      NSError* error = nullptr) const;
  /// Sets or removes a `Document`.
  void setDocument_forKey(std::optional<NSData> document, KeyName key);
  void setDocument_atIndex(std::optional<NSData> document, std::size_t attribute);

  // Relationships. Both ends change together, whichever is changed.

  /// The object at the other end, or null.
  [[nodiscard]] NSManagedObject* objectForKey(KeyName relationship) const;
  void setObject_forKey(NSManagedObject* object, KeyName relationship);

  /// The objects at the other end: a set, saved ones in the order of their rows, those that came
  /// since after them.
  [[nodiscard]] std::vector<NSManagedObject*> objectsForKey(KeyName relationship) const;
  void setObjects_forKey(const std::vector<NSManagedObject*>& objects, KeyName relationship);
  /// Adding what is there already, and removing what isn't, changes nothing.
  void addObject_forKey(NSManagedObject& object, KeyName relationship);
  void removeObject_forKey(NSManagedObject& object, KeyName relationship);

 private:
  friend class ObjectGraph;
  struct Values;

  [[nodiscard]] ObjectGraph& graph() const noexcept;

  NSManagedObjectContext& context_;
  NSManagedObjectID id_;
  std::unique_ptr<Values> values_;
  std::int64_t version_ = 0;
  bool alive_ = true;
  bool stored_ = false;
  bool dirty_ = false;
};

}  // namespace zym
