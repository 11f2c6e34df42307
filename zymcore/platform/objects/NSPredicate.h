#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "zymcore/platform/values/PlistKey.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

class NSManagedObject;

/// A condition on the attributes of an object. It is true or false, never neither:
///
/// - equality holds for equal values and for two absent ones, so "not equal to x" holds where there
///   is no value, and "equal to no value" finds what has none;
/// - an order holds only between two values that are there;
/// - numbers compare as numbers, texts by code point, exactly; a value of another kind than the
///   attribute's equals nothing and stands in no order to it.
///
/// A value is a parameter and never text of a query. Documents can't be asked for.
class NSPredicate {
 public:
  enum class Operator {
    EqualTo,
    NotEqualTo,
    LessThan,
    LessThanOrEqualTo,
    GreaterThan,
    GreaterThanOrEqualTo,
  };
  enum class Type { Comparison, In, And, Or, Not };

  [[nodiscard]] static NSPredicate comparison(KeyName key, Operator op,
                                              std::optional<PlistValue> value);
  [[nodiscard]] static NSPredicate equal(KeyName key, std::optional<PlistValue> value) {
    return comparison(key, Operator::EqualTo, std::move(value));
  }
  /// The attribute equals one of the values.
  [[nodiscard]] static NSPredicate in(KeyName key, std::vector<PlistValue> values);
  /// All of them hold; so for none of them.
  [[nodiscard]] static NSPredicate andPredicateWithSubpredicates(std::vector<NSPredicate> parts);
  /// At least one of them holds; not so for none of them.
  [[nodiscard]] static NSPredicate orPredicateWithSubpredicates(std::vector<NSPredicate> parts);
  [[nodiscard]] static NSPredicate notPredicateWithSubpredicate(NSPredicate part);

  /// Throws `NSInvalidArgumentException` for a key that is no attribute of the object's entity.
  [[nodiscard]] bool evaluateWithObject(const NSManagedObject& object) const;

  [[nodiscard]] Type type() const noexcept { return type_; }
  [[nodiscard]] Operator predicateOperator() const noexcept { return operator_; }
  [[nodiscard]] const std::string& key() const noexcept { return key_; }
  /// One value or, for an absent one, none; the values of an `In`.
  [[nodiscard]] const std::vector<PlistValue>& values() const noexcept { return values_; }
  [[nodiscard]] const std::vector<NSPredicate>& parts() const noexcept { return parts_; }

 private:
  explicit NSPredicate(Type type) noexcept : type_(type) {}

  Type type_;
  Operator operator_ = Operator::EqualTo;
  std::string key_;
  std::vector<PlistValue> values_;
  std::vector<NSPredicate> parts_;
};

}  // namespace zym
