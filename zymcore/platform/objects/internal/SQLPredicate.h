#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "zymcore/platform/objects/NSEntityDescription.h"
#include "zymcore/platform/objects/NSPredicate.h"
#include "zymcore/platform/objects/internal/StoreSchema.h"

namespace zym {

/// A predicate as SQL on the columns of its entity, and what stands for each "?" in it, for as long
/// as the predicate lives. Throws `NSInvalidArgumentException` for a key that is no such column.
///
/// In SQL a comparison with no value is neither true nor false, which counts as false wherever it
/// ends, and every negation is of something made true or false before.
struct SQLPredicate {
  SQLPredicate(const NSEntityDescription& entity, const StoreSchema::EntityTable& table,
               const NSPredicate& predicate);

  std::string sql;
  std::vector<const PlistValue*> parameters;

 private:
  void write(const NSPredicate& predicate);
  void writeComparison(const NSPredicate& predicate);
  void writeIn(const NSPredicate& predicate);
  void writeAll(const NSPredicate& predicate, const char* separator, const char* whenEmpty);
  [[nodiscard]] std::size_t attributeOf(const NSPredicate& predicate) const;
  [[nodiscard]] bool canCompare(std::size_t attribute, const PlistValue& value) const;

  const NSEntityDescription& entity_;
  const StoreSchema::EntityTable& table_;
};

[[noreturn]] void unknownKey(const NSEntityDescription& entity, std::string_view key);

}  // namespace zym
