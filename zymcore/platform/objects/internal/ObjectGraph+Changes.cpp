#include <algorithm>
#include <cmath>
#include <utility>

#include "zymcore/platform/objects/internal/ObjectGraph.h"

namespace zym {
namespace {

bool contains(const std::vector<NSManagedObject*>& objects, const NSManagedObject* object) {
  return std::find(objects.begin(), objects.end(), object) != objects.end();
}

}  // namespace

/// The reverse of a step.
struct ObjectGraph::Change {
  enum class Kind { Attribute, ToOne, Pair, Life };

  Kind kind;
  NSManagedObject* object;
  std::size_t position = 0;
  NSManagedObject* other = nullptr;
  bool flag = false;
  std::optional<PlistValue> value = std::nullopt;
};

struct ObjectGraph::Journal {
  std::vector<Change> changes;
};

// What is asked for.

NSManagedObject* ObjectGraph::insert(const NSEntityDescription& entity) {
  const std::int64_t key = --lastTemporaryKey_;
  std::unique_ptr<NSManagedObject> created = newObject(entity, key);
  NSManagedObject& object = *created;
  object.alive_ = false;
  NSManagedObject::Values& values = emptyValues(object);
  for (std::size_t i = 0; i < values.toMany.size(); ++i) {
    if (entity.relationships()[i].isToMany) values.toMany[i].emplace();
  }
  objects_[entity.position()].emplace(key, std::move(created));
  stepLife(object, true);
  // Undo takes the whole object away, so what it is given meanwhile needs no reverse.
  values.journal = lastJournal_;
  values.journaledAttributes = ~std::uint64_t{0};
  return &object;
}

void ObjectGraph::remove(NSManagedObject& object) {
  std::vector<NSManagedObject*> doomed{&object};
  for (std::size_t i = 0; i < doomed.size(); ++i) {
    NSManagedObject& next = *doomed[i];
    if (!next.alive_ || !valuesOf(next)) continue;
    for (std::size_t r = 0; r < next.entity().relationships().size(); ++r) {
      unrelate(next, r, doomed);
    }
    stepLife(next, false);
  }
}

void ObjectGraph::unrelate(NSManagedObject& object, std::size_t relationship,
                           std::vector<NSManagedObject*>& doomed) {
  const NSRelationshipDescription& description = relationshipOf(object, relationship);
  std::vector<NSManagedObject*> others;
  if (description.isToMany) {
    others = toMany(object, relationship);
    for (NSManagedObject* const other : others) take(object, relationship, *other);
  } else if (NSManagedObject* const other = toOne(object, relationship)) {
    others = {other};
    setToOne(object, relationship, nullptr);
  }
  if (description.deleteRule == NSDeleteRule::Cascade) {
    doomed.insert(doomed.end(), others.begin(), others.end());
  }
}

void ObjectGraph::setAttribute(NSManagedObject& object, std::size_t attribute,
                               std::optional<PlistValue> value) {
  const NSManagedObject::Values* const values = valuesOf(object);
  if (!values || !object.alive_) return;
  const bool isDocument = object.entity().attributes()[attribute].type == NSAttributeType::Document;
  if (!isDocument && values->attributes[attribute] == value) return;
  stepAttribute(object, attribute, std::move(value));
}

void ObjectGraph::setToOne(NSManagedObject& object, std::size_t relationship,
                           NSManagedObject* target) {
  if (!valuesOf(object) || !object.alive_) return;
  if (target && (!valuesOf(*target) || !target->alive_)) return;
  NSManagedObject* const former = object.values_->toOne[relationship];
  if (former == target) return;
  const NSRelationshipDescription& description = relationshipOf(object, relationship);
  if (!inverseOf(description).isToMany) {
    if (former) stepToOne(*former, description.inverse, nullptr);
    if (target) {
      NSManagedObject* const partner = toOne(*target, description.inverse);
      if (partner) stepToOne(*partner, relationship, nullptr);
      stepToOne(*target, description.inverse, &object);
    }
  }
  stepToOne(object, relationship, target);
}

void ObjectGraph::add(NSManagedObject& object, std::size_t relationship, NSManagedObject& other) {
  const NSRelationshipDescription& description = relationshipOf(object, relationship);
  if (!StoreSchema::hasPairs(model(), description)) {
    if (valuesOf(object) && object.alive_) setToOne(other, description.inverse, &object);
    return;
  }
  if (!valuesOf(object) || !object.alive_ || !valuesOf(other) || !other.alive_) return;
  if (!contains(toMany(object, relationship), &other)) stepPair(object, relationship, other, true);
}

void ObjectGraph::take(NSManagedObject& object, std::size_t relationship, NSManagedObject& other) {
  const NSRelationshipDescription& description = relationshipOf(object, relationship);
  if (!valuesOf(object) || !object.alive_) return;
  if (StoreSchema::hasPairs(model(), description)) {
    if (contains(toMany(object, relationship), &other)) {
      stepPair(object, relationship, other, false);
    }
  } else if (toOne(other, description.inverse) == &object) {
    setToOne(other, description.inverse, nullptr);
  }
}

// The four steps. Each registers its reverse first, since that alone may throw.

void ObjectGraph::stepAttribute(NSManagedObject& object, std::size_t attribute,
                                std::optional<PlistValue> value) {
  const bool isDocument = object.entity().attributes()[attribute].type == NSAttributeType::Document;
  NSManagedObject::Values& values = *valuesOf(object);
  if (undoManager_ && !isAttributeRecorded(object, attribute)) {
    if (isDocument) holdDocument(object, attribute);
    record({Change::Kind::Attribute, &object, attribute, nullptr, false,
            values.attributes[attribute]});
    if (values.journal != lastJournal_) values.journaledAttributes = 0;
    values.journal = lastJournal_;
    values.journaledAttributes |= bit(attribute);
  }
  markDirty(object);
  values.attributes[attribute] = std::move(value);
  values.changedAttributes |= bit(attribute);
  if (isDocument) {
    values.heldDocuments |= bit(attribute);
  } else {
    changed_[object.entity().position()].attributeChanged(object, attribute);
  }
}

void ObjectGraph::stepToOne(NSManagedObject& object, std::size_t relationship,
                            NSManagedObject* target) {
  NSManagedObject::Values* const values = valuesOf(object);
  if (!values || values->toOne[relationship] == target) return;
  NSManagedObject* const former = values->toOne[relationship];
  record({Change::Kind::ToOne, &object, relationship, former});
  markDirty(object);
  values->toOne[relationship] = target;
  values->changedToOne |= bit(relationship);

  const NSRelationshipDescription& description = relationshipOf(object, relationship);
  if (!inverseOf(description).isToMany) return;
  const auto membersOf = [&](NSManagedObject* owner) {
    return owner && owner->values_ && owner->values_->toMany[description.inverse]
               ? &*owner->values_->toMany[description.inverse]
               : nullptr;
  };
  if (auto* const members = membersOf(former)) std::erase(*members, &object);
  if (auto* const members = membersOf(target)) members->push_back(&object);
}

void ObjectGraph::stepPair(NSManagedObject& object, std::size_t relationship,
                           NSManagedObject& other, bool together) {
  record({Change::Kind::Pair, &object, relationship, &other, !together});
  const NSRelationshipDescription& description = relationshipOf(object, relationship);
  const auto change = [&](NSManagedObject& owner, std::size_t position, NSManagedObject& member) {
    if (!owner.values_ || !owner.values_->toMany[position]) return;
    std::vector<NSManagedObject*>& members = *owner.values_->toMany[position];
    std::erase(members, &member);
    if (together) members.push_back(&member);
  };
  change(object, relationship, other);
  change(other, description.inverse, object);

  const bool isFirst = StoreSchema::pairTable(object.entity(), description).isFirst;
  const Pair pair = isFirst ? Pair(&object, &other) : Pair(&other, &object);
  auto& changed = pairs_[pairsID(object, relationship)];
  const auto [known, isNew] = changed.emplace(pair, together);
  if (!isNew) changed.erase(known);  // Back to what the store has.
}

// The row of an object that is deleted will go, so undo needs all of it at hand.
void ObjectGraph::stepLife(NSManagedObject& object, bool alive) {
  if (!alive && undoManager_) {
    for (std::size_t i = 0; i < object.entity().attributes().size(); ++i) {
      if (object.entity().attributes()[i].type == NSAttributeType::Document) {
        holdDocument(object, i);
      }
    }
  }
  record({Change::Kind::Life, &object, 0, nullptr, !alive});
  markDirty(object);
  object.alive_ = alive;
}

void ObjectGraph::markDirty(NSManagedObject& object) {
  ++changeCounts_[object.entity().position()];
  if (object.dirty_) return;
  object.dirty_ = true;
  changed_[object.entity().position()].add(object);
}

// Undo.

bool ObjectGraph::isAttributeRecorded(NSManagedObject& object, std::size_t attribute) {
  return journal_ && undoManager_->isLatestAction(journalAction_) &&
         object.values_->journal == lastJournal_ &&
         (object.values_->journaledAttributes & bit(attribute)) != 0;
}

void ObjectGraph::record(Change change) {
  if (!undoManager_) return;
  if (!journal_ || !undoManager_->isLatestAction(journalAction_)) {
    auto journal = std::make_shared<Journal>();
    journalAction_ = undoManager_->registerUndo([self = self_, journal] {
      if (*self) (*self)->revert(*journal);
    });
    journal_ = std::move(journal);
    ++lastJournal_;
  }
  journal_->changes.push_back(std::move(change));
}

void ObjectGraph::revert(const Journal& journal) {
  std::for_each(journal.changes.rbegin(), journal.changes.rend(), [this](const Change& change) {
    switch (change.kind) {
      case Change::Kind::Attribute:
        if (valuesOf(*change.object)) {
          stepAttribute(*change.object, change.position, change.value);
        }
        break;
      case Change::Kind::ToOne:
        stepToOne(*change.object, change.position, change.other);
        break;
      case Change::Kind::Pair:
        stepPair(*change.object, change.position, *change.other, change.flag);
        break;
      case Change::Kind::Life:
        if (change.object->alive_ != change.flag) stepLife(*change.object, change.flag);
        break;
    }
  });
}

}  // namespace zym
