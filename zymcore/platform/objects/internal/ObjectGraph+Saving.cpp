#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "zymcore/platform/objects/internal/ObjectGraph.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

constexpr std::int64_t mostKey = std::numeric_limits<std::int64_t>::max() / 2;

[[noreturn]] void conflict(const NSManagedObject& object) {
  const std::string name = object.objectID().URIRepresentation();
  throw StoreFailure{{NSCocoaErrorDomain,
                      NSManagedObjectMergeError,
                      "Somebody else changed " + name + " since it was read.",
                      {{KeyName("conflictList"), PlistArray{name}}},
                      {}}};
}

PlistArray namesOf(const std::vector<NSManagedObject*>& objects) {
  std::vector<PlistValue> names;
  names.reserve(objects.size());
  for (const NSManagedObject* const object : objects) {
    names.emplace_back(object->objectID().URIRepresentation());
  }
  return PlistArray(std::move(names));
}

}  // namespace

/// A save under way. The objects learn of it only when it is on disk.
struct ObjectGraph::Saving {
  SQLiteDatabase& database;
  std::vector<NSManagedObject*> inserted;
  std::vector<NSManagedObject*> updated;
  std::vector<NSManagedObject*> deleted;
  std::unordered_map<const NSManagedObject*, std::int64_t> newKeys;

  [[nodiscard]] std::int64_t keyOf(const NSManagedObject& object) const {
    const NSManagedObjectID id = object.objectID();
    return id.isTemporaryID() ? newKeys.at(&object) : id.key;
  }
};

/// Lets go of the moment that is read meanwhile, and takes the one after it.
struct ObjectGraph::RenewedMoment {
  explicit RenewedMoment(ObjectGraph& graph) : graph(graph) {
    if (graph.performing_ > 0) graph.endMoment();
  }
  ~RenewedMoment() {
    if (graph.performing_ > 0) graph.beginMoment();
  }
  RenewedMoment(const RenewedMoment&) = delete;
  RenewedMoment& operator=(const RenewedMoment&) = delete;

  ObjectGraph& graph;
};

bool ObjectGraph::hasChanges() const noexcept {
  const auto isOfNote = [](const NSManagedObject* object) {
    return object->alive_ || object->stored_;
  };
  return std::any_of(changed_.begin(), changed_.end(),
                     [&](const ChangedObjects& changed) {
                       return std::any_of(changed.all().begin(), changed.all().end(), isOfNote);
                     }) ||
         std::any_of(pairs_.begin(), pairs_.end(),
                     [](const auto& changed) { return !changed.second.empty(); });
}

PlistDictionary ObjectGraph::save() {
  Saving saving{store().writer(), {}, {}, {}, {}};
  forEachDirty([&](NSManagedObject& object) {
    if (object.alive_) {
      (object.stored_ ? saving.updated : saving.inserted).push_back(&object);
    } else if (object.stored_) {
      saving.deleted.push_back(&object);
    }
  });
  const RenewedMoment renewed(*this);
  const std::lock_guard lock(saving.database.mutex);
  SQLiteTransaction transaction(saving.database);
  assignKeys(saving);
  for (const NSManagedObject* const object : saving.inserted) insertRow(saving, *object);
  for (const NSManagedObject* const object : saving.updated) updateRow(saving, *object);
  for (const NSManagedObject* const object : saving.deleted) deleteRow(saving, *object);
  for (const NSManagedObject* const object : saving.deleted) deleteTraces(saving, *object);
  writePairs(saving);
  transaction.commit();
  const std::uint64_t saves = ++store().saves();
  if (savesSeen_ + 1 == saves) savesSeen_ = saves;  // nobody else's
  finish(saving);
  return {{NSInsertedObjectsKey, namesOf(saving.inserted)},
          {NSUpdatedObjectsKey, namesOf(saving.updated)},
          {NSDeletedObjectsKey, namesOf(saving.deleted)}};
}

// A key is never given twice, so that an object whose deletion is undone finds its own free.
void ObjectGraph::assignKeys(Saving& saving) const {
  std::vector<std::int64_t> counts(objects_.size());
  for (const NSManagedObject* const object : saving.inserted) {
    if (object->id_.isTemporaryID()) ++counts[object->entity().position()];
  }
  std::vector<std::int64_t> last(objects_.size());
  for (const NSEntityDescription& entity : model().entities()) {
    const std::size_t position = entity.position();
    if (counts[position] == 0) continue;
    {
      SQLiteStatement query = saving.database.statement("SELECT last FROM _keys WHERE entity = ?");
      query.bind(1, std::string_view(entity.name()));
      last[position] = query.step() ? query.integer(0) : 0;
    }
    if (last[position] < 0 || last[position] > mostKey) {
      throw StoreFailure{{NSCocoaErrorDomain,
                          NSFileReadCorruptFileError,
                          "The store's keys are damaged.",
                          {},
                          {}}};
    }
    SQLiteStatement update = saving.database.statement(
        "INSERT INTO _keys(entity, last) VALUES(?, ?) "
        "ON CONFLICT(entity) DO UPDATE SET last = excluded.last");
    update.add(std::string_view(entity.name()));
    update.add(last[position] + counts[position]);
    update.run();
  }
  saving.newKeys.reserve(saving.inserted.size());
  for (const NSManagedObject* const object : saving.inserted) {
    if (!object->id_.isTemporaryID()) continue;
    saving.newKeys.emplace(object, ++last[object->entity().position()]);
  }
}

void ObjectGraph::insertRow(const Saving& saving, const NSManagedObject& object) const {
  const StoreSchema::EntityTable& table = store().schema().table(object.entity());
  const NSManagedObject::Values& values = *object.values_;
  SQLiteStatement insert = saving.database.statement(table.insert);
  insert.add(saving.keyOf(object));
  insert.add(object.version_ + 1);
  for (std::size_t i = 0; i < values.attributes.size(); ++i) {
    if (table.attributeColumns[i] < 0) continue;
    insert.add(values.attributes[i] ? &*values.attributes[i] : nullptr);
  }
  for (std::size_t i = 0; i < values.toOne.size(); ++i) {
    if (table.relationshipColumns[i] < 0) continue;
    if (values.toOne[i]) {
      insert.add(saving.keyOf(*values.toOne[i]));
    } else {
      insert.add(static_cast<const PlistValue*>(nullptr));
    }
  }
  insert.run();
  writeDocuments(saving, object);
}

void ObjectGraph::updateRow(const Saving& saving, const NSManagedObject& object) const {
  const StoreSchema::EntityTable& table = store().schema().table(object.entity());
  const NSManagedObject::Values& values = *object.values_;
  std::string sql = "UPDATE " + table.name + " SET _version = _version + 1";
  const auto isWritten = [](std::uint64_t changed, std::size_t position, int column) {
    return (changed & bit(position)) != 0 && column >= 0;
  };
  for (std::size_t i = 0; i < values.attributes.size(); ++i) {
    if (isWritten(values.changedAttributes, i, table.attributeColumns[i])) {
      sql += ", " + table.attributeNames[i] + " = ?";
    }
  }
  for (std::size_t i = 0; i < values.toOne.size(); ++i) {
    if (isWritten(values.changedToOne, i, table.relationshipColumns[i])) {
      sql += ", " + table.relationshipNames[i] + " = ?";
    }
  }
  sql += " WHERE _key = ? AND _version = ?";

  SQLiteStatement update = saving.database.statement(sql);
  for (std::size_t i = 0; i < values.attributes.size(); ++i) {
    if (!isWritten(values.changedAttributes, i, table.attributeColumns[i])) continue;
    update.add(values.attributes[i] ? &*values.attributes[i] : nullptr);
  }
  for (std::size_t i = 0; i < values.toOne.size(); ++i) {
    if (!isWritten(values.changedToOne, i, table.relationshipColumns[i])) continue;
    if (values.toOne[i]) {
      update.add(saving.keyOf(*values.toOne[i]));
    } else {
      update.add(static_cast<const PlistValue*>(nullptr));
    }
  }
  update.add(object.id_.key);
  update.add(object.version_);
  update.run();
  if (saving.database.changes() == 0) conflict(object);
  writeDocuments(saving, object);
}

// Of a new row all documents, of an old one those that changed.
void ObjectGraph::writeDocuments(const Saving& saving, const NSManagedObject& object) const {
  const StoreSchema::EntityTable& table = store().schema().table(object.entity());
  const NSManagedObject::Values& values = *object.values_;
  const std::uint64_t written =
      object.stored_ ? values.heldDocuments & values.changedAttributes : values.heldDocuments;
  for (std::size_t i = 0; i < values.attributes.size(); ++i) {
    if (!(written & bit(i))) continue;
    const std::string& documents = table.documentTables[i];
    SQLiteStatement statement = saving.database.statement(
        values.attributes[i] ? "INSERT INTO " + documents +
                                   "(_key, value) VALUES(?, ?) ON CONFLICT(_key) "
                                   "DO UPDATE SET value = excluded.value"
                             : "DELETE FROM " + documents + " WHERE _key = ?");
    statement.add(saving.keyOf(object));
    if (values.attributes[i]) statement.add(*values.attributes[i]->data());
    statement.run();
  }
}

void ObjectGraph::deleteRow(const Saving& saving, const NSManagedObject& object) const {
  const StoreSchema::EntityTable& table = store().schema().table(object.entity());
  SQLiteStatement remove =
      saving.database.statement("DELETE FROM " + table.name + " WHERE _key = ? AND _version = ?");
  remove.add(object.id_.key);
  remove.add(object.version_);
  remove.run();
  if (saving.database.changes() != 0) return;
  SQLiteStatement query = saving.database.statement(table.byKey);
  query.add(object.id_.key);
  if (query.step()) conflict(object);
}

// What belonged to the row, and what others may have related to it since it was read.
void ObjectGraph::deleteTraces(const Saving& saving, const NSManagedObject& object) const {
  const auto run = [&](const std::string& sql) {
    SQLiteStatement statement = saving.database.statement(sql);
    statement.add(object.id_.key);
    statement.run();
  };
  for (const std::string& documents : store().schema().table(object.entity()).documentTables) {
    if (!documents.empty()) run("DELETE FROM " + documents + " WHERE _key = ?");
  }
  for (const NSRelationshipDescription& relationship : object.entity().relationships()) {
    const NSRelationshipDescription& inverse = inverseOf(relationship);
    if (!inverse.isToMany) {
      const std::string column = identifier(inverse.name);
      run("UPDATE " + identifier(relationship.destinationName) + " SET " + column +
          " = NULL, _version = _version + 1 WHERE " + column + " = ?");
    } else if (relationship.isToMany) {
      const StoreSchema::PairTable pairs = StoreSchema::pairTable(object.entity(), relationship);
      run("DELETE FROM " + pairs.name + " WHERE " + pairs.ownColumn + " = ?");
    }
  }
}

void ObjectGraph::writePairs(const Saving& saving) const {
  for (const auto& [id, changed] : pairs_) {
    const NSEntityDescription& entity = model().entities()[id.first];
    const std::string name = StoreSchema::pairTable(entity, entity.relationships()[id.second]).name;
    for (const auto& [pair, together] : changed) {
      // A pair with a deleted object went with its row, and one that never had a row has none.
      if (!pair.first->alive_ || !pair.second->alive_) continue;
      SQLiteStatement statement = saving.database.statement(
          together ? "INSERT OR IGNORE INTO " + name + "(_first, _second) VALUES(?, ?)"
                   : "DELETE FROM " + name + " WHERE _first = ? AND _second = ?");
      statement.add(saving.keyOf(*pair.first));
      statement.add(saving.keyOf(*pair.second));
      statement.run();
    }
  }
}

void ObjectGraph::finish(const Saving& saving) {
  for (NSManagedObject* const object : saving.inserted) {
    if (object->id_.isTemporaryID()) {
      Objects& objects = objects_[object->entity().position()];
      auto node = objects.extract(object->id_.key);
      object->id_.key = node.key() = saving.keyOf(*object);
      objects.insert(std::move(node));
    }
    object->stored_ = true;
    ++object->version_;
  }
  for (NSManagedObject* const object : saving.updated) ++object->version_;
  for (NSManagedObject* const object : saving.deleted) {
    object->stored_ = false;
    if (!undoManager_) object->values_.reset();
  }
  becomeClean();
}

// From now on the store has the documents; what is deleted keeps its own for undo.
void ObjectGraph::becomeClean() {
  // Rows that have their keys now may stand elsewhere among equals.
  for (std::size_t i = 0; i < changed_.size(); ++i) changeCounts_[i] += !changed_[i].empty();
  forEachDirty([](NSManagedObject& object) {
    object.dirty_ = false;
    if (!object.values_) return;
    NSManagedObject::Values& values = *object.values_;
    values.changedAttributes = 0;
    values.changedToOne = 0;
    if (!object.alive_) return;
    for (std::size_t i = 0; i < values.attributes.size(); ++i) {
      if (values.heldDocuments & bit(i)) values.attributes[i].reset();
    }
    values.heldDocuments = 0;
  });
  for (ChangedObjects& changed : changed_) changed.clear();
  pairs_.clear();
}

// Everything becomes a fault again, so that nothing of what was changed can remain.
void ObjectGraph::rollback() {
  forEachDirty([](NSManagedObject& object) {
    object.dirty_ = false;
    object.alive_ = object.stored_;
  });
  for (ChangedObjects& changed : changed_) changed.clear();
  ++changeCountOfAll_;
  pairs_.clear();
  journal_.reset();
  for (const Objects& objects : objects_) {
    for (const auto& [key, object] : objects) object->values_.reset();
  }
  if (undoManager_) undoManager_->removeAllActions();
}

void ObjectGraph::merge(const PlistDictionary& savedElsewhere) {
  forgetToMany();
  for (const KeyName kind : {NSUpdatedObjectsKey, NSDeletedObjectsKey}) {
    const PlistArray* const names = savedElsewhere.array(kind);
    if (!names) continue;
    for (const PlistValue& value : *names) {
      const std::string_view name = value.string() ? std::string_view(*value.string()) : "";
      const std::size_t slash = std::min(name.find("/p"), name.size());
      const NSEntityDescription* const entity = model().entityNamed(name.substr(0, slash));
      std::int64_t key = 0;
      const std::string_view digits = name.substr(std::min(slash + 2, name.size()));
      std::from_chars(digits.data(), digits.data() + digits.size(), key);
      if (!entity) continue;
      const auto known = objects_[entity->position()].find(key);
      if (known == objects_[entity->position()].end() || known->second->dirty_) continue;
      known->second->values_.reset();
    }
  }
}

}  // namespace zym
