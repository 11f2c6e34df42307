#include "zymcore/platform/objects/NSPredicate.h"

#include <algorithm>
#include <utility>

#include "zymcore/platform/objects/NSManagedObject.h"
#include "zymcore/platform/objects/NSSortDescriptor.h"

namespace zym {
namespace {

bool areComparable(const PlistValue& a, const PlistValue& b) noexcept {
  return (a.isNumber() && b.isNumber()) || a.kind() == b.kind();
}

bool areEqual(const PlistValue* a, const PlistValue* b) noexcept {
  return a && b ? *a == *b : a == b;
}

bool standsIn(NSPredicate::Operator op, const PlistValue* a, const PlistValue* b) noexcept {
  using Operator = NSPredicate::Operator;
  if (op == Operator::EqualTo) return areEqual(a, b);
  if (op == Operator::NotEqualTo) return !areEqual(a, b);
  if (!a || !b || !areComparable(*a, *b)) return false;
  const std::weak_ordering order = NSSortDescriptor::compareValues(a, b);
  switch (op) {
    case Operator::LessThan:
      return order < 0;
    case Operator::LessThanOrEqualTo:
      return order <= 0;
    case Operator::GreaterThan:
      return order > 0;
    default:
      return order >= 0;
  }
}

}  // namespace

NSPredicate NSPredicate::comparison(KeyName key, Operator op, std::optional<PlistValue> value) {
  NSPredicate predicate(Type::Comparison);
  predicate.key_ = key.text();
  predicate.operator_ = op;
  if (value) predicate.values_.push_back(std::move(*value));
  return predicate;
}

NSPredicate NSPredicate::in(KeyName key, std::vector<PlistValue> values) {
  NSPredicate predicate(Type::In);
  predicate.key_ = key.text();
  predicate.values_ = std::move(values);
  return predicate;
}

NSPredicate NSPredicate::andPredicateWithSubpredicates(std::vector<NSPredicate> parts) {
  NSPredicate predicate(Type::And);
  predicate.parts_ = std::move(parts);
  return predicate;
}

NSPredicate NSPredicate::orPredicateWithSubpredicates(std::vector<NSPredicate> parts) {
  NSPredicate predicate(Type::Or);
  predicate.parts_ = std::move(parts);
  return predicate;
}

NSPredicate NSPredicate::notPredicateWithSubpredicate(NSPredicate part) {
  NSPredicate predicate(Type::Not);
  predicate.parts_.push_back(std::move(part));
  return predicate;
}

bool NSPredicate::evaluateWithObject(const NSManagedObject& object) const {
  const auto holds = [&](const NSPredicate& part) { return part.evaluateWithObject(object); };
  switch (type_) {
    case Type::Comparison:
      return standsIn(operator_, object.valueForKey(KeyName(key_)),
                      values_.empty() ? nullptr : values_.data());
    case Type::In: {
      const PlistValue* const value = object.valueForKey(KeyName(key_));
      return std::any_of(values_.begin(), values_.end(),
                         [&](const PlistValue& other) { return areEqual(value, &other); });
    }
    case Type::And:
      return std::all_of(parts_.begin(), parts_.end(), holds);
    case Type::Or:
      return std::any_of(parts_.begin(), parts_.end(), holds);
    case Type::Not:
      return !holds(parts_.front());
  }
  return false;
}

}  // namespace zym
