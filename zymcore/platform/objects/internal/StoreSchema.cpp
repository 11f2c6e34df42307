#include "zymcore/platform/objects/internal/StoreSchema.h"

#include <tuple>

namespace zym {
namespace {

constexpr int noColumn = -1;

const char* columnType(NSAttributeType type) noexcept {
  switch (type) {
    case NSAttributeType::String:
      return " TEXT";
    case NSAttributeType::Integer:
      return " INTEGER";
    case NSAttributeType::Real:
    case NSAttributeType::Date:
      return " REAL";
    default:
      return " BLOB";
  }
}

// Names have no quotes in them; the model sees to that.
std::string partName(const NSEntityDescription& entity, const std::string& part) {
  return entity.name() + "." + part;
}

}  // namespace

std::string identifier(std::string_view name) {
  return '"' + std::string(name) + '"';
}

StoreSchema::StoreSchema(const NSManagedObjectModel& model) {
  statements_ = {
      {"_metadata", "CREATE TABLE _metadata(key TEXT PRIMARY KEY, value BLOB) WITHOUT ROWID"},
      {"_keys",
       "CREATE TABLE _keys(entity TEXT PRIMARY KEY, last INTEGER NOT NULL) "
       "WITHOUT ROWID"}};
  for (const NSEntityDescription& entity : model.entities()) addEntity(model, entity);
}

bool StoreSchema::hasPairs(const NSManagedObjectModel& model,
                           const NSRelationshipDescription& relationship) noexcept {
  return relationship.isToMany &&
         model.entities()[relationship.destination].relationships()[relationship.inverse].isToMany;
}

StoreSchema::PairTable StoreSchema::pairTable(const NSEntityDescription& entity,
                                              const NSRelationshipDescription& relationship) {
  const bool isFirst = std::tie(entity.name(), relationship.name) <
                       std::tie(relationship.destinationName, relationship.inverseName);
  if (isFirst) {
    return {identifier(partName(entity, relationship.name)), "_first", "_second", true};
  }
  return {identifier(relationship.destinationName + "." + relationship.inverseName), "_second",
          "_first", false};
}

void StoreSchema::addEntity(const NSManagedObjectModel& model, const NSEntityDescription& entity) {
  EntityTable table;
  table.name = identifier(entity.name());
  table.columns = "_key, _version";
  std::string definitions = "_key INTEGER PRIMARY KEY, _version INTEGER NOT NULL";
  std::string parameters = "?, ?";
  int columns = 2;
  const auto addColumn = [&](const std::string& name, const char* type) {
    table.columns += ", " + name;
    definitions += ", " + name + type;
    parameters += ", ?";
    return columns++;
  };

  for (const NSAttributeDescription& attribute : entity.attributes()) {
    const bool isDocument = attribute.type == NSAttributeType::Document;
    const std::string part = partName(entity, attribute.name);
    table.attributeNames.push_back(identifier(attribute.name));
    table.documentTables.push_back(isDocument ? identifier(part) : std::string());
    table.documentByKey.push_back(
        isDocument ? "SELECT value FROM " + identifier(part) + " WHERE _key = ?" : std::string());
    table.attributeColumns.push_back(
        isDocument ? noColumn : addColumn(identifier(attribute.name), columnType(attribute.type)));
    if (isDocument) {
      statements_[part] =
          "CREATE TABLE " + identifier(part) + "(_key INTEGER PRIMARY KEY, value BLOB NOT NULL)";
    } else if (attribute.name == "uuid" || attribute.name.ends_with("Uuid")) {
      addIndex(entity, attribute.name);
    }
  }
  for (const NSRelationshipDescription& relationship : entity.relationships()) {
    table.relationshipNames.push_back(identifier(relationship.name));
    table.relationshipColumns.push_back(
        relationship.isToMany ? noColumn : addColumn(identifier(relationship.name), " INTEGER"));
    if (!relationship.isToMany) {
      addIndex(entity, relationship.name);
    } else if (hasPairs(model, relationship) && pairTable(entity, relationship).isFirst) {
      const std::string name = partName(entity, relationship.name);
      statements_[name] = "CREATE TABLE " + identifier(name) +
                          "(_first INTEGER NOT NULL, _second INTEGER NOT NULL, "
                          "PRIMARY KEY(_first, _second)) WITHOUT ROWID";
      statements_[name + ".second"] = "CREATE INDEX " + identifier(name + ".second") + " ON " +
                                      identifier(name) + "(_second, _first)";
    }
  }
  table.byKey = "SELECT " + table.columns + " FROM " + table.name + " WHERE _key = ?";
  table.insert = "INSERT INTO " + table.name + "(" + table.columns + ") VALUES(" + parameters + ")";
  statements_[entity.name()] = "CREATE TABLE " + table.name + "(" + definitions + ")";
  tables_.push_back(std::move(table));
}

void StoreSchema::addIndex(const NSEntityDescription& entity, const std::string& column) {
  const std::string name = partName(entity, column);
  statements_[name] = "CREATE INDEX " + identifier(name) + " ON " + identifier(entity.name()) +
                      "(" + identifier(column) + ")";
}

}  // namespace zym
