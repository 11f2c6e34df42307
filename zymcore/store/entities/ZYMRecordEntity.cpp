#include "zymcore/store/entities/ZYMRecordEntity.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "zymcore/documents/NSDictionaryExtensions.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/store/ZYMCoreDataModel.h"
#include "zymcore/store/entities/EntityKeys.h"
#include "zymcore/store/entities/ZYMEntityFetch.h"

namespace zym {
namespace {

using ObjectsByUUID = std::unordered_map<std::string, NSManagedObject*>;

ObjectsByUUID byUUID(const std::vector<NSManagedObject*>& objects) {
  ObjectsByUUID found;
  for (NSManagedObject* const object : objects) {
    const PlistValue* const uuid = object->valueForKey(attributes::uuid);
    if (const std::string* text = uuid ? uuid->string() : nullptr) found.emplace(*text, object);
  }
  return found;
}

// A record without a UUID matches nothing, not even an object that has none. Where the UUID stands
// twice in the store, the parent's own child is meant.
NSManagedObject& childForRecord(const RecordChildren& children, const ObjectsByUUID& own,
                                const PlistDictionary& record, NSManagedObjectContext& context) {
  if (const std::string* uuid = record.string(keys::UUID)) {
    if (const auto known = own.find(*uuid); known != own.end()) return *known->second;
    const ZYMEntityFetch::Objects found =
        ZYMEntityFetch::objectsInContext_matchingKey_andValue_sortedOnKey(
            children.entity, &context, attributes::uuid, *uuid, std::nullopt);
    if (found && !found->empty()) return *found->front();
  }
  return *context.insertNewObjectForEntityForName(children.entity);
}

}  // namespace

std::optional<PlistDictionary> ZYMRecordEntity::dictionaryRepresentation() {
  return dictionaryRepresentationKnowing({});
}

PlistDictionary ZYMRecordEntity::dictionaryRepresentationKnowing(const PlistDictionary& known) {
  PlistDictionary record;
  writeFields(record, known);
  writeChildren(record);
  return record;
}

void ZYMRecordEntity::updateWithDictionaryRepresentation(PlistDictionary& record) {
  updateWithDictionaryRepresentation_usingContext(record, mainContext());
}

void ZYMRecordEntity::updateWithDictionaryRepresentation_usingContext(
    PlistDictionary& record, NSManagedObjectContext& context) {
  correctForSerialization(record);
  completeRecord(record);
  readFields(record);
  readChildren(record, context);
}

void ZYMRecordEntity::completeRecord(PlistDictionary& /*record*/) {}

std::optional<PlistValue> ZYMRecordEntity::valueInRecord(KeyName key) {
  for (const RecordField& field : form().fields) {
    if (field.key.text() == key.text() && field.write) return field.write(*this, field.attribute);
  }
  return std::nullopt;
}

void ZYMRecordEntity::writeFields(PlistDictionary& record, const PlistDictionary& known) {
  for (const RecordField& field : form().fields) {
    if (!field.write) continue;
    const PlistValue* given = known.find(field.key);
    std::optional<PlistValue> value = given ? *given : field.write(*this, field.attribute);
    if (value) record.set(field.key, std::move(*value));
  }
}

void ZYMRecordEntity::readFields(const PlistDictionary& record) {
  for (const RecordField& field : form().fields) {
    if (!field.read) continue;
    const std::size_t index = entity().attributeIndex(field.attribute).value();
    const NSAttributeDescription& attribute = entity().attributes()[index];
    const PlistValue* given = record.find(field.readKey);
    if (!given) given = record.find(field.otherwise);
    const PlistValue* stored = valueAtIndex(index);
    std::optional<PlistValue> value = field.read(given, stored);
    // What the attribute can't hold counts as not given.
    if (value && !attribute.accepts(*value)) value = field.read(nullptr, stored);
    setValue_atIndex(std::move(value), index);
  }
}

void ZYMRecordEntity::writeChildren(PlistDictionary& record) {
  const RecordChildren* children = form().children;
  if (!children) return;
  const std::vector<NSManagedObject*>& objects = objectsForKey(children->relationship);
  switch (children->order) {
    case RecordChildren::Order::ByIndex:
      record.set(children->key, dictionaryRepresentationsSortedOnIndexKeyFromSet(objects));
      break;
    case RecordChildren::Order::ByExpiryDescending:
      record.set(children->key, dictionaryRepresentationsSortedOnEntityKey_ascending_fromSet(
                                    attributes::expiresOn, false, objects));
      break;
    case RecordChildren::Order::None:
      record.set(children->key, dictionaryRepresentationOfEntityArray(objects));
      break;
  }
}

// A record with children deletes those it no longer lists. One without any only lets go of them:
// they stay in the store, of no parent.
void ZYMRecordEntity::readChildren(PlistDictionary& record, NSManagedObjectContext& context) {
  const RecordChildren* children = form().children;
  if (!children) return;

  const std::vector<NSManagedObject*> before = objectsForKey(children->relationship);
  const ObjectsByUUID own = byUUID(before);
  std::vector<NSManagedObject*> listed;
  std::unordered_set<const NSManagedObject*> isListed;
  std::int64_t position = 0;
  for (PlistDictionary& row : record.editRows(children->key)) {
    if (children->getUUIDs && !row.contains(keys::UUID)) row.set(keys::UUID, zym::uuid());
    NSManagedObject& child = childForRecord(*children, own, row, context);
    if (children->haveIndex) child.setValue_forKey(position, attributes::index);
    static_cast<ZYMRecordEntity&>(child).updateWithDictionaryRepresentation_usingContext(row,
                                                                                         context);
    if (isListed.insert(&child).second) listed.push_back(&child);
    ++position;
  }
  setObjects_forKey(listed, children->relationship);
  if (listed.empty()) return;
  for (NSManagedObject* child : before) {
    if (!isListed.contains(child)) context.deleteObject(*child);
  }
}

}  // namespace zym
