#include "zymcore/platform/objects/internal/ObjectGraph.h"

#include <algorithm>
#include <atomic>
#include <random>
#include <utility>

#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSLog.h"

namespace zym {

std::size_t ObjectGraph::KeyHash::operator()(std::int64_t key) const noexcept {
  static const std::uint64_t secret = std::random_device()() | std::uint64_t{1} << 40U;
  std::uint64_t hash = (static_cast<std::uint64_t>(key) ^ secret) * 0x9E3779B97F4A7C15U;
  hash = (hash ^ hash >> 32U ^ secret) * 0xD6E8FEB86659FD93U;
  return hash ^ hash >> 32U;
}

namespace {

/// Each context counts from a number of its own, far from those of others.
std::uint64_t firstChangeCount() {
  static std::atomic<std::uint64_t> contexts{0};
  return ++contexts << 40U;
}

}  // namespace

ObjectGraph::ObjectGraph(NSManagedObjectContext& context,
                         NSManagedObjectContextConcurrencyType type)
    : context_(context),
      type_(type),
      changeCountOfAll_(firstChangeCount()),
      self_(std::make_shared<ObjectGraph*>(this)) {
  if (type == NSMainQueueConcurrencyType) undoManager_ = std::make_shared<NSUndoManager>();
}

ObjectGraph::~ObjectGraph() {
  *self_ = nullptr;
}

void ObjectGraph::setCoordinator(std::shared_ptr<NSPersistentStoreCoordinator> coordinator) {
  if (coordinator_ || !coordinator || !coordinator->store()) {
    throw NSException(NSInternalInconsistencyException,
                      "a context takes one coordinator, which has its store");
  }
  coordinator_ = std::move(coordinator);
  objects_.resize(model().entities().size());
  changed_.resize(model().entities().size());
  changeCounts_.resize(model().entities().size());
  if (type_ != NSPrivateQueueConcurrencyType) return;
  try {
    reader_ = store().newReader();
  } catch (const StoreFailure& failure) {
    NSLog(failure.error.localizedDescription);  // It shares the connection that writes, then.
  }
}

void ObjectGraph::perform(const std::function<void()>& block) {
  const std::lock_guard lock(mutex_);
  struct Ended {
    ObjectGraph& graph;
    ~Ended() {
      if (--graph.performing_ == 0) graph.endMoment();
    }
  };
  if (++performing_ == 1) beginMoment();
  const Ended ended{*this};
  block();
}

void ObjectGraph::beginMoment() noexcept {
  onDatabase(&SQLiteDatabase::beginMoment);
}

void ObjectGraph::endMoment() noexcept {
  onDatabase(&SQLiteDatabase::endMoment);
}

// Without a moment of their own the reads still work, each for itself.
void ObjectGraph::onDatabase(void (SQLiteDatabase::*deed)()) noexcept {
  if (!reader_ && !(coordinator_ && coordinator_->store())) return;
  try {
    SQLiteDatabase& connection = database();
    const std::lock_guard lock(connection.mutex);
    (connection.*deed)();
  } catch (const StoreFailure& failure) {
    NSLog(failure.error.localizedDescription);
  }
}

void ObjectGraph::setUndoManager(std::shared_ptr<NSUndoManager> undoManager) {
  undoManager_ = std::move(undoManager);
  journal_.reset();
}

SQLiteStore& ObjectGraph::store() const {
  if (!coordinator_) {
    throw NSException(NSInternalInconsistencyException, "the context has no coordinator");
  }
  return *coordinator_->store();
}

SQLiteDatabase& ObjectGraph::database() const {
  return reader_ ? *reader_ : store().writer();
}

const NSEntityDescription& ObjectGraph::entityNamed(std::string_view name) const {
  const NSEntityDescription* const entity = model().entityNamed(name);
  if (!entity) {
    throw NSException(NSInvalidArgumentException,
                      "the model has no entity named " + std::string(name));
  }
  return *entity;
}

// Objects and rows.

std::unique_ptr<NSManagedObject> ObjectGraph::newObject(const NSEntityDescription& entity,
                                                        std::int64_t key) {
  return model().newObject({context_, {&entity, key}});
}

NSManagedObject& ObjectGraph::objectFor(const NSEntityDescription& entity, std::int64_t key) {
  Objects& objects = objects_[entity.position()];
  const auto known = objects.find(key);
  if (known != objects.end()) return *known->second;
  std::unique_ptr<NSManagedObject> object = newObject(entity, key);
  object->stored_ = true;
  return *objects.emplace(key, std::move(object)).first->second;
}

NSManagedObject::Values& ObjectGraph::emptyValues(NSManagedObject& object) {
  object.values_ = std::make_unique<NSManagedObject::Values>();
  object.values_->attributes.resize(object.entity().attributes().size());
  object.values_->toOne.resize(object.entity().relationships().size());
  object.values_->toMany.resize(object.entity().relationships().size());
  return *object.values_;
}

void ObjectGraph::readRow(NSManagedObject& object, const SQLiteStatement& row) {
  const NSEntityDescription& entity = object.entity();
  const StoreSchema::EntityTable& table = store().schema().table(entity);
  NSManagedObject::Values& values = emptyValues(object);
  for (std::size_t i = 0; i < values.attributes.size(); ++i) {
    if (table.attributeColumns[i] < 0) continue;
    values.attributes[i] = valueInRow(row, table.attributeColumns[i], entity.attributes()[i].type);
  }
  for (std::size_t i = 0; i < values.toOne.size(); ++i) {
    const int column = table.relationshipColumns[i];
    if (column < 0 || row.isNull(column)) continue;
    const std::size_t destination = entity.relationships()[i].destination;
    values.toOne[i] = &objectFor(model().entities()[destination], row.integer(column));
  }
  object.version_ = row.integer(StoreSchema::versionColumn);
}

// A row that somebody else has changed since is taken over, unless it is changed here as well: then
// saving finds the conflict.
NSManagedObject& ObjectGraph::objectFromRow(const NSEntityDescription& entity,
                                            const SQLiteStatement& row) {
  NSManagedObject& object = objectFor(entity, row.integer(StoreSchema::keyColumn));
  if (object.dirty_) return object;
  const bool isNews = object.values_ && object.version_ != row.integer(StoreSchema::versionColumn);
  if (isNews) forgetToMany();
  if (isNews || !object.values_) readRow(object, row);
  object.alive_ = true;
  object.stored_ = true;
  return object;
}

// A row that somebody else related to an object here is none of its own rows, so only SQLite knows.
void ObjectGraph::noticeOthers() {
  const std::int64_t version = database().integer("PRAGMA data_version");
  const std::uint64_t saves = store().saves();
  const bool hasSaved = std::exchange(savesSeen_, saves) != saves;
  if (std::exchange(dataVersion_, version) != version || hasSaved) forgetToMany();
}

void ObjectGraph::forgetToMany() {
  ++changeCountOfAll_;
  for (const Objects& objects : objects_) {
    for (const auto& [key, object] : objects) {
      if (!object->values_) continue;
      for (auto& members : object->values_->toMany) members.reset();
    }
  }
}

NSManagedObject::Values* ObjectGraph::valuesOf(const NSManagedObject& constObject) {
  auto& object = const_cast<NSManagedObject&>(constObject);
  if (object.values_) return object.values_.get();
  if (!object.alive_) return nullptr;
  const StoreSchema::EntityTable& table = store().schema().table(object.entity());
  SQLiteDatabase& connection = database();
  const std::lock_guard lock(connection.mutex);
  SQLiteStatement query = connection.statement(table.byKey);
  query.bind(1, object.id_.key);
  if (query.step()) {
    readRow(object, query);
  } else {
    object.alive_ = false;
    object.stored_ = false;
  }
  return object.values_.get();
}

NSManagedObject* ObjectGraph::objectWithID(const NSManagedObjectID& objectID) {
  const Objects& objects = objects_[objectID.entity->position()];
  const auto known = objects.find(objectID.key);
  if (known == objects.end() && objectID.isTemporaryID()) return nullptr;
  NSManagedObject& object =
      known == objects.end() ? objectFor(*objectID.entity, objectID.key) : *known->second;
  return valuesOf(object) && object.alive_ ? &object : nullptr;
}

// Documents.

std::optional<NSData> ObjectGraph::storedDocument(const NSManagedObject& object,
                                                  std::size_t attribute) {
  const StoreSchema::EntityTable& table = store().schema().table(object.entity());
  SQLiteDatabase& connection = database();
  const std::lock_guard lock(connection.mutex);
  SQLiteStatement query = connection.statement(table.documentByKey[attribute]);
  query.bind(1, object.id_.key);
  if (!query.step()) return std::nullopt;
  return query.data(0);
}

std::optional<NSData> ObjectGraph::document(const NSManagedObject& object, std::size_t attribute) {
  if (object.values_ && object.values_->heldDocuments & bit(attribute)) {
    const std::optional<PlistValue>& value = object.values_->attributes[attribute];
    return value ? std::optional(*value->data()) : std::nullopt;
  }
  if (!object.stored_) return std::nullopt;
  return storedDocument(object, attribute);
}

void ObjectGraph::holdDocument(NSManagedObject& object, std::size_t attribute) {
  NSManagedObject::Values& values = *valuesOf(object);
  if (values.heldDocuments & bit(attribute)) return;
  if (object.stored_) {
    if (std::optional<NSData> data = storedDocument(object, attribute)) {
      values.attributes[attribute] = std::move(*data);
    }
  }
  values.heldDocuments |= bit(attribute);
}

// Relationships.

NSManagedObject* ObjectGraph::toOne(const NSManagedObject& object, std::size_t relationship) {
  const NSManagedObject::Values* const values = valuesOf(object);
  NSManagedObject* const target = values ? values->toOne[relationship] : nullptr;
  if (!target || !valuesOf(*target)) return nullptr;
  return target->alive_ ? target : nullptr;
}

std::vector<NSManagedObject*> ObjectGraph::storedToMany(const NSManagedObject& object,
                                                        std::size_t relationship) {
  const NSRelationshipDescription& description = relationshipOf(object, relationship);
  const NSEntityDescription& destination = model().entities()[description.destination];
  const StoreSchema::EntityTable& table = store().schema().table(destination);
  std::string sql = "SELECT " + table.columns + " FROM " + table.name;
  if (StoreSchema::hasPairs(model(), description)) {
    const StoreSchema::PairTable pairs = StoreSchema::pairTable(object.entity(), description);
    sql += " JOIN " + pairs.name + " ON _key = " + pairs.otherColumn + " WHERE " + pairs.ownColumn;
  } else {
    sql += " WHERE " + table.relationshipNames[description.inverse];
  }
  sql += " = ? ORDER BY _key";

  std::vector<NSManagedObject*> members;
  SQLiteDatabase& connection = database();
  const std::lock_guard lock(connection.mutex);
  SQLiteStatement query = connection.statement(sql);
  query.bind(1, object.id_.key);
  while (query.step()) members.push_back(&objectFromRow(destination, query));
  return members;
}

// What the store says, with the unsaved changes made to it again.
void ObjectGraph::overlayToMany(NSManagedObject& object, std::size_t relationship,
                                std::vector<NSManagedObject*>& members) {
  const NSRelationshipDescription& description = relationshipOf(object, relationship);
  std::erase_if(members, [](const NSManagedObject* member) { return !member->alive_; });
  const auto put = [&](NSManagedObject* member, bool together) {
    std::erase(members, member);
    if (together) members.push_back(member);
  };
  if (StoreSchema::hasPairs(model(), description)) {
    const auto changed = pairs_.find(pairsID(object, relationship));
    if (changed == pairs_.end()) return;
    const bool isFirst = StoreSchema::pairTable(object.entity(), description).isFirst;
    for (const auto& [pair, together] : changed->second) {
      if ((isFirst ? pair.first : pair.second) == &object) {
        put(isFirst ? pair.second : pair.first, together);
      }
    }
    return;
  }
  for (NSManagedObject* const other : changed_[description.destination].all()) {
    if (!other->values_) continue;
    if (!(other->values_->changedToOne & bit(description.inverse)) && other->stored_) continue;
    put(other, other->alive_ && other->values_->toOne[description.inverse] == &object);
  }
}

const std::vector<NSManagedObject*>& ObjectGraph::toMany(NSManagedObject& object,
                                                         std::size_t relationship) {
  if (valuesOf(object)->toMany[relationship]) return *object.values_->toMany[relationship];
  std::vector<NSManagedObject*> members;
  if (object.stored_) members = storedToMany(object, relationship);
  overlayToMany(object, relationship, members);
  return object.values_->toMany[relationship].emplace(std::move(members));
}

ObjectGraph::PairsID ObjectGraph::pairsID(const NSManagedObject& object,
                                          std::size_t relationship) const {
  const NSRelationshipDescription& description = relationshipOf(object, relationship);
  return StoreSchema::pairTable(object.entity(), description).isFirst
             ? PairsID(object.entity().position(), relationship)
             : PairsID(description.destination, description.inverse);
}

std::optional<PlistValue> valueInRow(const SQLiteStatement& row, int column, NSAttributeType type) {
  if (row.isNull(column)) return std::nullopt;
  switch (type) {
    case NSAttributeType::String:
      return PlistValue(row.text(column));
    case NSAttributeType::Integer:
      return PlistValue(row.integer(column));
    case NSAttributeType::Real:
      return PlistValue(row.real(column));
    case NSAttributeType::Date:
      return PlistValue(NSDate::dateWithTimeIntervalSinceReferenceDate(row.real(column)));
    default:
      return PlistValue(row.data(column));
  }
}

}  // namespace zym
