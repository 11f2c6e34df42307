#pragma once

#include <optional>
#include <string>

#include "zymcore/platform/objects/NSManagedObject.h"
#include "zymcore/platform/values/NSDate.h"

namespace zym {

/// What all objects of the store have. Identity is the uuid; nothing forbids two objects to share
/// one, and look-ups that find several find none.
class ZYMEntity : public NSManagedObject {
 public:
  using NSManagedObject::NSManagedObject;

  [[nodiscard]] std::optional<std::string> uuid() const;
  void setUuid(std::optional<std::string> uuid);
  /// Not of every entity; throws for one that has none.
  [[nodiscard]] std::optional<std::string> name() const;
  void setName(std::optional<std::string> name);
  [[nodiscard]] std::optional<NSDate> dateLastModified() const;
  void setDateLastModified(std::optional<NSDate> date);
};

}  // namespace zym
