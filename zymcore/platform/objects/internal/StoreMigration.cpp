#include <string>
#include <utility>
#include <vector>

#include "zymcore/platform/objects/internal/SQLiteStore.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

/// One statement to read rows by, and one to write them by, column for column.
struct Copy {
  std::string read;
  std::string write;
  int columns;
};

[[noreturn]] void refuse(const NSEntityDescription& entity, const std::string& name,
                         const char* reason) {
  throw StoreFailure{{NSCocoaErrorDomain,
                      NSInferredMappingModelError,
                      "The store can't be brought to this version of the model: " + entity.name() +
                          "." + name + " " + reason + ".",
                      {},
                      {}}};
}

Copy copyOf(const std::string& columns, int count, const std::string& from, const std::string& to) {
  std::string parameters = "?";
  for (int i = 1; i < count; ++i) parameters += ", ?";
  return {"SELECT " + columns + " FROM " + from,
          "INSERT INTO " + to + "(" + columns + ") VALUES(" + parameters + ")", count};
}

/// What has to be copied from a store of one model into one of another, inferred from the names
/// that they share.
class Mapping {
 public:
  Mapping(const NSManagedObjectModel& from, const NSManagedObjectModel& to)
      : from_(from), to_(to), schema_(to) {
    for (const NSEntityDescription& entity : to.entities()) {
      if (const NSEntityDescription* const old = from.entityNamed(entity.name())) {
        mapEntity(*old, entity);
      }
    }
  }

  [[nodiscard]] const std::vector<Copy>& copies() const noexcept { return copies_; }

 private:
  void mapEntity(const NSEntityDescription& old, const NSEntityDescription& entity) {
    const StoreSchema::EntityTable& table = schema_.table(entity);
    std::string columns = "_key, _version";
    int count = 2;
    for (std::size_t i = 0; i < entity.attributes().size(); ++i) {
      const NSAttributeDescription& attribute = entity.attributes()[i];
      const auto oldIndex = old.attributeIndex(KeyName(attribute.name));
      if (!oldIndex) continue;
      if (old.attributes()[*oldIndex].type != attribute.type) {
        refuse(entity, attribute.name, "is of another kind");
      }
      if (attribute.type == NSAttributeType::Document) {
        const std::string& documents = table.documentTables[i];
        copies_.push_back(copyOf("_key, value", 2, documents, documents));
      } else {
        columns += ", " + table.attributeNames[i];
        ++count;
      }
    }
    for (const NSRelationshipDescription& relationship : entity.relationships()) {
      const auto oldIndex = old.relationshipIndex(KeyName(relationship.name));
      if (!oldIndex) continue;
      const NSRelationshipDescription& oldRelationship = old.relationships()[*oldIndex];
      requireRoom(entity, oldRelationship, relationship);
      if (!relationship.isToMany) {
        columns += ", " + identifier(relationship.name);
        ++count;
      } else if (StoreSchema::hasPairs(to_, relationship)) {
        mapPairs(old, oldRelationship, entity, relationship);
      }
    }
    copies_.push_back(copyOf(columns, count, table.name, table.name));
    copies_.push_back({"SELECT entity, last FROM _keys WHERE entity = '" + entity.name() + "'",
                       "INSERT INTO _keys(entity, last) VALUES(?, ?)", 2});
  }

  void requireRoom(const NSEntityDescription& entity, const NSRelationshipDescription& old,
                   const NSRelationshipDescription& relationship) const {
    if (old.destinationName != relationship.destinationName ||
        old.inverseName != relationship.inverseName) {
      refuse(entity, relationship.name, "leads elsewhere");
    }
    if (old.isToMany && !relationship.isToMany) {
      refuse(entity, relationship.name, "held many objects and now holds one");
    }
  }

  // Seen from the first end only; what was kept by the key at one end becomes pairs.
  void mapPairs(const NSEntityDescription& old, const NSRelationshipDescription& oldRelationship,
                const NSEntityDescription& entity, const NSRelationshipDescription& relationship) {
    const StoreSchema::PairTable pairs = StoreSchema::pairTable(entity, relationship);
    if (!pairs.isFirst) return;
    if (StoreSchema::hasPairs(from_, oldRelationship)) {
      copies_.push_back(copyOf("_first, _second", 2, pairs.name, pairs.name));
      return;
    }
    const std::string write = "INSERT INTO " + pairs.name + "(_first, _second) VALUES(?, ?)";
    const std::string own = identifier(relationship.name);
    const std::string inverse = identifier(relationship.inverseName);
    if (!oldRelationship.isToMany) {
      copies_.push_back({"SELECT _key, " + own + " FROM " + identifier(old.name()) + " WHERE " +
                             own + " IS NOT NULL",
                         write, 2});
    } else {
      copies_.push_back({"SELECT " + inverse + ", _key FROM " +
                             identifier(relationship.destinationName) + " WHERE " + inverse +
                             " IS NOT NULL",
                         write, 2});
    }
  }

  const NSManagedObjectModel& from_;
  const NSManagedObjectModel& to_;
  StoreSchema schema_;
  std::vector<Copy> copies_;
};

void run(const Copy& copy, SQLiteDatabase& from, SQLiteDatabase& to) {
  SQLiteStatement read = from.statement(copy.read);
  SQLiteStatement write = to.statement(copy.write);
  while (read.step()) {
    for (int column = 0; column < copy.columns; ++column) write.addColumn(read, column);
    write.run();
  }
}

// A log beside the store would be taken for the log of the file that takes the store's place.
void leaveLog(SQLiteDatabase& database) {
  SQLiteStatement mode = database.statement("PRAGMA journal_mode = DELETE");
  if (!mode.step() || mode.text(0) != "delete") {
    throw StoreFailure{{NSCocoaErrorDomain,
                        NSPersistentStoreTimeoutError,
                        "The store is in use by another process.",
                        {},
                        {}}};
  }
}

}  // namespace

void migrateStore(const std::filesystem::path& path, const NSManagedObjectModel& from,
                  const NSManagedObjectModel& to, double secondsToWait) {
  const Mapping mapping(from, to);
  SQLiteDatabase original(path, SQLiteDatabase::Access::ReadWrite, secondsToWait);
  leaveLog(original);
  const SQLiteTransaction nobodyWrites(original);
  replaceStore(path, [&](SQLiteDatabase& fresh) {
    createTables(fresh, to, StoreSchema(to), uuidOfStore(original));
    for (const Copy& copy : mapping.copies()) run(copy, original, fresh);
  });
}

}  // namespace zym
