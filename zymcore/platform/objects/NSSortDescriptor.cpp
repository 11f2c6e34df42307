#include "zymcore/platform/objects/NSSortDescriptor.h"

#include <algorithm>

#include "zymcore/platform/objects/NSManagedObject.h"

namespace zym {
namespace {

int rankOf(const PlistValue& value) noexcept {
  if (value.isNumber()) return 0;
  switch (value.kind()) {
    case PlistValue::Kind::String:
      return 1;
    case PlistValue::Kind::Date:
      return 2;
    case PlistValue::Kind::Data:
      return 3;
    default:
      return 4;
  }
}

std::weak_ordering order(double a, double b) noexcept {
  if (a < b) return std::weak_ordering::less;
  return a > b ? std::weak_ordering::greater : std::weak_ordering::equivalent;
}

// Saved rows in their order, then what isn't saved yet in the order of its temporary keys.
std::weak_ordering order(const NSManagedObject* a, const NSManagedObject* b) noexcept {
  if (!a || !b) return (a != nullptr) <=> (b != nullptr);
  const NSManagedObjectID one = a->objectID();
  const NSManagedObjectID two = b->objectID();
  if (one.isTemporaryID() != two.isTemporaryID()) {
    return one.isTemporaryID() <=> two.isTemporaryID();
  }
  return one.isTemporaryID() ? two.key <=> one.key : one.key <=> two.key;
}

}  // namespace

std::weak_ordering NSSortDescriptor::compareValues(const PlistValue* a,
                                                   const PlistValue* b) noexcept {
  if (!a || !b) return (a != nullptr) <=> (b != nullptr);
  const int rank = rankOf(*a);
  if (rank != rankOf(*b)) return rank <=> rankOf(*b);
  switch (rank) {
    case 0:
      if (a->real() || b->real()) return order(a->doubleValue(), b->doubleValue());
      return a->integerValue() <=> b->integerValue();
    case 1:
      return *a->string() <=> *b->string();
    case 2:
      return order(a->date()->timeIntervalSinceReferenceDate(),
                   b->date()->timeIntervalSinceReferenceDate());
    case 3:
      return a->data()->view() <=> b->data()->view();
    default:
      return std::weak_ordering::equivalent;
  }
}

std::weak_ordering NSSortDescriptor::compareObject_toObject(const NSManagedObject& a,
                                                            const NSManagedObject& b) const {
  const KeyName key(key_);
  const bool isRelationship = a.entity().relationshipIndex(key).has_value();
  const std::weak_ordering ascending = isRelationship
                                           ? order(a.objectForKey(key), b.objectForKey(key))
                                           : compareValues(a.valueForKey(key), b.valueForKey(key));
  return ascending_ ? ascending : 0 <=> ascending;
}

void NSSortDescriptor::sort(std::vector<NSManagedObject*>& objects,
                            const std::vector<NSSortDescriptor>& descriptors) {
  std::stable_sort(objects.begin(), objects.end(),
                   [&](const NSManagedObject* a, const NSManagedObject* b) {
                     for (const NSSortDescriptor& descriptor : descriptors) {
                       const auto order = descriptor.compareObject_toObject(*a, *b);
                       if (order != 0) return order < 0;
                     }
                     return false;
                   });
}

}  // namespace zym
