#include "zymcore/platform/objects/internal/SQLPredicate.h"

#include <cmath>
#include <utility>

#include "zymcore/platform/values/NSException.h"

namespace zym {
namespace {

double numberOf(const PlistValue& value) {
  return value.date() ? value.date()->timeIntervalSinceReferenceDate() : value.doubleValue();
}

}  // namespace

void unknownKey(const NSEntityDescription& entity, std::string_view key) {
  throw NSException(NSInvalidArgumentException,
                    "keypath " + std::string(key) + " not found in entity " + entity.name());
}

SQLPredicate::SQLPredicate(const NSEntityDescription& entity, const StoreSchema::EntityTable& table,
                           const NSPredicate& predicate)
    : entity_(entity), table_(table) {
  write(predicate);
}

std::size_t SQLPredicate::attributeOf(const NSPredicate& predicate) const {
  const auto attribute = entity_.attributeIndex(KeyName(predicate.key()));
  if (!attribute || table_.attributeColumns[*attribute] < 0) {
    unknownKey(entity_, predicate.key());
  }
  return *attribute;
}

// Whether the attribute could hold something equal to the value.
bool SQLPredicate::canCompare(std::size_t attribute, const PlistValue& value) const {
  const NSAttributeDescription& description = entity_.attributes()[attribute];
  if (value.kind() != PlistValue::Kind::String && std::isnan(numberOf(value))) return false;
  if (description.type == NSAttributeType::Integer) return value.isNumber();
  return description.accepts(value);
}

void SQLPredicate::write(const NSPredicate& predicate) {
  switch (predicate.type()) {
    case NSPredicate::Type::Comparison:
      return writeComparison(predicate);
    case NSPredicate::Type::In:
      return writeIn(predicate);
    case NSPredicate::Type::And:
      return writeAll(predicate, " AND ", "1");
    case NSPredicate::Type::Or:
      return writeAll(predicate, " OR ", "0");
    case NSPredicate::Type::Not:
      sql += "(";
      write(predicate.parts().front());
      sql += ") IS NOT TRUE";
  }
}

void SQLPredicate::writeComparison(const NSPredicate& predicate) {
  static constexpr const char* operators[] = {" = ?",  " IS NOT ?", " < ?",
                                              " <= ?", " > ?",      " >= ?"};
  using Operator = NSPredicate::Operator;
  const Operator op = predicate.predicateOperator();
  const std::size_t attribute = attributeOf(predicate);
  const std::string& column = table_.attributeNames[attribute];
  if (predicate.values().empty()) {
    sql += op == Operator::EqualTo      ? column + " IS NULL"
           : op == Operator::NotEqualTo ? column + " IS NOT NULL"
                                        : "0";
  } else if (!canCompare(attribute, predicate.values().front())) {
    sql += op == Operator::NotEqualTo ? "1" : "0";
  } else {
    sql += column + operators[static_cast<std::size_t>(op)];
    parameters.push_back(&predicate.values().front());
  }
}

void SQLPredicate::writeIn(const NSPredicate& predicate) {
  const std::size_t attribute = attributeOf(predicate);
  sql += table_.attributeNames[attribute] + " IN (";
  const char* separator = "";
  for (const PlistValue& value : predicate.values()) {
    if (!canCompare(attribute, value)) continue;
    sql += std::exchange(separator, ",");
    sql += "?";
    parameters.push_back(&value);
  }
  sql += ")";
}

void SQLPredicate::writeAll(const NSPredicate& predicate, const char* separator,
                            const char* whenEmpty) {
  if (predicate.parts().empty()) sql += whenEmpty;
  for (std::size_t i = 0; i < predicate.parts().size(); ++i) {
    sql += i == 0 ? "(" : separator + std::string("(");
    write(predicate.parts()[i]);
    sql += ")";
  }
}

}  // namespace zym
