#include "zymcore/store/entities/ZYMEntity.h"

#include "zymcore/store/entities/EntityKeys.h"

namespace zym {
namespace {

template <class Value>
std::optional<Value> copyOf(const Value* value) {
  return value ? std::optional(*value) : std::nullopt;
}

}  // namespace

std::optional<std::string> ZYMEntity::uuid() const {
  return copyOf(stringForKey(attributes::uuid));
}

void ZYMEntity::setUuid(std::optional<std::string> uuid) {
  setValue_forKey(std::move(uuid), attributes::uuid);
}

std::optional<std::string> ZYMEntity::name() const {
  return copyOf(stringForKey(attributes::name));
}

void ZYMEntity::setName(std::optional<std::string> name) {
  setValue_forKey(std::move(name), attributes::name);
}

std::optional<NSDate> ZYMEntity::dateLastModified() const {
  const PlistValue* date = valueForKey(attributes::dateLastModified);
  return copyOf(date ? date->date() : nullptr);
}

void ZYMEntity::setDateLastModified(std::optional<NSDate> date) {
  setValue_forKey(date, attributes::dateLastModified);
}

}  // namespace zym
