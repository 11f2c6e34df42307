#pragma once

#include <cstdint>
#include <string>

#include "zymcore/platform/objects/NSEntityDescription.h"

namespace zym {

/// The identity of an object within its store: the same in every context and after a restart.
/// Until its object is saved for the first time an identity is temporary, and means nothing outside
/// its context.
struct NSManagedObjectID {
  const NSEntityDescription* entity = nullptr;
  /// The row; below 0 while temporary.
  std::int64_t key = 0;

  [[nodiscard]] bool isTemporaryID() const noexcept { return key < 0; }
  /// Its text, such as "Author/p7".
  [[nodiscard]] std::string URIRepresentation() const {
    return entity->name() + (isTemporaryID() ? "/t" : "/p") +
           std::to_string(isTemporaryID() ? -key : key);
  }

  friend bool operator==(const NSManagedObjectID&, const NSManagedObjectID&) noexcept = default;
};

}  // namespace zym
