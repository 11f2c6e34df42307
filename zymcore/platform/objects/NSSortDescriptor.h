#pragma once

#include <compare>
#include <string>
#include <vector>

#include "zymcore/platform/values/PlistKey.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

class NSManagedObject;

/// An order by one attribute, or by a relationship to one object, which orders by the identity of
/// that object. Absent comes first, then numbers by their size, dates by time, texts by code point
/// (so "Z" stands before "a", and a text before the longer ones that begin with it), data by bytes.
/// What is equal keeps its order; in a fetch that is the order of the rows, and what isn't saved
/// yet follows as it was inserted.
class NSSortDescriptor {
 public:
  NSSortDescriptor(KeyName key, bool ascending) : key_(key.text()), ascending_(ascending) {}

  [[nodiscard]] const std::string& key() const noexcept { return key_; }
  [[nodiscard]] bool ascending() const noexcept { return ascending_; }

  /// Less when `a` stands before `b`.
  [[nodiscard]] std::weak_ordering compareObject_toObject(const NSManagedObject& a,
                                                          const NSManagedObject& b) const;
  /// Sorts the objects, first by the first descriptor.
  static void sort(std::vector<NSManagedObject*>& objects,
                   const std::vector<NSSortDescriptor>& descriptors);

  /// The ascending order of two values, either of which may be absent. Values of different kinds
  /// stand in the order number, text, date, data, container.
  [[nodiscard]] static std::weak_ordering compareValues(const PlistValue* a,
                                                        const PlistValue* b) noexcept;

 private:
  std::string key_;
  bool ascending_;
};

}  // namespace zym
