#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "zymcore/platform/objects/NSManagedObjectModel.h"

namespace zym {

/// The tables of a model, in SQL. Names are quoted already.
///
/// An entity has a table of its columns: its row's key and version, its attributes, and for each
/// relationship to one object the key of that object. A document attribute has a table of its own
/// with the same keys, and a relationship that is to many at both ends a table of pairs.
class StoreSchema {
 public:
  static constexpr int formatVersion = 1;
  /// Tells a store from other SQLite files.
  static constexpr int applicationID = 0x4F535430;
  static constexpr int keyColumn = 0;
  static constexpr int versionColumn = 1;

  struct EntityTable {
    std::string name;
    /// All columns, in the order of a row: key, version, and those below.
    std::string columns;
    std::string insert;
    /// Selects the row of a key.
    std::string byKey;
    /// For each attribute and relationship its name and its place in a row, none for what isn't a
    /// column.
    std::vector<std::string> attributeNames;
    std::vector<int> attributeColumns;
    std::vector<std::string> relationshipNames;
    std::vector<int> relationshipColumns;
    /// For each attribute the table of its documents and what selects the one of a key; empty for
    /// other kinds.
    std::vector<std::string> documentTables;
    std::vector<std::string> documentByKey;
  };

  /// The table of pairs of a relationship, seen from that end.
  struct PairTable {
    std::string name;
    std::string ownColumn;
    std::string otherColumn;
    /// Of both ends of a relationship one is the first, and changes are kept under it.
    bool isFirst = false;
  };

  explicit StoreSchema(const NSManagedObjectModel& model);

  [[nodiscard]] const EntityTable& table(const NSEntityDescription& entity) const noexcept {
    return tables_[entity.position()];
  }
  /// Whether the relationship has a table of pairs.
  [[nodiscard]] static bool hasPairs(const NSManagedObjectModel& model,
                                     const NSRelationshipDescription& relationship) noexcept;
  [[nodiscard]] static PairTable pairTable(const NSEntityDescription& entity,
                                           const NSRelationshipDescription& relationship);

  /// All tables and indexes, by name, as the statements that create them.
  [[nodiscard]] const std::map<std::string, std::string>& statements() const noexcept {
    return statements_;
  }

 private:
  void addEntity(const NSManagedObjectModel& model, const NSEntityDescription& entity);
  void addIndex(const NSEntityDescription& entity, const std::string& column);

  std::vector<EntityTable> tables_;
  std::map<std::string, std::string> statements_;
};

/// The name as an identifier of SQL.
[[nodiscard]] std::string identifier(std::string_view name);

}  // namespace zym
