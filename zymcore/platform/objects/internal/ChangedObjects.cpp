#include "zymcore/platform/objects/internal/ChangedObjects.h"

#include "zymcore/platform/objects/NSEntityDescription.h"
#include "zymcore/platform/objects/NSManagedObject.h"
#include "zymcore/platform/objects/NSPredicate.h"

namespace zym {

const std::vector<NSManagedObject*>& ChangedObjects::candidatesFor(const NSPredicate* predicate) {
  static const std::vector<NSManagedObject*> none;
  const bool isEquality = predicate && predicate->type() == NSPredicate::Type::Comparison &&
                          predicate->predicateOperator() == NSPredicate::Operator::EqualTo &&
                          !predicate->values().empty();
  const std::string* const text = isEquality ? predicate->values().front().string() : nullptr;
  if (!text || objects_.empty()) return objects_;
  const auto attribute =
      objects_.front()->entity().attributeIndex(KeyName(predicate->key())).value();
  const auto [known, isNew] = byAttribute_.try_emplace(attribute);
  if (isNew) {
    for (NSManagedObject* const object : objects_) insert(known->second, *object, attribute);
  }
  const auto found = known->second.find(*text);
  return found == known->second.end() ? none : found->second;
}

void ChangedObjects::add(NSManagedObject& object) {
  objects_.push_back(&object);
  for (auto& [attribute, texts] : byAttribute_) insert(texts, object, attribute);
}

void ChangedObjects::attributeChanged(NSManagedObject& object, std::size_t attribute) {
  const auto known = byAttribute_.find(attribute);
  if (known != byAttribute_.end()) insert(known->second, object, attribute);
}

void ChangedObjects::clear() {
  objects_.clear();
  byAttribute_.clear();
}

void ChangedObjects::insert(ByText& texts, NSManagedObject& object, std::size_t attribute) {
  const PlistValue* const value = object.valueAtIndex(attribute);
  if (value && value->string()) texts[*value->string()].push_back(&object);
}

}  // namespace zym
